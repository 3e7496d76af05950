// The test of the system's own usbser.inf.
#include "driver/driver_survey.h"
#include "tests/driver/driver_test.h"

namespace {

using ::testing::ElementsAre;

// The order of calls of a test in which every step succeeds.
const std::vector<std::string> kAllSteps = {
    "OpenInfFile(usbser.inf)",
    "GetInfKeyText(usbser.inf, UsbSerial_Service_Install, ServiceBinary, 512)",
    "FindFirstInfLine(usbser.inf, UsbSerial_AddReg)",
    "FindNextInfLine(usbser.inf)",
    "GetInfLineText(usbser.inf, 512)",
    "CloseInfFile(usbser.inf)"};

const std::string kFirstLine = "HKR,,NTMPDriver,,usbser.sys\n";
const std::string kPortPage = "HKR,,EnumPropPages32,,MsPorts.dll,SerialPortPropPageProvider\n";
const std::string kBinary = "%12%\\usbser.sys";

struct SystemDriverCase {
  const char* situation;
  std::string inf;
  int present;
};

void PrintTo(const SystemDriverCase& test, std::ostream* stream) {
  *stream << test.situation;
}

class SystemDriverFile : public DriverTest,
                         public ::testing::WithParamInterface<SystemDriverCase> {};

TEST_P(SystemDriverFile, DecidesByItsContents) {
  Machine.inf_files = {{"usbser.inf", GetParam().inf}};
  EXPECT_EQ(system_driver_present(), GetParam().present);
  EXPECT_EQ(Machine.calls.front(), "OpenInfFile(usbser.inf)");
  EXPECT_EQ(Machine.calls.back(), "CloseInfFile(usbser.inf)");
}

const SystemDriverCase kSystemDriverCases[] = {
    {"FileOfASystemThatServesTheBoardsPasses", kSystemDriverInf, 1},
    {"FileOfAnOlderSystemFails", kOlderSystemInf, 0},
    {"WantedLineFirstAndSomethingElseSecondFails", SystemInf(kBinary, kPortPage + kFirstLine), 0},
    {"WantedLineThirdFails", SystemInf(kBinary, kFirstLine + kFirstLine + kPortPage), 0},
    {"WantedLineAloneFails", SystemInf(kBinary, kPortPage), 0},
    {"WantedLineSecondOfThreePasses", SystemInf(kBinary, kFirstLine + kPortPage + kFirstLine), 1},
    {"SmallLettersInTheRegistryLinePass",
     SystemInf(kBinary,
               kFirstLine + "hkr,,enumproppages32,,msports.dll,serialportproppageprovider\n"),
     1},
    {"BlankWithinTheQuotesOfTheRegistryLineFails",
     SystemInf(kBinary,
               kFirstLine + "HKR,,EnumPropPages32,,\" MsPorts.dll,SerialPortPropPageProvider\"\n"),
     0},
    {"QuotesInTheTextOfTheRegistryLineFail",
     SystemInf(kBinary,
               kFirstLine +
                   "HKR,,EnumPropPages32,,\"\"\"MsPorts.dll,SerialPortPropPageProvider\"\"\""
                   "\n"),
     0},
    {"BlanksThatTheSystemTakesOffPass",
     SystemInf(
         kBinary,
         kFirstLine + " HKR , , EnumPropPages32 , , MsPorts.dll , SerialPortPropPageProvider \n"),
     1},
    {"FurtherFieldInTheRegistryLineFails",
     SystemInf(kBinary,
               kFirstLine + "HKR,,EnumPropPages32,,MsPorts.dll,SerialPortPropPageProvider,1\n"),
     0},
    {"EmptyAddRegFails", SystemInf(kBinary, ""), 0},
    {"BinaryWithAPathAndInCapitalsPasses",
     SystemInf("\\SystemRoot\\System32\\drivers\\USBSER.SYS", kFirstLine + kPortPage), 1},
    {"BinaryInTheMiddleOfTheValuePasses", SystemInf("x\\myusbser.sys.old", kFirstLine + kPortPage),
     1},
    {"OtherBinaryFails", SystemInf("%12%\\serial.sys", kFirstLine + kPortPage), 0},
    {"EmptyBinaryFails", SystemInf("", kFirstLine + kPortPage), 0},
    {"BinaryOf511CharactersPasses",
     SystemInf(std::string(501, 'x') + "usbser.sys", kFirstLine + kPortPage), 1},
    {"BinaryThatDoesNotFitFails",
     SystemInf(std::string(502, 'x') + "usbser.sys", kFirstLine + kPortPage), 0},
    {"NoServiceSectionFails", InfWith("", "[UsbSerial_AddReg]\n" + kFirstLine + kPortPage), 0},
    {"NoAddRegSectionFails", InfWith("", "[UsbSerial_Service_Install]\nServiceBinary=usbser.sys\n"),
     0},
};

INSTANTIATE_TEST_SUITE_P(Each, SystemDriverFile, ::testing::ValuesIn(kSystemDriverCases),
                         [](const auto& test) { return std::string(test.param.situation); });

class SystemDriver : public DriverTest {};

TEST_F(SystemDriver, StepsRunInOrder) {
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  EXPECT_EQ(system_driver_present(), 1);
  EXPECT_EQ(Machine.calls, kAllSteps);
}

TEST_F(SystemDriver, SecondTestRunsAlsoWhenTheFirstFailed) {
  Machine.inf_files = {{"usbser.inf", SystemInf("serial.sys", kFirstLine + kPortPage)}};
  EXPECT_EQ(system_driver_present(), 0);
  EXPECT_EQ(Machine.calls, kAllSteps);
}

TEST_F(SystemDriver, NoFileMeansNoDriver) {
  EXPECT_EQ(system_driver_present(), 0);
  EXPECT_THAT(Machine.calls, ElementsAre("OpenInfFile(usbser.inf)"));
}

TEST_F(SystemDriver, FileOfTheOldStyleMeansNoDriver) {
  Machine.inf_files = {{"usbser.inf", "[Version]\nClass=Ports\n"}};
  EXPECT_EQ(system_driver_present(), 0);
  EXPECT_THAT(Machine.calls, ElementsAre("OpenInfFile(usbser.inf)"));
}

class SystemDriverStep : public DriverTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(SystemDriverStep, FailureMeansNoDriverAndTheFileIsClosed) {
  Machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  Machine.Fail(GetParam());
  EXPECT_EQ(system_driver_present(), 0);
  EXPECT_EQ(Machine.open_handles, 0);
}

INSTANTIATE_TEST_SUITE_P(Each, SystemDriverStep,
                         ::testing::Values("OpenInfFile", "GetInfKeyText", "FindFirstInfLine",
                                           "FindNextInfLine", "GetInfLineText"),
                         [](const auto& test) { return std::string(test.param); });

}  // namespace
