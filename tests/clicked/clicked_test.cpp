#include "tests/clicked/clicked_test.h"

#include <FL/Enumerations.H>
#include <unistd.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

// Inside the status box's frame.
constexpr int kWrapped = FL_ALIGN_TOP | FL_ALIGN_LEFT | FL_ALIGN_INSIDE | FL_ALIGN_WRAP;
constexpr int kCentred = FL_ALIGN_INSIDE | FL_ALIGN_WRAP;

}  // namespace

Spot FolderLine(int line) {
  return {120, 122 + 19 * line};
}

Spot MenuLine(int line) {
  return {120, 88 + 21 * line};
}

Spot LibraryRow(int row) {
  return {60, 111 + 17 * row};
}

void ClickedTest::SetUp() {
  if (!TestDisplay::IsAvailable()) {
    GTEST_SKIP() << "Xvfb, xdotool and convert show, click and keep the wizard; one is missing";
  }
  WriteFile(Home(".config/user-dirs.dirs"), "XDG_DOCUMENTS_DIR=\"$HOME/Documents\"\n");
  fs::create_directories(Documents(""));
  fs::create_directories(Home(".local/share/Arduino15"));
  fs::create_directories(Home(".cache"));
  for (const auto& entry : fs::recursive_directory_iterator(Home(""))) {
    fs::permissions(entry.path(), fs::perms::all);  // also for a program without root's rights
  }
  display_ = std::make_unique<TestDisplay>();
}

std::vector<std::string> ClickedTest::Environment(const std::vector<std::string>& more) const {
  std::vector<std::string> environment = {
      "HOME=" + home_.path(), "XDG_CONFIG_HOME=", "XDG_DATA_HOME=", "XDG_CACHE_HOME=",
      // Widgets and the texts of old previews live until the process ends, and the libraries of
      // fonts and display keep their caches: nothing that a leak report at the end could tell.
      "ASAN_OPTIONS=detect_leaks=0"};
  environment.insert(environment.end(), more.begin(), more.end());
  return environment;
}

std::unique_ptr<ClickedWizard> ClickedTest::Start(const std::string& program,
                                                  const std::vector<std::string>& environment) {
  return std::make_unique<ClickedWizard>(display_.get(), std::vector<std::string>{program},
                                         Environment(environment));
}

std::unique_ptr<ClickedWizard> ClickedTest::StartAsOrdinaryUser(const std::string& program) {
  std::vector<std::string> command = {program};
  if (geteuid() == 0) {
    command = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", program};
  }
  return std::make_unique<ClickedWizard>(display_.get(), command, Environment({}));
}

Pixels ClickedTest::DrawText(const std::string& text, Area area, int size, int align,
                             const char* box) {
  const std::vector<std::string> command = {LABEL_PROGRAM,
                                            std::to_string(area.x),
                                            std::to_string(area.y),
                                            std::to_string(area.width),
                                            std::to_string(area.height),
                                            std::to_string(size),
                                            std::to_string(align),
                                            box,
                                            text};
  ClickedWizard window(display_.get(), command, Environment({}), "Label");
  return window.Look(area);
}

Pixels ClickedTest::DrawDriverStatus(const std::string& text, bool centred) {
  return DrawText(text, kDriverStatus, FL_NORMAL_SIZE, centred ? kCentred : kWrapped, "white");
}

Pixels ClickedTest::DrawInstallDetail(const std::string& text) {
  return DrawText(text, kInstallDetail, 12, kWrapped, "none");
}

void ClickedTest::GoToFolderPage(ClickedWizard* wizard) {
  wizard->ClickAndWait(kNext);
  wizard->WaitUntilActive(kBack);  // when the survey has ended
  wizard->ClickAndWait(wizard->IsActive(kSkipDriver) ? kSkipDriver : kNext);
  ASSERT_TRUE(wizard->IsActive(kHelp)) << "not on the folder page";
}

void ClickedTest::GoToInstallPage(ClickedWizard* wizard) {
  ASSERT_TRUE(wizard->IsActive(kNext)) << "no Arduino is selected";
  wizard->ClickAndWait(kNext);
  wizard->ClickAndWait(kNext);
}

void ClickedTest::InstallToTheEnd(ClickedWizard* wizard) {
  const Pixels title = wizard->Look(kTitle);
  wizard->Click(kNext);
  wizard->WaitFor("the page \"Finished\"", [&] { return wizard->LookAtOnce(kTitle) != title; });
  EXPECT_FALSE(wizard->IsActive(kBack));
  EXPECT_FALSE(wizard->IsActive(kNext));
  EXPECT_TRUE(wizard->IsActive(kCancel));
}

int ClickedTest::Done(ClickedWizard* wizard) {
  wizard->Click(kCancel);
  return wizard->End();
}
