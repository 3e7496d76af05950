// The wizard under Wine on screens of every usual density: each page in its proportions, showing
// what it shows on a screen that isn't scaled, and clicks that reach the same widgets.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "tests/program/case_host.h"
#include "tests/support/arduino_host.h"
#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"
#include "tests/windows/run_in_wine.h"
#include "tests/windows/wine_window.h"

namespace fs = std::filesystem;

namespace {

constexpr int kUnscaledDpi = 96;
constexpr Spot kInstallerSize = {500, 360};
constexpr Spot kHelpSize = {400, 360};

constexpr Spot kUpdateDriver = {90, 273};
constexpr Spot kAllLibraries = {46, 82};
constexpr Spot kNoLibraries = {130, 82};
constexpr Spot kFirstLibrary = {60, 109};
constexpr Spot kHelpOk = {203, 336};

// The shades that two pictures may differ by in a part of this size, of 255: the same letters drawn
// at another size differ by less, a word that is cut or moved by more.
constexpr int kPart = 20;  // units
constexpr int kLargestDifference = 50;

class WizardAtScale : public testing::Test {
 protected:
  void SetUp() override {
    if (std::getenv("DISPLAY") == nullptr) GTEST_SKIP() << "no display to show the wizard on";
    Clean();
    fs::create_directories(documents_ + "/Tools");
  }
  void TearDown() override {
    WineOverrides.clear();
    if (!IsSkipped()) SetScreenDpi(kUnscaledDpi);
    Clean();
  }
  void Clean() {
    fs::remove_all(documents_);
    for (const char* name : {"cdcacm.inf", "cdcacm.pnf", "oem0.inf"}) {
      fs::remove(WinePrefix() + "/drive_c/windows/inf/" + name);
    }
  }

  // Keeps a picture of what the wizard shows at `dpi`, and compares its size and its parts with the
  // one that was taken of the same at the first density.
  void Look(WineWindow* wizard, int dpi, const std::string& name, Spot size = kInstallerSize) {
    SCOPED_TRACE(name + " at " + std::to_string(dpi));
    const Spot found = wizard->Size();
    EXPECT_EQ(found.x, size.x * dpi / kUnscaledDpi);
    EXPECT_EQ(found.y, size.y * dpi / kUnscaledDpi);
    wizard->Keep("scale-" + std::to_string(dpi) + "-" + name);
    const std::string parts = wizard->Parts(size.x / kPart, size.y / kPart);
    const std::string& expected = first_.try_emplace(name, parts).first->second;
    ASSERT_EQ(parts.size(), expected.size());
    int largest = 0;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      largest = std::max(largest, std::abs(static_cast<unsigned char>(parts[i]) -
                                           static_cast<unsigned char>(expected[i])));
    }
    EXPECT_LE(largest, kLargestDifference);
    largest_ = std::max(largest_, largest);
  }

  // Through every page and button of the wizard, with an install that fails before one that ends.
  void WalkThrough(int dpi) {
    const std::string host = documents_ + "/Tools/arduino-1.8.19";
    const std::string obstacle = host + "/hardware/quirlo";
    fs::remove_all(host);
    MakeArduino1819(host);
    fs::create_directories(host + "/hardware");
    WriteFile(obstacle, "a file where a folder should go");

    WineWindow wizard(INSTALLER);
    Look(&wizard, dpi, "welcome");
    wizard.Click(kNext);
    wizard.WaitUntilActive(kSkipDriver);
    Look(&wizard, dpi, "driver-due");
    wizard.Click(kNext);
    wizard.WaitUntilActive(kHelp);
    wizard.Click(kBack);
    wizard.WaitUntilActive(kUpdateDriver);
    Look(&wizard, dpi, "driver-installed");
    wizard.ClickAndWait(kUpdateDriver);
    Look(&wizard, dpi, "driver-updated");
    wizard.Click(kNext);
    wizard.WaitUntilActive(kHelp);

    wizard.ClickAndWait(FolderLine(1), 2);  // into the folder "Tools", behind "../"
    wizard.ClickAndWait(kPathChoice);
    Look(&wizard, dpi, "folder-menu");
    wizard.ClickAndWait(MenuLine(0));
    wizard.ClickAndWait(FolderLine(1));
    wizard.WaitUntilActive(kNext);
    Look(&wizard, dpi, "folder");
    wizard.Click(kHelp);
    wizard.TurnTo("Quirloduino .* Help");
    Look(&wizard, dpi, "help", kHelpSize);
    wizard.Click(kHelpOk);
    wizard.TurnBackTo("Quirloduino .* Installer", "Quirloduino .* Help");

    wizard.ClickAndWait(kNext);
    Look(&wizard, dpi, "libraries");
    wizard.ClickAndWait(kNoLibraries);
    wizard.ClickAndWait(kFirstLibrary);
    Look(&wizard, dpi, "libraries-one");
    wizard.ClickAndWait(kAllLibraries);
    wizard.ClickAndWait(kNext);
    Look(&wizard, dpi, "install");
    wizard.Click(kNext);
    wizard.WaitUntilInactive(kNext);
    wizard.WaitUntilActive(kBack);
    Look(&wizard, dpi, "install-failed");
    EXPECT_FALSE(wizard.IsActive(kNext)) << "a failed install isn't begun again from its page";

    fs::remove(obstacle);
    wizard.ClickAndWait(kBack);
    wizard.ClickAndWait(kNext);
    wizard.Click(kNext);
    wizard.WaitUntilInactive(kBack);
    wizard.WaitUntilActive(kCancel);  // "Done"
    Look(&wizard, dpi, "finished");
    wizard.Click(kCancel);
    EXPECT_EQ(wizard.End(), 0);
    EXPECT_TRUE(ReadHost(host) == SilentInstall()) << "with all libraries it is the same";
  }

  // What the same program leaves without a window.
  static const std::map<std::string, std::string>& SilentInstall() {
    static const std::map<std::string, std::string> files = [] {
      const TempDir folder;
      MakeArduino1819(folder / "host");
      EXPECT_EQ(RunProgram(INSTALLER, {"--dir=" + (folder / "host")}).status, 0);
      return ReadHost(folder / "host");
    }();
    return files;
  }

  std::string documents_ = WinePrefix() + "/drive_c/users/root/Documents";
  std::map<std::string, std::string> first_;
  int largest_ = 0;
};

TEST_F(WizardAtScale, EveryPageShowsAndDoesTheSame) {
  for (const int dpi : {kUnscaledDpi, 120, 144, 192}) {
    SetScreenDpi(dpi);
    WalkThrough(dpi);
    Clean();
    fs::create_directories(documents_ + "/Tools");
  }
  std::printf("[ MEASURED ] parts of the pages differ by %d of 255 at most\n", largest_);
}

// Windows Vista to 8 know no scale of each screen: the library that tells it is not among theirs.
// Wine's has other names for the calls here, and no longer says that it is Wine's own.
class OneScaleForAllScreens : public WizardAtScale {
 protected:
  void SetUp() override {
    WizardAtScale::SetUp();
    if (IsSkipped()) return;
    SetScreenDpi(144);
    std::string library = ReadFile(library_);
    Rename(&library, "Wine builtin DLL");
    for (const char* call :
         {"GetDpiForMonitor", "GetProcessDpiAwareness", "SetProcessDpiAwareness"}) {
      Rename(&library, std::string("\0", 1) + call);
    }
    fs::rename(library_, library_ + ".of-wine");
    WriteFile(library_, library);
    WineOverrides = "shcore=n";
  }
  void TearDown() override {
    if (fs::exists(library_ + ".of-wine")) fs::rename(library_ + ".of-wine", library_);
    WizardAtScale::TearDown();
  }

  static void Rename(std::string* library, const std::string& name) {
    std::size_t at = library->find(name);
    ASSERT_NE(at, std::string::npos) << name;
    for (; at != std::string::npos; at = library->find(name, at)) {
      (*library)[at + name.size() - 1] = '_';
    }
  }

  std::string library_ = WinePrefix() + "/drive_c/windows/system32/shcore.dll";
};

TEST_F(OneScaleForAllScreens, IsThatOfThePages) {
  WineWindow wizard(INSTALLER);
  EXPECT_EQ(wizard.Size().x, 750);
  EXPECT_EQ(wizard.Size().y, 540);
  wizard.GoToFolderPage();
  wizard.Keep("scale-144-of-all-screens");
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
}

TEST_F(OneScaleForAllScreens, IsMultipliedByTheUsersFactor) {
  RunProgram("reg", {"add", "HKCU\\Environment", "/v", "FLTK_SCALING_FACTOR", "/d", "1.2", "/f"});
  EXPECT_EQ(RunProgram(WINDOW_PROBE, {}).output, " Arial\nBArial\n1.80\n");
  RunProgram("reg", {"delete", "HKCU\\Environment", "/v", "FLTK_SCALING_FACTOR", "/f"});
}

TEST_F(WizardAtScale, TypefacesAreThoseThatThePagesWereLaidOutIn) {
  EXPECT_EQ(RunProgram(WINDOW_PROBE, {}).output, " Arial\nBArial\n1.00\n");
}

TEST_F(WizardAtScale, PagesAreEnlargedByKeys) {
  WineWindow wizard(INSTALLER);
  wizard.Press("ctrl+equal");  // the key of the + on many keyboards, which wants no Shift then
  wizard.WaitUntilWiderThan(kInstallerSize.x);
  wizard.GoToFolderPage();
  wizard.Keep("enlarged-folder");
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
}

}  // namespace
