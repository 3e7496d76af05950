// The driver page in its five states, and its buttons.
#include "driver/driver_page.h"

#include <FL/Fl_Wizard.H>

#include "driver/driver_survey.h"
#include "tests/driver/driver_test.h"

namespace {

class DriverPage : public DriverTest {};

TEST_F(DriverPage, WaitingHasNoWayOut) {
  EXPECT_EQ(Page(),
            "driver Back:inactive Next:inactive Cancel:inactive Skip:hidden Update:hidden "
            "Uninstall:hidden to:page top-left");
}

TEST_F(DriverPage, InstallDueForAnAdministratorKeepsTheAlignmentAndFocusesNext) {
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstallDueText);
  EXPECT_EQ(Page(),
            "driver Back:active Next:active Cancel:active Skip:active Update:hidden "
            "Uninstall:hidden to:install focus:Next top-left");
}

TEST_F(DriverPage, InstallDueWithoutRightsKeepsTheAlignmentAndNextDead) {
  Machine.administrator = false;
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kNoRightsText);
  EXPECT_EQ(Page(),
            "driver Back:active Next:inactive Cancel:active Skip:active Update:hidden "
            "Uninstall:hidden to:page top-left");
}

TEST_F(DriverPage, SystemDriverIsCentredWithUpdateShownAndDead) {
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kSystemDriverText);
  EXPECT_EQ(Page(),
            "driver Back:active Next:active Cancel:active Skip:hidden Update:inactive "
            "Uninstall:hidden to:page centred");
}

TEST_F(DriverPage, InstalledDriverIsCentredWithUpdateActiveForAnAdministrator) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstalledText);
  EXPECT_EQ(Page(),
            "driver Back:active Next:active Cancel:active Skip:hidden Update:active "
            "Uninstall:hidden to:page centred");
}

TEST_F(DriverPage, SkipBindsNextToThePageAndMovesForward) {
  driver_survey(nullptr);
  Click("Skip");
  EXPECT_EQ(Page(),
            "folder Back:active Next:active Cancel:active Skip:active Update:hidden "
            "Uninstall:hidden to:page top-left");
  EXPECT_EQ(DriverReady, 0);
  ReturnToDriverPage();
  Click("Next");  // before the survey of the return has run
  EXPECT_EQ(Wizard->value(), reinterpret_cast<Fl_Widget*>(folder_page_));
  EXPECT_THAT(Machine.CallsOf({"CopyInfFile"}), ::testing::IsEmpty());
}

TEST_F(DriverPage, NextOfAnInstalledDriverOnlyMovesForward) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  driver_survey(nullptr);
  Machine.calls.clear();
  Click("Next");
  EXPECT_EQ(Wizard->value(), reinterpret_cast<Fl_Widget*>(folder_page_));
  EXPECT_THAT(Machine.calls, ::testing::IsEmpty());
}

TEST_F(DriverPage, UninstallDoesNothing) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  driver_survey(nullptr);
  Machine.calls.clear();
  const std::string before = Page();
  Click("Uninstall");
  EXPECT_EQ(Page(), before);
  EXPECT_EQ(Text(), kInstalledText);
  EXPECT_EQ(DriverReady, 1);
  EXPECT_THAT(Machine.calls, ::testing::IsEmpty());
}

}  // namespace
