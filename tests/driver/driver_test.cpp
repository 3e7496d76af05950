#include "tests/driver/driver_test.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Wizard.H>

#include "driver/driver_install.h"
#include "driver/driver_page.h"
#include "driver/driver_survey.h"
#include "driver/driver_text.h"
#include "engine/install_error.h"

namespace {

constexpr char kPolicyKey[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\DriverSearching";

void NextPage(Fl_Widget*, void*) {
  Wizard->next();
}

Fl_Button* NewButton(const char* label, Fl_Callback* callback, bool visible) {
  auto* button = new Fl_Button(0, 0, 90, 26, label);
  button->callback(callback);
  button->deactivate();
  if (!visible) button->hide();
  return button;
}

void BuildDriverPage() {
  DriverStatusBox = new Fl_Box(32, 92, 436, 152, "waiting");
  DriverStatusBox->align(FL_ALIGN_TOP | FL_ALIGN_LEFT | FL_ALIGN_INSIDE | FL_ALIGN_WRAP);
  DriverBackButton = NewButton("Back", NextPage, true);
  DriverCancelButton = NewButton("Cancel", NextPage, true);
  DriverNextButton = NewButton("Next", NextPage, true);
  DriverSkipButton = NewButton("Skip Driver Install", driver_skip_callback, false);
  DriverUpdateButton = NewButton("Update Driver", driver_update_callback, false);
  DriverUninstallButton = NewButton("Uninstall Driver", driver_uninstall_callback, false);
}

std::string State(const char* name, const Fl_Button* button) {
  std::string state = std::string(" ") + name + ":";
  if (button->visible() == 0) return state + "hidden";
  return state + (button->active() != 0 ? "active" : "inactive");
}

}  // namespace

DriverTest::DriverTest() {
  Machine = {};
  Machine.temporary_folder = temporary_.path() + "/";
  ResetDriverSurvey();
  ResetInstallError();
  Fl_Group::current(nullptr);
  wizard_ = std::make_unique<Fl_Wizard>(0, 0, 500, 360);
  welcome_page_ = new Fl_Group(0, 0, 500, 360);
  welcome_page_->end();
  driver_page_ = new Fl_Group(0, 0, 500, 360);
  BuildDriverPage();
  driver_page_->end();
  folder_page_ = new Fl_Group(0, 0, 500, 360);
  folder_page_->end();
  wizard_->end();
  Wizard = wizard_.get();
  NativeWindowHandle = reinterpret_cast<void*>(0x1234);
  DriverNextPageCallback = NextPage;
  ReturnToDriverPage();
  store_ = std::make_unique<TestStore>(DriverPayload());
}

DriverTest::~DriverTest() {
  EXPECT_THAT(Machine.misuses, ::testing::IsEmpty());
  EXPECT_EQ(Machine.open_handles, 0);
  Fl::focus(nullptr);
  ResetDriverSurvey();
  ResetDriverPage();
}

std::vector<TestEntry> DriverTest::DriverPayload() {
  return {{"1.8.19/WINDOWS/directory_criteria.txt", ""},
          {"cdcacm.cat", "the catalog"},
          {"cdcacm.inf", kDriverInf},
          {"final.png", ""}};
}

void DriverTest::Stage(const std::vector<TestEntry>& entries,
                       const std::vector<std::string>& installed) {
  store_ = nullptr;
  store_ = std::make_unique<TestStore>(entries);
  stage_driver_files();
  ASSERT_EQ(StagedInfCount, static_cast<int>(installed.size()));
  for (std::size_t row = 0; row < installed.size(); ++row) {
    if (!installed[row].empty()) InstalledInfNames[row] = duplicate_text(installed[row].c_str());
  }
  SurveyDone = 1;
  Machine.calls.clear();
}

std::string DriverTest::Page() const {
  std::string page = Wizard->value() == driver_page_   ? "driver"
                     : Wizard->value() == folder_page_ ? "folder"
                                                       : "welcome";
  page += State("Back", DriverBackButton) + State("Next", DriverNextButton) +
          State("Cancel", DriverCancelButton) + State("Skip", DriverSkipButton) +
          State("Update", DriverUpdateButton) + State("Uninstall", DriverUninstallButton);
  page += DriverNextButton->callback() == driver_install_callback ? " to:install" : " to:page";
  if (Fl::focus() == DriverNextButton) page += " focus:Next";
  page += DriverStatusBox->align() == (FL_ALIGN_INSIDE | FL_ALIGN_WRAP) ? " centred" : " top-left";
  return page;
}

std::string DriverTest::Text() const {
  return DriverStatusBox->label();
}

void DriverTest::Click(const char* button) const {
  for (Fl_Button* known :
       {DriverNextButton, DriverSkipButton, DriverUpdateButton, DriverUninstallButton}) {
    if (std::string(known->label()).rfind(button, 0) == 0) known->do_callback();
  }
}

void DriverTest::ReturnToDriverPage() const {
  Wizard->value(driver_page_);
}

std::vector<std::string> RelaxingCalls() {
  return {std::string("OpenMachineKey(") + kPolicyKey + ", 0x3)",
          "QueryRegistryValue(SearchOrderConfig, no buffer, 0)",
          "QueryRegistryValue(SearchOrderConfig, buffer, 4)",
          "SetRegistryValue(SearchOrderConfig, 4, 2, 4)", "CloseRegistryKey()"};
}

std::vector<std::string> SearchOrderReadOnlyCalls() {
  return {std::string("OpenMachineKey(") + kPolicyKey + ", 0x3)",
          "QueryRegistryValue(SearchOrderConfig, no buffer, 0)",
          "QueryRegistryValue(SearchOrderConfig, buffer, 4)", "CloseRegistryKey()"};
}

std::vector<std::string> NoPolicyKeyCalls() {
  return {std::string("OpenMachineKey(") + kPolicyKey + ", 0x3)",
          std::string("OpenMachineKey(") + kPolicyKey + ", 0x103)",
          std::string("OpenMachineKey(") + kPolicyKey + ", 0x203)"};
}

std::vector<std::string> VersionReadingCalls(const std::string& file,
                                             const std::vector<std::string>& line_texts) {
  std::vector<std::string> calls = {"OpenInfFile(" + file + ")",
                                    "FindFirstInfLine(" + file + ", Version)"};
  std::size_t room = 8192;
  for (const std::string& text : line_texts) {
    calls.push_back("GetInfLineText(" + file + ", " + std::to_string(room) + ")");
    calls.push_back("FindNextInfLine(" + file + ")");
    room -= text.size();
  }
  calls.push_back("CloseInfFile(" + file + ")");
  return calls;
}

std::vector<std::string> Joined(const std::vector<std::vector<std::string>>& parts) {
  std::vector<std::string> all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}
