// How one page leads to another: one test for each row of the table of transitions, of the driver
// page's states and of the timers, by clicks on the shown window.
#include "tests/wizard/wizard_test.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Progress.H>
#include <FL/Fl_Window.H>
#include <FL/Fl_Wizard.H>

#include <chrono>
#include <cstdio>

#include "driver/driver_install.h"
#include "driver/driver_page.h"
#include "driver/driver_survey.h"
#include "platform/native_window.h"
#include "store/host_selection.h"
#include "tests/driver/sample_infs.h"
#include "tests/wizard/recorded_calls.h"
#include "wizard/folder_page.h"
#include "wizard/help_window.h"
#include "wizard/install_page.h"
#include "wizard/install_pump.h"
#include "wizard/library_page.h"
#include "wizard/wizard_pages.h"

namespace {

constexpr int kWelcome = 0;
constexpr int kDriver = 1;
constexpr int kFolder = 2;
constexpr int kLibraries = 3;
constexpr int kInstall = 4;
constexpr int kFinished = 5;

constexpr char kInstalledText[] = "USB Serial driver is installed.";
constexpr char kNeedsInstall[] = "The USB Serial driver needs to be installed.\n\n";

// A shown wizard on a host that is found at start-up, with the payload's driver not installed.
class Navigation : public WizardTest {
 protected:
  Navigation() {
    MakeDefaultHost();
    Machine.copy_deletes_source = false;
  }

  void SetUp() override { Show(); }

  static void ClickOn(const std::string& label) {
    Fl_Widget* button = Labelled(Pages()[static_cast<std::size_t>(CurrentPage())], label);
    ASSERT_NE(button, nullptr) << label;
    Click(button);
  }

  static void WaitForSurvey() {
    WaitUntil([] { return Fl::has_timeout(driver_survey) == 0; });
  }

  static std::string NavigationState() {
    return std::string(DriverBackButton->active() != 0 ? "Back " : "") +
           (DriverNextButton->active() != 0 ? "Next " : "") +
           (DriverCancelButton->active() != 0 ? "Cancel " : "") +
           (DriverSkipButton->visible() == 0    ? "skip hidden "
            : DriverSkipButton->active_r() != 0 ? "skip active "
                                                : "skip dead ") +
           (DriverUpdateButton->visible() == 0    ? "update hidden"
            : DriverUpdateButton->active_r() != 0 ? "update active"
                                                  : "update dead");
  }
};

// ---- from, event, guard, to -------------------------------------------------------------------

TEST_F(Navigation, WelcomeNextShowsDriverAndSetsTheSurveysTimer) {
  ClickOn("Next");
  EXPECT_EQ(CurrentPage(), kDriver);
  EXPECT_TRUE(Fl::has_timeout(driver_survey));
  EXPECT_EQ(SurveyDone, 0);
  WaitForSurvey();
  EXPECT_EQ(SurveyDone, 1);
}

TEST_F(Navigation, WelcomeNextShowsDriverAlsoWhereNoDriverIsNeeded) {
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  ClickOn("Next");
  EXPECT_EQ(CurrentPage(), kDriver);
  WaitForSurvey();
  EXPECT_EQ(CurrentPage(), kDriver);
}

TEST_F(Navigation, UntilTheSurveyHasRunNoneOfTheDriverPagesButtonsWorks) {
  ClickOn("Next");
  EXPECT_EQ(NavigationState(), "skip hidden update hidden");
  for (const char* label : {"Back", "Next", "Cancel", "Skip Driver Install"}) ClickOn(label);
  EXPECT_EQ(CurrentPage(), kDriver);
  EXPECT_TRUE(MainWindow->visible());
  WaitForSurvey();
  EXPECT_EQ(NavigationState(), "Back Next Cancel skip active update hidden");
}

TEST_F(Navigation, DriverNextGoesToFolderWhenNoInstallIsDue) {
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  GoToPage(kDriver);
  ClickOn("Next");
  EXPECT_EQ(CurrentPage(), kFolder);
}

TEST_F(Navigation, DriverNextInstallsAndGoesToFolder) {
  GoToPage(kDriver);
  ClickOn("Next");
  EXPECT_EQ(CurrentPage(), kFolder);
  EXPECT_EQ(DriverReady, 1);
  EXPECT_EQ(Machine.CallsOf({"CopyInfFile"}).size(), 1U);
}

TEST_F(Navigation, DriverNextStaysWithTheErrorTextWhenTheInstallFails) {
  Machine.Fail("CopyInfFile", kErrorAccessDenied);
  GoToPage(kDriver);
  ClickOn("Next");
  EXPECT_EQ(CurrentPage(), kDriver);
  EXPECT_THAT(LabelOf(DriverStatusBox), ::testing::StartsWith("Driver Installation Failed.\n"));
  EXPECT_EQ(DriverNextButton->callback(), static_cast<Fl_Callback_p>(driver_install_callback));
}

TEST_F(Navigation, DriverSkipGoesToFolder) {
  GoToPage(kDriver);
  ClickOn("Skip Driver Install");
  EXPECT_EQ(CurrentPage(), kFolder);
  EXPECT_EQ(DriverReady, 0);
}

TEST_F(Navigation, DriverBackGoesToWelcome) {
  GoToPage(kDriver);
  ClickOn("Back");
  EXPECT_EQ(CurrentPage(), kWelcome);
  EXPECT_FALSE(Fl::has_timeout(driver_survey));
}

TEST_F(Navigation, FolderNextGoesToLibrariesWhenTheFolderIsRecognised) {
  GoToPage(kFolder);
  ASSERT_NE(HostVersionNumber, 0);
  ClickOn("Next");
  EXPECT_EQ(CurrentPage(), kLibraries);
}

TEST_F(Navigation, FolderNextIsDeadWhenTheFolderIsNot) {
  GoToPage(kFolder);
  FolderNextButton->deactivate();
  ClickOn("Next");
  EXPECT_EQ(CurrentPage(), kFolder);
}

TEST_F(Navigation, FolderBackGoesToDriverAndSetsTheSurveysTimer) {
  GoToPage(kFolder);
  ClickOn("Back");
  EXPECT_EQ(CurrentPage(), kDriver);
  EXPECT_TRUE(Fl::has_timeout(driver_survey));
  WaitForSurvey();
}

TEST_F(Navigation, LibrariesNextGoesToInstallArmed) {
  GoToPage(kLibraries);
  InstallButton->deactivate();
  InstallDetailBox->label("old advice");
  InstallStatusLabel->label("ERROR !!!");
  InstallProgress->value(7);
  ClickOn("Next");
  EXPECT_EQ(CurrentPage(), kInstall);
  EXPECT_TRUE(InstallButton->active());
  EXPECT_EQ(LabelOf(InstallDetailBox), "");
  EXPECT_EQ(LabelOf(InstallStatusLabel), "Click Install to begin");
  EXPECT_EQ(InstallProgress->value(), 0);
}

TEST_F(Navigation, OtherNextsDoNotArmTheInstallPage) {
  InstallStatusLabel->label("as it was");
  GoToPage(kLibraries);
  EXPECT_EQ(LabelOf(InstallStatusLabel), "as it was");
}

TEST_F(Navigation, LibrariesBackGoesToFolderWithoutTheTimer) {
  GoToPage(kLibraries);
  ClickOn("Back");
  EXPECT_EQ(CurrentPage(), kFolder);
  EXPECT_FALSE(Fl::has_timeout(driver_survey));
}

TEST_F(Navigation, InstallRunsAndItsPageHasNoActiveButton) {
  GoToPage(kInstall);
  ClickOn("Install");
  EXPECT_EQ(CurrentPage(), kInstall);
  EXPECT_TRUE(Fl::has_idle(InstallPump));
  for (const char* label : {"Back", "Install", "Cancel"}) ClickOn(label);
  EXPECT_EQ(CurrentPage(), kInstall);
  EXPECT_TRUE(MainWindow->visible());
  EXPECT_EQ(LabelOf(InstallStatusLabel), "Files to be installed:");
}

TEST_F(Navigation, RunningInstallEndsOnFinished) {
  GoToPage(kInstall);
  ClickOn("Install");
  WaitUntil([] { return CurrentPage() == kFinished; });
  EXPECT_EQ(InstallProgress->value(), 0);
  EXPECT_EQ(ReadFile(std::string(HostFolder) + "lib/quirloduino.txt"), "1.60-beta5");
}

TEST_F(Navigation, RunningInstallThatFailsStaysOnInstallWithTheAdvice) {
  GoToPage(kInstall);
  WriteFile(std::string(HostFolder) + "hardware", "in the way");
  ClickOn("Install");
  WaitUntil([] { return LabelOf(InstallStatusLabel) == "ERROR !!!"; });
  EXPECT_EQ(CurrentPage(), kInstall);
  EXPECT_THAT(LabelOf(InstallDetailBox), ::testing::HasSubstr("Please make sure you do not"));
  EXPECT_TRUE(InstallBackButton->active());
  EXPECT_TRUE(InstallCancelButton->active());
  EXPECT_FALSE(InstallButton->active());
}

TEST_F(Navigation, InstallBackGoesToLibrariesWhenNotRunning) {
  GoToPage(kInstall);
  ClickOn("Back");
  EXPECT_EQ(CurrentPage(), kLibraries);
}

class EveryPageWithCancel : public Navigation, public ::testing::WithParamInterface<int> {};

TEST_P(EveryPageWithCancel, ClosesTheWindowAndTheLoopEndsWithStatusZero) {
  GoToPage(GetParam());
  ClickOn("Cancel");
  EXPECT_FALSE(MainWindow->visible());
  EXPECT_EQ(Fl::run(), 0);
}
INSTANTIATE_TEST_SUITE_P(Navigation, EveryPageWithCancel, ::testing::Range(kWelcome, kFinished));

TEST_F(Navigation, DoneClosesTheWindowAndTheLoopEndsWithStatusZero) {
  GoToPage(kInstall);
  ClickOn("Install");
  WaitUntil([] { return CurrentPage() == kFinished; });
  ClickOn("Back");
  ClickOn("Next");
  EXPECT_EQ(CurrentPage(), kFinished);
  ClickOn("Done");
  EXPECT_FALSE(MainWindow->visible());
  EXPECT_EQ(Fl::run(), 0);
}

TEST_F(Navigation, CancelHidesTheHelpWindowToo) {
  GoToPage(kFolder);
  ClickOn("?");
  ASSERT_TRUE(HelpWindow->visible());
  ClickOn("Cancel");
  EXPECT_FALSE(HelpWindow->visible());
  EXPECT_EQ(Fl::run(), 0);
}

TEST_F(Navigation, CancelAfterTheHelpWindowWasClosedEndsTheLoop) {
  GoToPage(kFolder);
  ClickOn("?");
  HelpWindow->do_callback();  // its own close control
  ASSERT_FALSE(HelpWindow->visible());
  ClickOn("Cancel");
  EXPECT_EQ(Fl::run(), 0);
}

// ---- the driver page's states -----------------------------------------------------------------

TEST_F(Navigation, DriverStateInstallDueForAnAdministrator) {
  GoToPage(kDriver);
  EXPECT_EQ(LabelOf(DriverStatusBox), kNeedsInstall + std::string("Just click \"Next\" to install "
                                                                  "it.\n"));
  EXPECT_EQ(NavigationState(), "Back Next Cancel skip active update hidden");
  EXPECT_EQ(DriverNextButton->callback(), static_cast<Fl_Callback_p>(driver_install_callback));
  EXPECT_EQ(Fl::focus(), DriverNextButton);
}

TEST_F(Navigation, DriverStateInstallDueWithoutRightsLeavesSkipAsTheOnlyWayForward) {
  Machine.administrator = false;
  GoToPage(kDriver);
  EXPECT_THAT(LabelOf(DriverStatusBox),
              ::testing::StartsWith(std::string(kNeedsInstall) + "You must run this installer"));
  EXPECT_EQ(NavigationState(), "Back Cancel skip active update hidden");
  ClickOn("Next");
  EXPECT_EQ(CurrentPage(), kDriver);
  ClickOn("Skip Driver Install");
  EXPECT_EQ(CurrentPage(), kFolder);
}

TEST_F(Navigation, DriverStateSystemDriverIsCentred) {
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  GoToPage(kDriver);
  EXPECT_EQ(LabelOf(DriverStatusBox),
            "Windows 10 USB Serial driver found.\n\nNo driver installation is needed.");
  EXPECT_EQ(NavigationState(), "Back Next Cancel skip hidden update dead");
  EXPECT_EQ(DriverStatusBox->align(), static_cast<Fl_Align>(FL_ALIGN_INSIDE | FL_ALIGN_WRAP));
  EXPECT_EQ(DriverNextButton->callback(), static_cast<Fl_Callback_p>(wizard_next_callback));
}

TEST_F(Navigation, DriverStatePresentHasUpdateActiveForAnAdministratorAlone) {
  DriverReady = 1;
  GoToPage(kDriver);
  EXPECT_EQ(LabelOf(DriverStatusBox), kInstalledText);
  EXPECT_EQ(NavigationState(), "Back Next Cancel skip hidden update active");
  EXPECT_EQ(DriverStatusBox->align(), static_cast<Fl_Align>(FL_ALIGN_INSIDE | FL_ALIGN_WRAP));
}

TEST_F(Navigation, DriverStatePresentHasUpdateDeadForOthers) {
  Machine.administrator = false;
  DriverReady = 1;
  GoToPage(kDriver);
  EXPECT_EQ(NavigationState(), "Back Next Cancel skip hidden update dead");
}

TEST_F(Navigation, BackFromFolderAfterAnInstallSaysInstalledWithThePlainNext) {
  GoToPage(kDriver);
  ClickOn("Next");
  ClickOn("Back");
  // The page still stands as it was left; the survey's timer brings it into line.
  EXPECT_EQ(DriverNextButton->callback(), static_cast<Fl_Callback_p>(driver_install_callback));
  WaitForSurvey();
  EXPECT_EQ(LabelOf(DriverStatusBox), kInstalledText);
  EXPECT_EQ(DriverNextButton->callback(), static_cast<Fl_Callback_p>(wizard_next_callback));
}

TEST_F(Navigation, BackFromFolderRepeatsTheSurveyButNotItsSlowPart) {
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  GoToPage(kFolder);
  const std::size_t opened = Machine.CallsOf({"OpenInfFile"}).size();
  ClickOn("Back");
  DriverStatusBox->label("before the survey");
  WaitForSurvey();
  EXPECT_THAT(LabelOf(DriverStatusBox), ::testing::StartsWith("Windows 10 USB Serial driver"));
  EXPECT_EQ(SurveyDone, 1);
  EXPECT_EQ(Machine.CallsOf({"OpenInfFile"}).size(), opened);
}

// ---- timers and idle work ---------------------------------------------------------------------

// One timeout a click: after the survey has run once, none is left.
TEST_F(Navigation, SurveyTimerOfWelcomeIsOneTimeoutThatWaitsForTheDelay) {
  ClickOn("Next");
  Fl::wait(0);
  const auto start = std::chrono::steady_clock::now();
  WaitForSurvey();
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(5));
  Machine.calls.clear();
  RunPending();
  EXPECT_THAT(Machine.calls, ::testing::IsEmpty());
}

// The delays are short enough not to be noticed, and let what was just changed be drawn first.
TEST_F(Navigation, TimersHaveTheirDelays) {
  RecordedTimers.clear();
  ClickOn("Next");
  EXPECT_THAT(RecordedTimers, ::testing::ElementsAre(RecordedTimer{driver_survey, 0.02}));
  WaitForSurvey();
  GoToPage(kFolder);
  RecordedTimers.clear();
  ClickOn("Back");
  EXPECT_THAT(RecordedTimers, ::testing::ElementsAre(RecordedTimer{driver_survey, 0.02}));
}

TEST_F(Navigation, TimerOfASuccessHasItsDelay) {
  GoToPage(kInstall);
  RecordedTimers.clear();
  BeginInstall(nullptr, nullptr);
  while (Fl::has_idle(InstallPump) != 0) InstallPump(nullptr);
  EXPECT_THAT(RecordedTimers, ::testing::ElementsAre(RecordedTimer{InstallSucceeded, 0.01}));
}

TEST_F(Navigation, TimerOfAFailureHasItsDelay) {
  GoToPage(kInstall);
  WriteFile(std::string(HostFolder) + "hardware", "in the way");
  RecordedTimers.clear();
  BeginInstall(nullptr, nullptr);
  while (Fl::has_idle(InstallPump) != 0) InstallPump(nullptr);
  EXPECT_THAT(RecordedTimers, ::testing::ElementsAre(RecordedTimer{InstallFailed, 0.01}));
}

TEST_F(Navigation, OnlyWelcomeNextAndFolderBackSetTheSurveysTimer) {
  GoToPage(kFolder);
  ClickOn("Next");
  EXPECT_FALSE(Fl::has_timeout(driver_survey));
  ClickOn("Next");
  EXPECT_FALSE(Fl::has_timeout(driver_survey));
  ClickOn("Back");
  EXPECT_FALSE(Fl::has_timeout(driver_survey));
  ClickOn("Back");
  EXPECT_FALSE(Fl::has_timeout(driver_survey));
}

TEST_F(Navigation, InstallIsIdleWorkUntilItRemovesItselfAndEndsByOneTimeout) {
  GoToPage(kInstall);
  EXPECT_FALSE(Fl::has_idle(InstallPump));
  BeginInstall(nullptr, nullptr);
  EXPECT_TRUE(Fl::has_idle(InstallPump));
  while (Fl::has_idle(InstallPump) != 0) InstallPump(nullptr);
  EXPECT_TRUE(Fl::has_timeout(InstallSucceeded));
  EXPECT_FALSE(Fl::has_timeout(InstallFailed));
  EXPECT_EQ(CurrentPage(), kInstall);
  WaitUntil([] { return Fl::has_timeout(InstallSucceeded) == 0; });
  EXPECT_EQ(CurrentPage(), kFinished);
}

TEST_F(Navigation, FailedInstallEndsByOneTimeout) {
  GoToPage(kInstall);
  WriteFile(std::string(HostFolder) + "hardware", "in the way");
  BeginInstall(nullptr, nullptr);
  while (Fl::has_idle(InstallPump) != 0) InstallPump(nullptr);
  EXPECT_TRUE(Fl::has_timeout(InstallFailed));
  EXPECT_FALSE(Fl::has_timeout(InstallSucceeded));
  EXPECT_EQ(LabelOf(InstallStatusLabel), "Files to be installed:");
  WaitUntil([] { return Fl::has_timeout(InstallFailed) == 0; });
  EXPECT_EQ(LabelOf(InstallStatusLabel), "ERROR !!!");
}

// ---- the rest ---------------------------------------------------------------------------------

TEST_F(Navigation, RetryAfterAFailureGoesBackAndForwardAndStartsOver) {
  GoToPage(kInstall);
  const std::string in_the_way = std::string(HostFolder) + "hardware";
  WriteFile(in_the_way, "in the way");
  ClickOn("Install");
  WaitUntil([] { return LabelOf(InstallStatusLabel) == "ERROR !!!"; });
  ClickOn("Install");  // dead
  EXPECT_FALSE(Fl::has_idle(InstallPump));

  std::remove(in_the_way.c_str());
  ClickOn("Back");
  EXPECT_EQ(CurrentPage(), kLibraries);
  ClickOn("Next");
  EXPECT_EQ(LabelOf(InstallDetailBox), "");
  EXPECT_EQ(LabelOf(InstallStatusLabel), "Click Install to begin");
  EXPECT_TRUE(InstallButton->active());
  ClickOn("Install");
  EXPECT_EQ(InstallCursor, 0);
  WaitUntil([] { return CurrentPage() == kFinished; });
}

TEST_F(Navigation, HelpButtonIsOnTheFolderPageOnly) {
  for (std::size_t page = 0; page < Pages().size(); ++page) {
    EXPECT_EQ(Labelled(Pages()[page], "?") != nullptr, page == kFolder) << page;
  }
}

TEST_F(Navigation, CloseControlDuringAnInstallEndsTheLoopInItsMidst) {
  GoToPage(kInstall);
  ClickOn("Install");
  MainWindow->do_callback();
  EXPECT_FALSE(MainWindow->visible());
  EXPECT_EQ(Fl::run(), 0);
  EXPECT_TRUE(Fl::has_idle(InstallPump));
  EXPECT_LT(InstallCursor, static_cast<int>(SmallPayload1819().size()));
}

TEST_F(Navigation, CloseControlDuringAnInstallWithHelpOpenLetsItGoOn) {
  GoToPage(kFolder);
  ClickOn("?");
  ClickOn("Next");
  ClickOn("Next");
  ClickOn("Install");
  MainWindow->do_callback();
  ASSERT_TRUE(HelpWindow->visible());
  WaitUntil([] { return CurrentPage() == kFinished; });
  EXPECT_EQ(ReadFile(std::string(HostFolder) + "lib/quirloduino.txt"), "1.60-beta5");
}

// FLTK reads its options once in a process, so at most one of these tests can run in each, as they
// do under ctest.
class StartWizardTest : public WizardTest {
 protected:
  void SetUp() override {
    static bool options_read = false;
    if (options_read) GTEST_SKIP() << "the toolkit has read its options already";
    options_read = true;
  }
};

void CloseMainWindow(void*) {
  MainWindow->do_callback();
}

TEST_F(StartWizardTest, RunsUntilTheWindowIsClosedAndReturnsZero) {
  store_ = std::make_unique<TestStore>(SmallPayload1819());
  char name[] = "quirloduino";
  char* arguments[] = {name, nullptr};
  Fl::add_timeout(0.05, CloseMainWindow);
  EXPECT_EQ(StartWizard(1, arguments), 0);
  EXPECT_NE(NativeWindowHandle, nullptr);
}

TEST_F(StartWizardTest, OptionsOfTheToolkitTakeEffect) {
  store_ = std::make_unique<TestStore>(SmallPayload1819());
  char name[] = "quirloduino";
  char option[] = "-title";
  char value[] = "another title";
  char* arguments[] = {name, option, value, nullptr};
  Fl::add_timeout(0.05, CloseMainWindow);
  EXPECT_EQ(StartWizard(3, arguments), 0);
  EXPECT_EQ(LabelOf(MainWindow), "another title");
}

TEST_F(StartWizardTest, UnknownOptionIsReportedAndTheWizardOpensAllTheSame) {
  store_ = std::make_unique<TestStore>(SmallPayload1819());
  char name[] = "quirloduino";
  char option[] = "--DIR=x";
  char* arguments[] = {name, option, nullptr};
  Fl::add_timeout(0.05, CloseMainWindow);
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(StartWizard(2, arguments), 0);
  EXPECT_THAT(::testing::internal::GetCapturedStderr(), ::testing::HasSubstr("options are:"));
}

}  // namespace
