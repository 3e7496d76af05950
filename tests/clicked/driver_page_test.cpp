// The driver page on simulated machines, in each of its states.
#include <filesystem>
#include <string>

#include "tests/clicked/clicked_test.h"
#include "tests/support/held_file.h"

namespace fs = std::filesystem;

namespace {

constexpr char kWaiting[] =
    "Checking if the USB Serial driver is already installed.\n\n"
    "This may take a few moments....\n\n"
    "Ok, let be honest, on a slow netbook this can take 15+ minutes.  It may seem like this "
    "program has crashed, but Windows will eventually finish scanning its registry.  Please be "
    "patient, maybe go get a cup of coffee... eventually this will finish!";
constexpr char kInstallDue[] =
    "The USB Serial driver needs to be installed.\n\nJust click \"Next\" to install it.\n";
constexpr char kNoRights[] =
    "The USB Serial driver needs to be installed.\n\n"
    "You must run this installer with Administrator access.  On Windows 7 or Vista, right click "
    "on this program and choose \"Run as administrator\".  On XP, right click and \"Run as...\" "
    "and select Administrator.";
constexpr char kSystemDriver[] =
    "Windows 10 USB Serial driver found.\n\nNo driver installation is needed.";
constexpr char kInstalled[] = "USB Serial driver is installed.";

class ClickedDriverPage : public ClickedTest {
 protected:
  // Starts the wizard on this machine and goes to the driver page.
  void Enter(const std::string& scenario) {
    staged_ = Home("staged/");
    fs::create_directories(staged_);
    wizard_ = Start(DRIVER_PROGRAM, {"DRIVER_SCENARIO=" + scenario, "DRIVER_FOLDER=" + staged_});
    wizard_->ClickAndWait(kNext);
  }
  // The same, until the survey has ended.
  void EnterAndWait(const std::string& scenario) {
    Enter(scenario);
    wizard_->WaitUntilActive(kBack);
    wizard_->Keep("driver-" + scenario);
  }

  void ExpectStatus(const std::string& text, bool centred = false) {
    EXPECT_TRUE(wizard_->Look(kDriverStatus) == DrawDriverStatus(text, centred)) << text;
  }
  // Back and Cancel are active in all states but one.
  void ExpectButtons(bool next, bool skip, bool update) {
    EXPECT_TRUE(wizard_->IsActive(kBack));
    EXPECT_TRUE(wizard_->IsActive(kCancel));
    EXPECT_EQ(wizard_->IsActive(kNext), next) << "Next";
    EXPECT_EQ(wizard_->IsActive(kSkipDriver), skip) << "Skip";
    EXPECT_EQ(wizard_->IsActive(kUpdateDriver), update) << "Update";
  }
  // Whether anything is drawn where the button stands.
  bool IsShown(Spot button) {
    const Pixels pixels = wizard_->Look({button.x - 40, button.y - 12, 80, 24});
    return pixels != Pixels(pixels.size(), pixels[0]);
  }
  bool IsOnFolderPage() { return wizard_->IsActive(kHelp); }
  void CancelEnds() { EXPECT_EQ(Done(wizard_.get()), 0); }

  std::string staged_;
  std::unique_ptr<ClickedWizard> wizard_;
};

TEST_F(ClickedDriverPage, WaitsWithAllButtonsInactiveUntilTheSurveyHasEnded) {
  // The survey is held up where it stages the catalog.
  HeldFile catalog(Home("staged/cdcacm.cat"));
  const Pixels waiting = DrawDriverStatus(kWaiting);
  staged_ = Home("staged/");
  wizard_ = Start(DRIVER_PROGRAM, {"DRIVER_SCENARIO=install-due", "DRIVER_FOLDER=" + staged_});
  wizard_->Click(kNext);  // no more than that: the program answers nothing while it waits
  wizard_->WaitFor("the waiting text",
                   [&] { return wizard_->LookAtOnce(kDriverStatus) == waiting; });
  wizard_->WaitUntilInactive(kBack);
  wizard_->WaitUntilInactive(kNext);
  wizard_->WaitUntilInactive(kCancel);
  wizard_->KeepAtOnce("driver-waiting");
  catalog.Release();
  wizard_->WaitUntilActive(kBack);
  ExpectStatus(kInstallDue);
  CancelEnds();
}

TEST_F(ClickedDriverPage, InstallDueForAnAdministratorInstallsByNext) {
  EnterAndWait("install-due");
  ExpectStatus(kInstallDue);
  ExpectButtons(true, true, false);
  EXPECT_FALSE(IsShown(kUpdateDriver));
  wizard_->ClickAndWait(kNext);
  EXPECT_TRUE(IsOnFolderPage());
  wizard_->ClickAndWait(kBack);
  wizard_->WaitUntilActive(kUpdateDriver);  // when the second survey has ended
  wizard_->Keep("driver-after-install");
  ExpectStatus(kInstalled, true);
  ExpectButtons(true, false, true);
  EXPECT_FALSE(IsShown(kSkipDriver));
  wizard_->ClickAndWait(kNext);
  EXPECT_TRUE(IsOnFolderPage());
  CancelEnds();
}

TEST_F(ClickedDriverPage, NextHasTheKeyboardWhenAnInstallIsDue) {
  EnterAndWait("install-due");
  wizard_->Press("space");
  wizard_->WaitUntilActive(kHelp);
  EXPECT_TRUE(fs::exists(staged_ + "cdcacm.inf"));
  CancelEnds();
}

TEST_F(ClickedDriverPage, SkipLeavesTheInstallDue) {
  EnterAndWait("install-due");
  wizard_->ClickAndWait(kSkipDriver);
  EXPECT_TRUE(IsOnFolderPage());
  wizard_->ClickAndWait(kBack);
  wizard_->WaitUntilActive(kSkipDriver);
  ExpectStatus(kInstallDue);
  ExpectButtons(true, true, false);
  CancelEnds();
}

TEST_F(ClickedDriverPage, WithoutRightsSkipIsTheOnlyWayOn) {
  EnterAndWait("no-rights");
  ExpectStatus(kNoRights);
  ExpectButtons(false, true, false);
  EXPECT_FALSE(IsShown(kUpdateDriver));
  wizard_->ClickAndWait(kNext);
  EXPECT_FALSE(IsOnFolderPage());
  wizard_->ClickAndWait(kSkipDriver);
  EXPECT_TRUE(IsOnFolderPage());
  wizard_->ClickAndWait(kBack);
  // Skip has left Next active; the second survey takes it away again.
  wizard_->WaitUntilInactive(kNext);
  ExpectStatus(kNoRights);
  ExpectButtons(false, true, false);
  CancelEnds();
}

TEST_F(ClickedDriverPage, SystemDriverNeedsNothing) {
  EnterAndWait("windows-10");
  ExpectStatus(kSystemDriver, true);
  ExpectButtons(true, false, false);
  EXPECT_FALSE(IsShown(kSkipDriver));
  EXPECT_TRUE(IsShown(kUpdateDriver)) << "shown, though inactive";
  const Pixels status = wizard_->Look(kDriverStatus);
  wizard_->ClickAndWait(kUpdateDriver);
  EXPECT_TRUE(wizard_->Look(kDriverStatus) == status);
  wizard_->ClickAndWait(kNext);
  EXPECT_TRUE(IsOnFolderPage());
  wizard_->ClickAndWait(kBack);
  EXPECT_TRUE(wizard_->Look(kDriverStatus) == status);
  wizard_->ClickAndWait(kBack);
  EXPECT_FALSE(wizard_->IsActive(kBack)) << "the first page";
  wizard_->ClickAndWait(kNext);
  ExpectStatus(kSystemDriver, true);
  EXPECT_FALSE(fs::exists(staged_ + "cdcacm.inf")) << "nothing is staged";
  CancelEnds();
}

TEST_F(ClickedDriverPage, PresentDriverCannotBeUpdatedWithoutRights) {
  EnterAndWait("installed-no-rights");
  ExpectStatus(kInstalled, true);
  ExpectButtons(true, false, false);
  EXPECT_TRUE(IsShown(kUpdateDriver));
  EXPECT_FALSE(IsShown(kSkipDriver));
  wizard_->ClickAndWait(kNext);
  EXPECT_TRUE(IsOnFolderPage());
  CancelEnds();
}

struct UpdateCase {
  const char* scenario;
  const char* text;
};

void PrintTo(const UpdateCase& update, std::ostream* out) {
  *out << update.scenario;
}

class ClickedUpdate : public ClickedDriverPage, public testing::WithParamInterface<UpdateCase> {};

TEST_P(ClickedUpdate, TellsHowManyDevices) {
  EnterAndWait(GetParam().scenario);
  ExpectStatus(kInstalled, true);
  ExpectButtons(true, false, true);
  wizard_->ClickAndWait(kUpdateDriver);
  wizard_->Keep(std::string("driver-updated-") + GetParam().scenario);
  ExpectStatus(GetParam().text, true);
  ExpectButtons(true, false, true);
  wizard_->ClickAndWait(kNext);
  EXPECT_TRUE(IsOnFolderPage());
  CancelEnds();
}

// "many-devices" holds one that is plugged in and three that are absent, each counted.
INSTANTIATE_TEST_SUITE_P(
    Machines, ClickedUpdate,
    testing::Values(
        UpdateCase{"installed", "USB Serial driver is installed.\n\n0 devices updated"},
        UpdateCase{"one-device", "USB Serial driver is installed.\n\n1 devices updated"},
        UpdateCase{"many-devices", "USB Serial driver is installed.\n\n4 devices updated"}),
    [](const auto& test) {
      std::string name = test.param.scenario;
      for (char& c : name) c = c == '-' ? '_' : c;
      return name;
    });

TEST_F(ClickedDriverPage, RefusedInstallShowsTheErrorAndStays) {
  EnterAndWait("refused");
  ExpectStatus(kInstallDue);
  wizard_->ClickAndWait(kNext);
  wizard_->Keep("driver-refused-by-the-system");
  EXPECT_FALSE(IsOnFolderPage());
  ExpectStatus("Driver Installation Failed.\nAn error occurred while installing an INF file:\n" +
               staged_ + "cdcacm.inf\nWindows error: 00000005 = \"Access is denied.\r\n\"");
  ExpectButtons(true, true, false);
  wizard_->ClickAndWait(kNext);  // Next tries again
  EXPECT_FALSE(IsOnFolderPage());
  wizard_->ClickAndWait(kSkipDriver);
  EXPECT_TRUE(IsOnFolderPage());
  CancelEnds();
}

}  // namespace
