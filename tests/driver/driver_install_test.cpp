// The install and the update: the events and what they leave, the order of calls, every failure.
#include "driver/driver_install.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Wizard.H>

#include <filesystem>

#include "driver/driver_page.h"
#include "driver/driver_survey.h"
#include "driver/driver_text.h"
#include "engine/install_error.h"
#include "tests/driver/driver_test.h"

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

const std::vector<TestEntry> kThreeInfs = {
    {"a.inf", InfWith("A=a\n", "[DeviceList]\nA=DriverInstall,A\n")},
    {"b.inf", InfWith("A=b\n", "[DeviceList]\nA=DriverInstall,B\n")},
    {"c.inf", InfWith("A=c\n", "[DeviceList]\nA=DriverInstall,C\n")}};

const std::string kFailedCopyWords =
    "Driver Installation Failed.\nAn error occurred while installing an INF file:\n";

class DriverInstall : public DriverTest {
 protected:
  DriverInstall() {
    Machine.SetSearchOrder(0, DwordValue(1));
    Machine.messages[kErrorInvalidData] = "The data is invalid.\r\n";
  }

  std::vector<std::string> Copies() const { return Machine.CallsOf({"CopyInfFile"}); }

  bool OnFolderPage() const {
    return Wizard->value() == reinterpret_cast<Fl_Widget*>(folder_page_);
  }

  // The error text of a copy that fails with the given words of the system, staged in `folder`
  // below the temporary one.
  std::string ErrorText(const std::string& folder, const std::string& message) {
    std::filesystem::create_directories(Staged(folder));
    Machine.temporary_folder = Staged(folder) + "/";
    Machine.messages[kErrorAccessDenied] = message;
    Machine.Fail("CopyInfFile", kErrorAccessDenied);
    stage_driver_files();
    EXPECT_EQ(install_missing_infs(), -1);
    return InstallErrorText();
  }

  // What the text is when `path` and `message` are read as given.
  std::string Words(const std::string& path, const std::string& message) const {
    return kFailedCopyWords + temporary_.path() + "/" + path +
           "/cdcacm.inf\nWindows error: 00000005 = \"" + message + "\"";
  }
};

// ---- Events -----------------------------------------------------------------------------------

TEST_F(DriverInstall, NextWithAllRowsInstalledFillsEachNameSetsReadyAndMovesOn) {
  Stage(kThreeInfs, {"", "", ""});
  driver_survey(nullptr);
  Click("Next");
  EXPECT_STREQ(InstalledInfNames[0], "C:\\WINDOWS\\INF\\oem0.inf");
  EXPECT_STREQ(InstalledInfNames[1], "C:\\WINDOWS\\INF\\oem1.inf");
  EXPECT_STREQ(InstalledInfNames[2], "C:\\WINDOWS\\INF\\oem2.inf");
  EXPECT_EQ(DriverReady, 1);
  EXPECT_EQ(Text(), kInstallDueText);
  // Next stays bound to the install until the survey of the next arrival; a page that is hidden
  // loses the focus.
  EXPECT_EQ(Page(),
            "folder Back:active Next:active Cancel:active Skip:active Update:hidden "
            "Uninstall:hidden to:install top-left");
}

TEST_F(DriverInstall, NextWithAFailingRowKeepsTheNamesBeforeItAndShowsTheErrorOnThePage) {
  Stage(kThreeInfs, {"", "", ""});
  driver_survey(nullptr);
  Machine.FailNth("CopyInfFile", 2);
  const std::string before = Page();
  Click("Next");
  EXPECT_STREQ(InstalledInfNames[0], "C:\\WINDOWS\\INF\\oem0.inf");
  EXPECT_EQ(InstalledInfNames[1], nullptr);
  EXPECT_EQ(InstalledInfNames[2], nullptr);
  EXPECT_EQ(DriverReady, 0);
  EXPECT_EQ(DriverStatusBox->label(), InstallErrorText());
  EXPECT_EQ(Text(), kFailedCopyWords + Staged("b.inf") +
                        "\nWindows error: 0000000D = \"The data is invalid.\r\n\"");
  EXPECT_EQ(Page(), before);  // still on the page, still bound to the install
}

TEST_F(DriverInstall, UpdateChangesTheTextAndNothingElse) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  driver_survey(nullptr);
  const std::string before = Page();
  const char* name = InstalledInfNames[0];
  Click("Update");
  EXPECT_EQ(InstalledInfNames[0], name);
  EXPECT_EQ(DriverReady, 1);
  EXPECT_EQ(Text(), "USB Serial driver is installed.\n\n0 devices updated");
  EXPECT_EQ(Page(), before);
}

TEST_F(DriverInstall, SkipChangesNoNameAndLeavesReadyClear) {
  driver_survey(nullptr);
  Click("Skip");
  EXPECT_EQ(InstalledInfNames[0], nullptr);
  EXPECT_EQ(DriverReady, 0);
  EXPECT_EQ(Text(), kInstallDueText);
  EXPECT_TRUE(OnFolderPage());
}

// ---- The order of calls -----------------------------------------------------------------------

TEST_F(DriverInstall, InstallRelaxesFirstThenCopiesAndUpdatesRowByRow) {
  Stage({kThreeInfs[0], kThreeInfs[1]}, {"", ""});
  Machine.copy_deletes_source = false;
  Machine.devices = {Device(false, {"B"})};
  EXPECT_EQ(install_missing_infs(), 0);
  EXPECT_THAT(Machine.calls,
              ElementsAreArray(Joined(
                  {RelaxingCalls(),
                   {"CopyInfFile(TEMP/a.inf, 260)", "OpenInfFile(TEMP/a.inf)",
                    "FindFirstInfLine(TEMP/a.inf, DeviceList)", "GetInfLineText(TEMP/a.inf, 8192)",
                    "UpdateDevices(0x1234, A, TEMP/a.inf)", "OpenDeviceSet()", "EnumerateDevice(0)",
                    "GetDeviceProperty(0, 1, 32768)", "GetDeviceProperty(0, 2, 32768)",
                    "EnumerateDevice(1)", "CloseDeviceSet(set)", "FindNextInfLine(TEMP/a.inf)",
                    "CloseInfFile(TEMP/a.inf)"},
                   {"CopyInfFile(TEMP/b.inf, 260)", "OpenInfFile(TEMP/b.inf)",
                    "FindFirstInfLine(TEMP/b.inf, DeviceList)", "GetInfLineText(TEMP/b.inf, 8192)",
                    "UpdateDevices(0x1234, B, TEMP/b.inf)", "OpenDeviceSet()", "EnumerateDevice(0)",
                    "GetDeviceProperty(0, 1, 32768)", "GetDeviceNodeStatus(0)",
                    "GetDeviceProperty(0, 10, 4)", "SetDeviceProperty(0, 10, 0x20, 4)",
                    "GetDeviceProperty(0, 2, 32768)", "EnumerateDevice(1)", "CloseDeviceSet(set)",
                    "FindNextInfLine(TEMP/b.inf)", "CloseInfFile(TEMP/b.inf)"}})));
}

TEST_F(DriverInstall, UpdateRelaxesLast) {
  Stage({kThreeInfs[0]}, {"oem1.inf"});
  EXPECT_EQ(update_installed_infs(), 0);
  EXPECT_THAT(Machine.calls,
              ElementsAreArray(Joined(
                  {{"OpenInfFile(TEMP/a.inf)", "FindFirstInfLine(TEMP/a.inf, DeviceList)",
                    "GetInfLineText(TEMP/a.inf, 8192)", "UpdateDevices(0x1234, A, TEMP/a.inf)",
                    "OpenDeviceSet()", "EnumerateDevice(0)", "CloseDeviceSet(set)",
                    "FindNextInfLine(TEMP/a.inf)", "CloseInfFile(TEMP/a.inf)"},
                   RelaxingCalls()})));
}

TEST_F(DriverInstall, FailedCopyAsksForItsCodeAtOnceAndThenForTheWords) {
  Stage({kThreeInfs[0]}, {""});
  Machine.Fail("CopyInfFile");
  EXPECT_EQ(install_missing_infs(), -1);
  EXPECT_THAT(Machine.calls,
              ElementsAreArray(Joined({RelaxingCalls(),
                                       {"CopyInfFile(TEMP/a.inf, 260)", "LastSystemError()",
                                        "GetSystemMessage(0xD, 800)"}})));
}

// ---- Rows -------------------------------------------------------------------------------------

TEST_F(DriverInstall, OnlyRowsWithoutANameAreCopied) {
  Stage(kThreeInfs, {"", "oem5.inf", ""});
  EXPECT_EQ(install_missing_infs(), 0);
  EXPECT_THAT(Copies(),
              ElementsAre("CopyInfFile(TEMP/a.inf, 260)", "CopyInfFile(TEMP/c.inf, 260)"));
  EXPECT_STREQ(InstalledInfNames[1], "oem5.inf");
}

TEST_F(DriverInstall, SecondClickAfterAFailedCopyRepeatsTheFailedRowAndThoseAfterIt) {
  Stage(kThreeInfs, {"", "", ""});
  driver_survey(nullptr);
  Machine.FailNth("CopyInfFile", 2);
  Click("Next");
  EXPECT_THAT(Copies(),
              ElementsAre("CopyInfFile(TEMP/a.inf, 260)", "CopyInfFile(TEMP/b.inf, 260)"));
  Machine.calls.clear();
  Click("Next");
  EXPECT_THAT(Copies(),
              ElementsAre("CopyInfFile(TEMP/b.inf, 260)", "CopyInfFile(TEMP/c.inf, 260)"));
  EXPECT_EQ(DriverReady, 1);
  EXPECT_TRUE(OnFolderPage());
}

TEST_F(DriverInstall, NoRowReturnsSuccess) {
  EXPECT_EQ(StagedInfCount, 0);
  EXPECT_EQ(install_missing_infs(), 0);
  EXPECT_THAT(Machine.calls, ElementsAreArray(RelaxingCalls()));
}

TEST_F(DriverInstall, UpdateServesOnlyRowsWithAName) {
  Stage(kThreeInfs, {"oem1.inf", "", "oem2.inf"});
  Machine.devices = {Device(false, {"A"}), Device(false, {"B"}), Device(false, {"C"})};
  EXPECT_EQ(update_installed_infs(), 2);
  EXPECT_EQ(Machine.devices[1].config_flags(), 0U);
}

// ---- The staged file after the copy -----------------------------------------------------------

TEST_F(DriverInstall, StagedInfThatTheSystemDeletedIsNoFailureAndTheCatalogStays) {
  driver_survey(nullptr);
  Machine.devices = {Device(true, {kHardwareId}), Device(false, {kHardwareId})};
  Click("Next");
  EXPECT_FALSE(std::filesystem::exists(Staged("cdcacm.inf")));
  EXPECT_TRUE(std::filesystem::exists(Staged("cdcacm.cat")));
  EXPECT_THAT(Machine.CallsOf({"UpdateDevices"}), IsEmpty());
  EXPECT_EQ(DriverReady, 1);
  EXPECT_TRUE(OnFolderPage());
}

TEST_F(DriverInstall, StagedInfThatIsStillThereServesTheDevices) {
  driver_survey(nullptr);
  Machine.copy_deletes_source = false;
  Machine.devices = {Device(true, {kHardwareId}), Device(false, {kHardwareId})};
  Click("Next");
  EXPECT_EQ(Machine.devices[0].driver, Staged("cdcacm.inf"));
  EXPECT_EQ(Machine.devices[1].config_flags(), 0x20U);
  EXPECT_EQ(Text(), kInstallDueText);  // the count is shown nowhere
}

TEST_F(DriverInstall, InstalledCopyIsNeverUsedAsThePath) {
  driver_survey(nullptr);
  Machine.calls.clear();
  Click("Next");
  EXPECT_THAT(Machine.CallsOf({"OpenInfFile"}), ElementsAre("OpenInfFile(TEMP/cdcacm.inf)"));
}

TEST_F(DriverInstall, DriverInstalledByOneRunIsFoundByTheNext) {
  driver_survey(nullptr);
  Click("Next");
  ResetDriverSurvey();
  driver_survey(nullptr);
  EXPECT_STREQ(InstalledInfNames[0], "oem0.inf");
  EXPECT_EQ(DriverReady, 1);
}

// ---- Update -----------------------------------------------------------------------------------

// Goes over what earlier calls have left on the stack.
[[gnu::noinline]] void OverwriteStack() {
  volatile char bytes[65536];
  for (std::size_t i = 0; i < sizeof bytes; ++i) bytes[i] = '#';
}

class UpdateDriver : public DriverInstall {
 protected:
  std::string TextAfterUpdate(const std::vector<SimulatedDevice>& devices) {
    Machine.inf_files = {{"oem1.inf", kDriverInf}};
    Machine.devices = devices;
    driver_survey(nullptr);
    Click("Update");
    return Text();
  }
};

TEST_F(UpdateDriver, NoDeviceOfTheIdKnownReportsZero) {
  EXPECT_EQ(TextAfterUpdate({Device(true, {"X"})}),
            "USB Serial driver is installed.\n\n0 devices updated");
}

TEST_F(UpdateDriver, OneDeviceIsReportedInTheSameWords) {
  EXPECT_EQ(TextAfterUpdate({Device(true, {kHardwareId})}),
            "USB Serial driver is installed.\n\n1 devices updated");
}

TEST_F(UpdateDriver, ManyDevicesAreAddedUp) {
  std::vector<SimulatedDevice> devices(40, Device(false, {kHardwareId}, {kHardwareId}));
  devices.push_back(Device(true, {kHardwareId}));
  EXPECT_EQ(TextAfterUpdate(devices), "USB Serial driver is installed.\n\n81 devices updated");
}

TEST_F(UpdateDriver, TextOutlivesTheCallback) {
  TextAfterUpdate({Device(true, {kHardwareId})});
  OverwriteStack();
  EXPECT_EQ(Text(), "USB Serial driver is installed.\n\n1 devices updated");
}

TEST_F(UpdateDriver, SecondClickShowsItsOwnCount) {
  TextAfterUpdate({Device(true, {kHardwareId})});
  Click("Update");
  EXPECT_EQ(Text(), "USB Serial driver is installed.\n\n0 devices updated");
}

TEST_F(UpdateDriver, ComingBackToThePageShowsThePlainTextAgain) {
  TextAfterUpdate({});
  driver_survey(nullptr);
  EXPECT_EQ(Text(), kInstalledText);
}

TEST_F(UpdateDriver, AfterAnInstallThatTookTheStagedFileThereIsNothingToUpdateFrom) {
  driver_survey(nullptr);
  Click("Next");
  ReturnToDriverPage();
  driver_survey(nullptr);
  Machine.devices = {Device(true, {kHardwareId})};
  Click("Update");
  EXPECT_EQ(Text(), "USB Serial driver is installed.\n\n0 devices updated");
}

// ---- Failures ---------------------------------------------------------------------------------

TEST_F(DriverInstall, RelaxingThatFailsIsIgnoredAndTheWorkGoesOn) {
  Stage(kThreeInfs, {"", "", ""});
  Machine.Fail("OpenMachineKey");
  EXPECT_EQ(install_missing_infs(), 0);
  EXPECT_THAT(Copies(), SizeIs(3));
}

TEST_F(DriverInstall, SearchOrderOfZeroOrTwoIsLeftUntouchedByInstallAndUpdate) {
  for (const std::uint32_t order : {0U, 2U}) {
    Machine.SetSearchOrder(0, DwordValue(order));
    EXPECT_EQ(install_missing_infs(), 0);
    update_installed_infs();
    EXPECT_EQ(Machine.search_order(0)->bytes, DwordValue(order).bytes);
  }
  Machine.SetSearchOrder(0, {1, "1"});
  install_missing_infs();
  EXPECT_EQ(Machine.search_order(0)->bytes, "1");
  EXPECT_THAT(Machine.CallsOf({"SetRegistryValue"}), IsEmpty());
}

class FailureAfterTheCopy : public DriverInstall,
                            public ::testing::WithParamInterface<const char*> {};

TEST_P(FailureAfterTheCopy, IsNoFailureOfTheInstallAndHasNoMessage) {
  driver_survey(nullptr);
  Machine.copy_deletes_source = false;
  Machine.devices = {Device(false, {kHardwareId})};
  Machine.Fail(GetParam());
  Click("Next");
  EXPECT_EQ(DriverReady, 1);
  EXPECT_TRUE(OnFolderPage());
  EXPECT_STREQ(InstallErrorText(), "");
  EXPECT_EQ(Machine.devices[0].config_flags(),
            std::string(GetParam()) == "UpdateDevices" ? 0x20U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Each, FailureAfterTheCopy,
                         ::testing::Values("OpenInfFile", "FindFirstInfLine", "GetInfLineText",
                                           "UpdateDevices", "OpenDeviceSet", "EnumerateDevice",
                                           "GetDeviceProperty", "GetDeviceNodeStatus",
                                           "SetDeviceProperty"),
                         [](const auto& test) { return std::string(test.param); });

TEST_F(DriverInstall, FailureOfALaterRowDoesNotTouchTheDevicesOfThatRow) {
  Stage(kThreeInfs, {"", "", ""});
  Machine.copy_deletes_source = false;
  Machine.FailNth("CopyInfFile", 2);
  EXPECT_EQ(install_missing_infs(), -1);
  EXPECT_THAT(Machine.CallsOf({"UpdateDevices"}),
              ElementsAre("UpdateDevices(0x1234, A, TEMP/a.inf)"));
}

TEST_F(DriverInstall, WithoutRightsTheCopyIsRefused) {
  Stage({kThreeInfs[0]}, {""});
  Machine.administrator = false;
  Machine.messages[kErrorAccessDenied] = "Access is denied.\r\n";
  EXPECT_EQ(install_missing_infs(), -1);
  EXPECT_EQ(
      std::string(InstallErrorText()),
      kFailedCopyWords + Staged("a.inf") + "\nWindows error: 00000005 = \"Access is denied.\r\n\"");
}

TEST_F(DriverInstall, CodeWithoutWordsLeavesTheQuotesEmpty) {
  EXPECT_EQ(ErrorText("x", ""), Words("x", ""));
  Machine.Fail("CopyInfFile", 0xE0000247);
  EXPECT_EQ(install_missing_infs(), -1);
  EXPECT_EQ(std::string(InstallErrorText()),
            kFailedCopyWords + Staged("x/cdcacm.inf") + "\nWindows error: E0000247 = \"\"");
}

// ---- The error text as a format ---------------------------------------------------------------

TEST_F(DriverInstall, TextDirectiveInThePathPrintsNothing) {
  EXPECT_EQ(ErrorText("a%sb", "No."), Words("ab", "No."));
}

TEST_F(DriverInstall, CountDirectiveInThePathStoresAndPrintsNothing) {
  EXPECT_EQ(ErrorText("a%nb", "No."), Words("ab", "No."));
}

TEST_F(DriverInstall, NumberDirectiveInThePathPrintsNothing) {
  EXPECT_EQ(ErrorText("a%db", "No."), Words("ab", "No."));
}

TEST_F(DriverInstall, DoubledPercentSignInThePathBecomesOne) {
  EXPECT_EQ(ErrorText("a%%b", "No."), Words("a%b", "No."));
}

TEST_F(DriverInstall, PercentSignBeforeASeparatorInThePathStands) {
  EXPECT_EQ(ErrorText("100%", "No."), Words("100%", "No."));
}

TEST_F(DriverInstall, DirectivesInTheSystemsWordsAreReadAsWell) {
  EXPECT_EQ(ErrorText("x", "100%% of %s"), Words("x", "100% of "));
}

TEST_F(DriverInstall, LonePercentSignAtTheEndOfTheSystemsWordsStands) {
  EXPECT_EQ(ErrorText("x", "100%"), Words("x", "100%"));
}

TEST_F(DriverInstall, TextIsCutAt511CharactersAfterTheSecondReading) {
  const std::string message = "%%" + std::string(700, 'm');
  const std::string whole = Words("x", "%" + std::string(700, 'm'));
  EXPECT_EQ(ErrorText("x", message), whole.substr(0, 511));
}

TEST_F(DriverInstall, LongestWordsOfTheSystemFitTheirBuffer) {
  ErrorText("x", std::string(799, 'm'));
  EXPECT_THAT(std::string(InstallErrorText()), SizeIs(511));
  Machine.messages[kErrorAccessDenied] = std::string(800, 'm');
  EXPECT_EQ(install_missing_infs(), -1);
  EXPECT_EQ(std::string(InstallErrorText()), Words("x", ""));  // they don't fit, so there are none
}

TEST_F(DriverInstall, WordsThatGrowBeyondTheirBufferAreReadToTheLastWholeCharacter) {
  Machine.code_page = CodePage::kCyrillic;
  std::string words;
  for (int i = 0; i < 400; ++i) words += "\xD0\xB6";
  const std::string whole = Words("x", words.substr(0, 798));
  EXPECT_EQ(ErrorText("x", words), whole.substr(0, 511));
  // Directives print nothing, so that the end of the words is seen behind them.
  std::string directives;
  for (int i = 0; i < 390; ++i) directives += "%n";
  Machine.messages[kErrorAccessDenied] = directives + words.substr(0, 38);
  EXPECT_EQ(install_missing_infs(), -1);
  EXPECT_EQ(std::string(InstallErrorText()), Words("x", words.substr(0, 18)));
}

TEST_F(DriverInstall, TextIsComposedAt2047CharactersBeforeTheSecondReading) {
  // The directives print nothing, so what is left shows where the first step cut.
  std::string path;
  for (int i = 0; i < 940; ++i) path += "%n";
  path += std::string(1000, 'x');
  StagedInfCount = 1;
  StagedInfPaths[0] = duplicate_text(path.c_str());
  Machine.Fail("CopyInfFile");
  EXPECT_EQ(install_missing_infs(), -1);
  EXPECT_EQ(std::string(InstallErrorText()),
            kFailedCopyWords + std::string(2047 - kFailedCopyWords.size() - 1880, 'x'));
}

}  // namespace
