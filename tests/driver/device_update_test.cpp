#include "driver/device_update.h"

#include "driver/driver_page.h"
#include "driver/driver_platform.h"
#include "tests/driver/driver_test.h"

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::uint32_t kReinstall = 0x20;

class DeviceUpdate : public DriverTest {
 protected:
  DeviceUpdate() { WriteFile(Staged("cdcacm.inf"), kDriverInf); }

  int UpdateId(const std::string& id = kHardwareId) {
    return update_devices_for_hardware_id(Staged("cdcacm.inf").c_str(), id.c_str());
  }
  int UpdateInf() { return update_devices_for_inf(Staged("cdcacm.inf").c_str()); }
};

// ---- One hardware id --------------------------------------------------------------------------

TEST_F(DeviceUpdate, NoDeviceKnownAndTheUpdateFailingCountsZero) {
  EXPECT_EQ(UpdateId(), 0);
  EXPECT_THAT(Machine.calls,
              ElementsAre("UpdateDevices(0x1234, " + kHardwareId + ", TEMP/cdcacm.inf)",
                          "OpenDeviceSet()", "EnumerateDevice(0)", "CloseDeviceSet(set)"));
}

TEST_F(DeviceUpdate, PresentDeviceIsUpdatedAndAddsNothingInTheWalk) {
  Machine.devices = {Device(true, {kHardwareId})};
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[0].driver, Staged("cdcacm.inf"));
  EXPECT_EQ(Machine.devices[0].config_flags(), 0U);
  EXPECT_THAT(Machine.CallsOf({"SetDeviceProperty"}), IsEmpty());
}

TEST_F(DeviceUpdate, SuccessAddsOneHoweverManyDevicesItServed) {
  Machine.devices = {Device(true, {kHardwareId}), Device(true, {"X", kHardwareId}),
                     Device(true, {"Y"}, {kHardwareId})};
  EXPECT_EQ(UpdateId(), 1);
}

TEST_F(DeviceUpdate, AbsentDeviceIsFlaggedAndCountsOnce) {
  Machine.devices = {Device(false, {"USB\\VID_1&PID_2", kHardwareId})};
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[0].config_flags(), kReinstall);
  EXPECT_THAT(
      Machine.calls,
      ElementsAre("UpdateDevices(0x1234, " + kHardwareId + ", TEMP/cdcacm.inf)", "OpenDeviceSet()",
                  "EnumerateDevice(0)", "GetDeviceProperty(0, 1, 32768)", "GetDeviceNodeStatus(0)",
                  "GetDeviceProperty(0, 10, 4)", "SetDeviceProperty(0, 10, 0x20, 4)",
                  "GetDeviceProperty(0, 2, 32768)", "EnumerateDevice(1)", "CloseDeviceSet(set)"));
}

TEST_F(DeviceUpdate, AbsentDeviceWithTheIdInItsCompatibleIdsCountsOnce) {
  Machine.devices = {Device(false, {"USB\\VID_1&PID_2"}, {"USB\\Class_02", kHardwareId})};
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[0].config_flags(), kReinstall);
}

TEST_F(DeviceUpdate, AbsentDeviceWithTheIdInBothListsCountsTwice) {
  Machine.devices = {Device(false, {kHardwareId}, {kHardwareId})};
  EXPECT_EQ(UpdateId(), 2);
  EXPECT_THAT(
      Machine.CallsOf({"SetDeviceProperty"}),
      ElementsAre("SetDeviceProperty(0, 10, 0x20, 4)", "SetDeviceProperty(0, 10, 0x20, 4)"));
}

TEST_F(DeviceUpdate, PresentAndAbsentDevicesAddUp) {
  Machine.devices = {Device(true, {kHardwareId}), Device(false, {kHardwareId}),
                     Device(false, {"other"}), Device(false, {}, {kHardwareId}),
                     Device(false, {kHardwareId}, {kHardwareId})};
  EXPECT_EQ(UpdateId(), 5);
  EXPECT_EQ(Machine.devices[2].config_flags(), 0U);
}

TEST_F(DeviceUpdate, IdIsComparedWithoutCaseAndAsAWhole) {
  Machine.devices = {Device(false, {"usb\\class_02&subclass_02&prot_01"}),
                     Device(false, {kHardwareId + "&REV_1"}), Device(false, {"USB\\Class_02"})};
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[0].config_flags(), kReinstall);
}

TEST_F(DeviceUpdate, OtherFlagsOfTheDeviceStay) {
  Machine.devices = {Device(false, {kHardwareId})};
  Machine.devices[0].properties[kConfigFlagsProperty] = DwordValue(0x80000401);
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[0].config_flags(), 0x80000421U);
}

TEST_F(DeviceUpdate, DeviceThatIsFlaggedAlreadyIsFlaggedAgainAndCounts) {
  Machine.devices = {Device(false, {kHardwareId})};
  Machine.devices[0].properties[kConfigFlagsProperty] = DwordValue(kReinstall);
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_THAT(Machine.CallsOf({"SetDeviceProperty"}),
              ElementsAre("SetDeviceProperty(0, 10, 0x20, 4)"));
}

TEST_F(DeviceUpdate, ListThatFillsTheBufferIsRead) {
  const std::string filler(32768 - kHardwareId.size() - 3, 'x');
  Machine.devices = {Device(false, {filler, kHardwareId})};
  ASSERT_EQ(Machine.devices[0].properties[kHardwareIdProperty].bytes.size(), 32768U);
  EXPECT_EQ(UpdateId(), 1);
}

TEST_F(DeviceUpdate, ListThatDoesNotFitIsSkipped) {
  Machine.devices = {Device(false, {std::string(32768, 'x'), kHardwareId}, {kHardwareId})};
  EXPECT_EQ(UpdateId(), 1);  // from the other list
}

TEST_F(DeviceUpdate, ListWithoutItsEndIsReadToTheBuffersEndOnly) {
  Machine.devices = {Device(false, {"x"})};
  Machine.devices[0].properties[kHardwareIdProperty].bytes = std::string(32768, 'x');
  EXPECT_EQ(UpdateId(), 0);
}

TEST_F(DeviceUpdate, PropertyOfAnotherTypeIsSkipped) {
  Machine.devices = {Device(false, {kHardwareId})};
  Machine.devices[0].properties[kHardwareIdProperty].type = 1;  // REG_SZ
  EXPECT_EQ(UpdateId(), 0);
}

TEST_F(DeviceUpdate, ListOfAnEarlierDeviceDoesNotSpeakForOneWithout) {
  Machine.devices = {Device(false, {kHardwareId}), Device(false, {})};
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[1].config_flags(), 0U);
}

TEST_F(DeviceUpdate, ListOfNoBytesIsNotTheListOfTheDeviceBefore) {
  Machine.devices = {Device(false, {kHardwareId}), Device(false, {"other"})};
  Machine.devices[1].properties[kHardwareIdProperty].bytes.clear();
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[1].config_flags(), 0U);
}

TEST_F(DeviceUpdate, CompatibleIdsOfNoBytesAreNotTheHardwareIds) {
  Machine.devices = {Device(false, {kHardwareId}, {"other"})};
  Machine.devices[0].properties[kCompatibleIdsProperty].bytes.clear();
  EXPECT_EQ(UpdateId(), 1);
}

TEST_F(DeviceUpdate, ListWithoutItsEndDoesNotGoOnWithTheListOfTheDeviceBefore) {
  Machine.devices = {Device(false, {"1234", kHardwareId}), Device(false, {"other"})};
  Machine.devices[1].properties[kHardwareIdProperty].bytes = "5678";  // no terminator at all
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[1].config_flags(), 0U);
}

TEST_F(DeviceUpdate, IdThatFillsAListWithoutItsEndIsFound) {
  Machine.devices = {Device(false, {std::string(100, 'x')}), Device(false, {"other"})};
  Machine.devices[1].properties[kHardwareIdProperty].bytes = kHardwareId;
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[1].config_flags(), kReinstall);
}

TEST_F(DeviceUpdate, EmptyListOfIdsHoldsNone) {
  Machine.devices = {Device(false, {kHardwareId}), Device(false, {"other"})};
  Machine.devices[1].properties[kHardwareIdProperty] = MultiStringValue({});
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[1].config_flags(), 0U);
}

TEST_F(DeviceUpdate, WindowlessProgramPassesNoParent) {
  NativeWindowHandle = nullptr;
  UpdateId();
  EXPECT_EQ(Machine.calls[0], "UpdateDevices(0x0, " + kHardwareId + ", TEMP/cdcacm.inf)");
}

// ---- Failures ---------------------------------------------------------------------------------

TEST_F(DeviceUpdate, UpdateCallFailsAndAbsentDevicesAreStillFlagged) {
  Machine.devices = {Device(true, {kHardwareId}), Device(false, {kHardwareId})};
  Machine.Fail("UpdateDevices");
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[1].config_flags(), kReinstall);
}

// A board that is plugged in is served when it is next plugged in.
TEST_F(DeviceUpdate, On64BitWindowsOnlyAbsentDevicesAreServed) {
  Machine.devices = {Device(true, {kHardwareId}), Device(false, {kHardwareId})};
  Machine.wow64 = true;
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.devices[0].driver, "");
  EXPECT_EQ(Machine.devices[0].config_flags(), 0U);
  EXPECT_EQ(Machine.devices[1].config_flags(), kReinstall);
}

TEST_F(DeviceUpdate, IdOutsideAsciiIsComparedInOneForm) {
  const std::string id = "USB\\gr\xC3\xBCn";
  Machine.code_page = CodePage::kWestern;
  Machine.devices = {Device(false, {id})};
  WriteFile(Staged("cdcacm.inf"), InfWith("", "[DeviceList]\nA=DriverInstall," + id + "\n"));
  EXPECT_EQ(UpdateInf(), 1);
  EXPECT_THAT(Machine.CallsOf({"UpdateDevices"}),
              ElementsAre("UpdateDevices(0x1234, " + id + ", TEMP/cdcacm.inf)"));
}

TEST_F(DeviceUpdate, InvalidSetEndsTheWalkAndIsClosedJustTheSame) {
  Machine.devices = {Device(false, {kHardwareId})};
  Machine.Fail("OpenDeviceSet");
  EXPECT_EQ(UpdateId(), 0);
  EXPECT_THAT(Machine.CallsOf({"OpenDeviceSet", "EnumerateDevice", "CloseDeviceSet"}),
              ElementsAre("OpenDeviceSet()", "EnumerateDevice(0)", "CloseDeviceSet(invalid)"));
}

TEST_F(DeviceUpdate, EnumerationThatFailsEndsTheWalk) {
  Machine.devices = {Device(false, {kHardwareId}), Device(false, {kHardwareId})};
  Machine.FailNth("EnumerateDevice", 2);
  EXPECT_EQ(UpdateId(), 1);
  EXPECT_EQ(Machine.calls.back(), "CloseDeviceSet(set)");
}

TEST_F(DeviceUpdate, PropertyReadFailsAndOnlyThatTestIsSkipped) {
  Machine.devices = {Device(false, {kHardwareId}, {kHardwareId})};
  Machine.FailNth("GetDeviceProperty", 1);
  EXPECT_EQ(UpdateId(), 1);
}

TEST_F(DeviceUpdate, NodeStatusOfAnyOtherCodeLeavesTheDeviceAlone) {
  for (const std::uint32_t code : {0U, 1U, 5U, 12U, 14U, 19U}) {
    Machine.devices = {Device(false, {kHardwareId})};
    Machine.devices[0].node_status = code;
    EXPECT_EQ(UpdateId(), 0) << code;
    EXPECT_EQ(Machine.devices[0].config_flags(), 0U) << code;
  }
}

TEST_F(DeviceUpdate, NodeStatusThatFailsLeavesTheDeviceAlone) {
  Machine.devices = {Device(false, {kHardwareId})};
  Machine.Fail("GetDeviceNodeStatus");
  EXPECT_EQ(UpdateId(), 0);
  EXPECT_THAT(Machine.CallsOf({"SetDeviceProperty"}), IsEmpty());
}

TEST_F(DeviceUpdate, FlagsThatCanNotBeReadLeaveTheDeviceAlone) {
  Machine.devices = {Device(false, {kHardwareId})};
  Machine.devices[0].properties.erase(kConfigFlagsProperty);
  EXPECT_EQ(UpdateId(), 0);
  EXPECT_THAT(Machine.CallsOf({"SetDeviceProperty"}), IsEmpty());
}

TEST_F(DeviceUpdate, FlagsThatCanNotBeWrittenDoNotCount) {
  Machine.devices = {Device(false, {kHardwareId})};
  Machine.Fail("SetDeviceProperty");
  EXPECT_EQ(UpdateId(), 0);
}

// ---- One INF file -----------------------------------------------------------------------------

TEST_F(DeviceUpdate, DeviceListIsReadAndTheFileClosedLast) {
  Machine.devices = {Device(true, {kHardwareId})};
  EXPECT_EQ(UpdateInf(), 1);
  EXPECT_THAT(
      Machine.calls,
      ElementsAre("OpenInfFile(TEMP/cdcacm.inf)", "FindFirstInfLine(TEMP/cdcacm.inf, DeviceList)",
                  "GetInfLineText(TEMP/cdcacm.inf, 8192)",
                  "UpdateDevices(0x1234, " + kHardwareId + ", TEMP/cdcacm.inf)", "OpenDeviceSet()",
                  "EnumerateDevice(0)", "GetDeviceProperty(0, 1, 32768)", "GetDeviceNodeStatus(0)",
                  "GetDeviceProperty(0, 2, 32768)", "EnumerateDevice(1)", "CloseDeviceSet(set)",
                  "FindNextInfLine(TEMP/cdcacm.inf)", "CloseInfFile(TEMP/cdcacm.inf)"));
}

TEST_F(DeviceUpdate, FileThatIsGoneCountsZeroWithoutAWord) {
  EXPECT_EQ(update_devices_for_inf(Staged("absent.inf").c_str()), 0);
  EXPECT_THAT(Machine.calls, ElementsAre("OpenInfFile(TEMP/absent.inf)"));
}

TEST_F(DeviceUpdate, NoDeviceListCountsZeroAndTheFileIsClosed) {
  WriteFile(Staged("cdcacm.inf"), InfWith("", "[DeviceList.NTamd64]\n%A%=DriverInstall,X\n"));
  EXPECT_EQ(UpdateInf(), 0);
  EXPECT_EQ(Machine.calls.back(), "CloseInfFile(TEMP/cdcacm.inf)");
  EXPECT_THAT(Machine.CallsOf({"UpdateDevices"}), IsEmpty());
}

TEST_F(DeviceUpdate, LineThatCanNotBeReadAddsNothingAndTheNextIsTaken) {
  WriteFile(Staged("cdcacm.inf"),
            InfWith("", "[DeviceList]\nA=DriverInstall,X\nB=DriverInstall,Y\n"));
  Machine.devices = {Device(false, {"X"}), Device(false, {"Y"})};
  Machine.FailNth("GetInfLineText", 1);
  EXPECT_EQ(UpdateInf(), 1);
  EXPECT_EQ(Machine.devices[0].config_flags(), 0U);
  EXPECT_EQ(Machine.devices[1].config_flags(), kReinstall);
}

TEST_F(DeviceUpdate, EveryLineAddsItsCount) {
  WriteFile(Staged("cdcacm.inf"),
            InfWith("", "[DeviceList]\nA=DriverInstall,X\nB=DriverInstall,Y\n"));
  Machine.devices = {Device(true, {"X"}), Device(false, {"Y"}), Device(false, {"X"})};
  EXPECT_EQ(UpdateInf(), 3);
}

struct LineCase {
  const char* situation;
  const char* line;
  std::vector<std::string> ids;  // those that are updated
};

void PrintTo(const LineCase& test, std::ostream* stream) {
  *stream << test.situation;
}

class DeviceListLine : public DriverTest, public ::testing::WithParamInterface<LineCase> {};

TEST_P(DeviceListLine, NamesItsIdOrIsPassedOver) {
  WriteFile(Staged("a.inf"), InfWith("", std::string("[DeviceList]\n") + GetParam().line + "\n"));
  update_devices_for_inf(Staged("a.inf").c_str());
  std::vector<std::string> expected;
  for (const std::string& id : GetParam().ids) {
    expected.push_back("UpdateDevices(0x1234, " + id + ", TEMP/a.inf)");
  }
  EXPECT_THAT(Machine.CallsOf({"UpdateDevices"}), ElementsAreArray(expected));
}

const LineCase kLineCases[] = {
    {"OrdinaryLine", "%A%=DriverInstall, USB\\X", {"USB\\X"}},
    {"LineWithoutAKey", "DriverInstall,USB\\X", {"USB\\X"}},
    {"NothingBehindTheCommaIsPassedOver", "A=DriverInstall,", {}},
    {"FirstFieldAloneIsPassedOver", "A=DriverInstall", {}},
    {"OtherSectionNameIsPassedOver", "A=OtherInstall,USB\\X", {}},
    {"OtherCaseIsPassedOver", "A=driverinstall,USB\\X", {}},
    {"LongerSectionNameIsPassedOver", "A=DriverInstall2,USB\\X", {}},
    {"FurtherFieldBecomesPartOfTheId", "A=DriverInstall,USB\\X,USB\\Y", {"USB\\X,USB\\Y"}},
    {"EmptySecondFieldGivesAnIdThatBeginsWithAComma", "A=DriverInstall,,USB\\Y", {",USB\\Y"}},
};

INSTANTIATE_TEST_SUITE_P(Each, DeviceListLine, ::testing::ValuesIn(kLineCases),
                         [](const auto& test) { return std::string(test.param.situation); });

TEST_F(DeviceUpdate, LineOf8191CharactersIsReadAndALongerOneIsNot) {
  const std::string id(8191 - 14, 'x');
  WriteFile(Staged("cdcacm.inf"), InfWith("", "[DeviceList]\nA=DriverInstall," + id +
                                                  "\nB=" + "DriverInstall," + id + "y\n"));
  UpdateInf();
  EXPECT_THAT(Machine.CallsOf({"UpdateDevices"}),
              ElementsAre("UpdateDevices(0x1234, " + id + ", TEMP/cdcacm.inf)"));
}

// ---- Multi-strings ----------------------------------------------------------------------------

TEST(MultiString, EachStringIsComparedAsAWholeWithoutCase) {
  const char strings[] = "USB\\A\0usb\\b\0";
  EXPECT_EQ(multi_sz_contains(strings, "usb\\a"), 1);
  EXPECT_EQ(multi_sz_contains(strings, "USB\\B"), 1);
  EXPECT_EQ(multi_sz_contains(strings, "USB\\"), 0);
  EXPECT_EQ(multi_sz_contains(strings, "USB\\AB"), 0);
}

TEST(MultiString, NothingBehindTheEmptyStringCounts) {
  const char strings[] = "a\0\0b\0";
  EXPECT_EQ(multi_sz_contains(strings, "b"), 0);
}

TEST(MultiString, EmptyMultiStringHoldsNothing) {
  EXPECT_EQ(multi_sz_contains("\0", "a"), 0);
  EXPECT_EQ(multi_sz_contains("\0", ""), 0);
}

}  // namespace
