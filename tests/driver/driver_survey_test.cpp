// The survey by the state it finds: what runs, in which order, and what the page says afterwards.
#include "driver/driver_survey.h"

#include <FL/Fl_Wizard.H>

#include <filesystem>

#include "driver/driver_install.h"
#include "driver/driver_page.h"
#include "tests/driver/driver_test.h"

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

const std::vector<std::string> kVersionLines = {
    "$Windows NT$", "Ports",      "{4D36E978-E325-11CE-BFC1-08002BE10318}",
    "Quirlo",       "cdcacm.cat", "01/02/2014,1.0.0.0"};

const std::vector<std::string> kNoSystemFile = {"OpenInfFile(usbser.inf)"};
const std::vector<std::string> kStagingCalls = {"GetTemporaryFolder(1024)"};
const std::vector<std::string> kAdministratorCall = {"is_user_admin()"};

const std::string kReadyPage =
    "driver Back:active Next:active Cancel:active Skip:hidden Update:active Uninstall:hidden "
    "to:page centred";
const std::string kReadyPageWithoutUpdate =
    "driver Back:active Next:active Cancel:active Skip:hidden Update:inactive Uninstall:hidden "
    "to:page centred";
const std::string kInstallDuePage =
    "driver Back:active Next:active Cancel:active Skip:active Update:hidden Uninstall:hidden "
    "to:install focus:Next top-left";
const std::string kNoRightsPage =
    "driver Back:active Next:inactive Cancel:active Skip:active Update:hidden Uninstall:hidden "
    "to:page top-left";

class Survey : public DriverTest {};

// ---- State on entering, what runs, outcome ----------------------------------------------------

TEST_F(Survey, SystemTestPassesRunsNothingElseAndSaysWindows10) {
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}, {"oem1.inf", kDriverInf}};
  driver_survey(nullptr);
  EXPECT_EQ(SystemDriverFound, 1);
  EXPECT_EQ(DriverReady, 1);
  EXPECT_EQ(SurveyDone, 1);
  EXPECT_EQ(StagedInfCount, 0);
  EXPECT_EQ(Text(), kSystemDriverText);
  EXPECT_EQ(Page(), kReadyPageWithoutUpdate);
  // Neither the search order nor the rights are asked for.
  EXPECT_THAT(
      Machine.calls,
      ElementsAre("OpenInfFile(usbser.inf)",
                  "GetInfKeyText(usbser.inf, UsbSerial_Service_Install, ServiceBinary, 512)",
                  "FindFirstInfLine(usbser.inf, UsbSerial_AddReg)", "FindNextInfLine(usbser.inf)",
                  "GetInfLineText(usbser.inf, 512)", "CloseInfFile(usbser.inf)"));
  EXPECT_THAT(ReadTree(temporary_.path()), IsEmpty());
}

TEST_F(Survey, NoInfMissingRunsAllThreeStepsAndSaysInstalled) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  Machine.SetSearchOrder(0, DwordValue(1));
  driver_survey(nullptr);
  EXPECT_EQ(SystemDriverFound, 0);
  EXPECT_EQ(DriverReady, 1);
  EXPECT_EQ(SurveyDone, 1);
  EXPECT_STREQ(InstalledInfNames[0], "oem1.inf");
  EXPECT_EQ(Text(), kInstalledText);
  EXPECT_EQ(Page(), kReadyPage);
  EXPECT_THAT(
      Machine.calls,
      ElementsAreArray(Joined({kNoSystemFile,
                               kStagingCalls,
                               VersionReadingCalls("TEMP/cdcacm.inf", kVersionLines),
                               {"GetInfFileList(no buffer, 0)", "GetInfFileList(buffer, 10)"},
                               VersionReadingCalls("oem1.inf", kVersionLines),
                               RelaxingCalls(),
                               kAdministratorCall})));
}

TEST_F(Survey, InfMissingRunsAllThreeStepsAndSaysInstallDue) {
  Machine.SetSearchOrder(0, DwordValue(1));
  driver_survey(nullptr);
  EXPECT_EQ(SystemDriverFound, 0);
  EXPECT_EQ(DriverReady, 0);
  EXPECT_EQ(SurveyDone, 1);
  EXPECT_EQ(Text(), kInstallDueText);
  EXPECT_EQ(Page(), kInstallDuePage);
  EXPECT_THAT(
      Machine.calls,
      ElementsAreArray(Joined({kNoSystemFile,
                               kStagingCalls,
                               VersionReadingCalls("TEMP/cdcacm.inf", kVersionLines),
                               {"GetInfFileList(no buffer, 0)", "GetInfFileList(buffer, 1)"},
                               kAdministratorCall})));
  EXPECT_EQ(Machine.search_order(0)->bytes, DwordValue(1).bytes);  // not relaxed before a need
}

TEST_F(Survey, SurveyDoneWithAnInstallDueRunsNothingSlow) {
  driver_survey(nullptr);
  Machine.calls.clear();
  Machine.inf_files = {{"oem1.inf", kDriverInf}, {"usbser.inf", kSystemDriverInf}};
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstallDueText);
  EXPECT_EQ(Page(), kInstallDuePage);
  EXPECT_THAT(Machine.calls, ElementsAreArray(kAdministratorCall));
}

TEST_F(Survey, DriverReadyRunsNothingSlowAndSaysInstalled) {
  DriverReady = 1;
  driver_survey(nullptr);
  EXPECT_EQ(SurveyDone, 0);
  EXPECT_EQ(Text(), kInstalledText);
  EXPECT_EQ(Page(), kReadyPage);
  EXPECT_THAT(Machine.calls, ElementsAreArray(Joined({NoPolicyKeyCalls(), kAdministratorCall})));
}

TEST_F(Survey, DriverReadyAndSystemDriverFoundRunsNothingAtAllAndSaysWindows10) {
  DriverReady = 1;
  SystemDriverFound = 1;
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kSystemDriverText);
  EXPECT_EQ(Page(), kReadyPageWithoutUpdate);
  EXPECT_THAT(Machine.calls, IsEmpty());
}

// ---- A second survey neither stages nor looks up again ----------------------------------------

TEST_F(Survey, SecondRunAfterTheSystemDriverCostsNothing) {
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  driver_survey(nullptr);
  Machine.calls.clear();
  driver_survey(nullptr);
  EXPECT_THAT(Machine.calls, IsEmpty());
  EXPECT_EQ(Text(), kSystemDriverText);
  EXPECT_EQ(Page(), kReadyPageWithoutUpdate);
}

TEST_F(Survey, SecondRunAfterTheInstalledInfKeepsTheRowsAndOnlyRelaxes) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  driver_survey(nullptr);
  const char* path = StagedInfPaths[0];
  const char* name = InstalledInfNames[0];
  std::filesystem::remove(Staged("cdcacm.inf"));
  Machine.calls.clear();
  driver_survey(nullptr);
  EXPECT_EQ(StagedInfPaths[0], path);
  EXPECT_EQ(InstalledInfNames[0], name);
  EXPECT_FALSE(std::filesystem::exists(Staged("cdcacm.inf")));
  EXPECT_THAT(Machine.calls, ElementsAreArray(Joined({NoPolicyKeyCalls(), kAdministratorCall})));
}

// ---- The wanted line first: the look-up runs --------------------------------------------------

TEST_F(Survey, SystemFileWithTheWantedLineFirstFailsAndTheInfLookUpRuns) {
  Machine.inf_files = {
      {"usbser.inf", SystemInf("usbser.sys", kPortPageLine + "HKR,,NTMPDriver,,usbser.sys\n")},
      {"oem1.inf", kDriverInf}};
  driver_survey(nullptr);
  EXPECT_EQ(SystemDriverFound, 0);
  EXPECT_EQ(Text(), kInstalledText);
  EXPECT_THAT(Machine.CallsOf({"GetInfFileList"}), ::testing::SizeIs(2));
}

// ---- Rights -----------------------------------------------------------------------------------

TEST_F(Survey, OrdinaryUserWhoNeedsTheInstallFindsNextDeadAndLeavesWithSkip) {
  Machine.administrator = false;
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kNoRightsText);
  EXPECT_EQ(Page(), kNoRightsPage);
  Click("Skip");
  EXPECT_EQ(Page(),
            "folder Back:active Next:active Cancel:active Skip:active Update:hidden "
            "Uninstall:hidden to:page top-left");
}

TEST_F(Survey, OrdinaryUserWhoComesBackAfterSkipFindsNextDeadAgain) {
  Machine.administrator = false;
  driver_survey(nullptr);
  Click("Skip");  // which made it active
  ReturnToDriverPage();
  driver_survey(nullptr);
  EXPECT_EQ(Page(), kNoRightsPage);
}

TEST_F(Survey, OrdinaryUserWithTheInstalledInfSeesUpdateInactive) {
  Machine.administrator = false;
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstalledText);
  EXPECT_EQ(Page(), kReadyPageWithoutUpdate);
}

TEST_F(Survey, AdministratorOnWindows10SeesUpdateInactive) {
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  driver_survey(nullptr);
  EXPECT_EQ(Page(), kReadyPageWithoutUpdate);
}

TEST_F(Survey, OrdinaryUserOnWindows10SeesTheSame) {
  Machine.administrator = false;
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kSystemDriverText);
  EXPECT_EQ(Page(), kReadyPageWithoutUpdate);
}

TEST_F(Survey, RightsAreAskedForAnewAtEachArrival) {
  Machine.administrator = false;
  driver_survey(nullptr);
  Machine.administrator = true;
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstallDueText);
  EXPECT_EQ(Page(), kInstallDuePage);
}

// ---- Going away and coming back ---------------------------------------------------------------

TEST_F(Survey, ArrivalFromTheFolderPageAfterSkipShowsInstallDueAgainWithoutStagingOrLookUp) {
  driver_survey(nullptr);
  Click("Skip");
  EXPECT_EQ(DriverReady, 0);
  EXPECT_EQ(Text(), kInstallDueText);
  ReturnToDriverPage();
  Machine.calls.clear();
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstallDueText);
  EXPECT_EQ(Page(), kInstallDuePage);
  EXPECT_THAT(Machine.calls, ElementsAreArray(kAdministratorCall));
}

TEST_F(Survey, ArrivalFromTheFolderPageAfterAnInstallShowsInstalledCentredWithUpdateActive) {
  driver_survey(nullptr);
  Click("Next");
  EXPECT_EQ(Wizard->value(), reinterpret_cast<Fl_Widget*>(folder_page_));
  ReturnToDriverPage();
  Machine.calls.clear();
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstalledText);
  EXPECT_EQ(Page(), kReadyPage);
  EXPECT_THAT(Machine.CallsOf({"OpenInfFile", "GetInfFileList", "GetTemporaryFolder"}), IsEmpty());
}

TEST_F(Survey, AfterAnInstallSkipIsHiddenAndUpdateShown) {
  driver_survey(nullptr);
  EXPECT_THAT(Page(), ::testing::HasSubstr("Skip:active Update:hidden"));
  Click("Next");
  ReturnToDriverPage();
  driver_survey(nullptr);
  EXPECT_THAT(Page(), ::testing::HasSubstr("Skip:hidden Update:active"));
}

// ---- Failures count as a negative answer ------------------------------------------------------

TEST_F(Survey, TemporaryFolderThatCanNotBeWrittenSaysInstalled) {
  Machine.temporary_folder = temporary_ / "absent/";
  driver_survey(nullptr);
  EXPECT_EQ(StagedInfCount, 0);
  EXPECT_EQ(DriverReady, 1);
  EXPECT_EQ(Text(), kInstalledText);
  EXPECT_EQ(Page(), kReadyPage);
}

TEST_F(Survey, ListThatCanNotBeReadSaysInstallDue) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  Machine.Fail("GetInfFileList");
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstallDueText);
}

TEST_F(Survey, RelaxingThatFailsChangesNothingOnThePage) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  Machine.SetSearchOrder(0, DwordValue(1));
  Machine.Fail("SetRegistryValue");
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstalledText);
  EXPECT_EQ(Page(), kReadyPage);
}

// ---- More than one INF ------------------------------------------------------------------------

TEST_F(Survey, OneMissingRowOfSeveralMakesTheInstallDue) {
  store_ = nullptr;
  store_ = std::make_unique<TestStore>(
      std::vector<TestEntry>{{"a.inf", InfWith("A=a\n")}, {"b.inf", InfWith("A=b\n")}});
  Machine.inf_files = {{"oem1.inf", InfWith("A=b\n")}};
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstallDueText);
  EXPECT_EQ(InstalledInfNames[0], nullptr);
  EXPECT_STREQ(InstalledInfNames[1], "oem1.inf");
}

}  // namespace
