// The machine behaves as the system is documented to.
#include "tests/driver/simulated_machine.h"

#include "driver/driver_platform.h"
#include "tests/driver/driver_test.h"
#include "tests/driver/inf_file_text.h"

namespace {

struct CompactCase {
  const char* situation;
  std::string line;
  std::string text;
};

void PrintTo(const CompactCase& test, std::ostream* stream) {
  *stream << test.situation;
}

class CompactText : public ::testing::TestWithParam<CompactCase> {};

TEST_P(CompactText, IsAsDocumented) {
  const InfFileText inf("[A]\n" + GetParam().line + "\n[Strings]\nName=\"a, b\"\nEmpty=\n");
  ASSERT_EQ(inf.FindSection("a")->lines.size(), 1U);
  EXPECT_EQ(inf.CompactText(inf.FindSection("a")->lines[0]), GetParam().text);
}

const CompactCase kCompactCases[] = {
    // The example of the system's documentation for the compact form.
    {"ContinuedLineWithAComment", "HKR, , Foo, 1 , \\    ; This is a comment\n     01, 02, 03",
     "HKR,,Foo,1,01,02,03"},
    {"KeyIsNoPartOfIt", "key = a , b", "a,b"},
    {"QuotesAreTakenOffAndBlanksInThemStay", "\" a \",b", " a ,b"},
    {"CommaAndSemicolonInQuotesAreText", "\"a,b;c\",d ; comment", "a,b;c,d"},
    {"DoubledQuoteInQuotesIsOne", "\"a\"\"b\"", "a\"b"},
    {"StringIsSubstitutedWithoutCase", "%NAME%,x", "a, b,x"},
    {"UnknownStringStands", "%12%\\usbser.sys", "%12%\\usbser.sys"},
    {"DoubledPercentSignIsOne", "100%%", "100%"},
    {"EmptyFieldsStay", ",,a,", ",,a,"},
};

INSTANTIATE_TEST_SUITE_P(Each, CompactText, ::testing::ValuesIn(kCompactCases),
                         [](const auto& test) { return std::string(test.param.situation); });

class Simulation : public DriverTest {};

TEST_F(Simulation, MissingAndEmptySectionHaveNoFirstLine) {
  Machine.inf_files = {{"a.inf", InfWith("", "[Empty]\n; only this\n")}};
  InfFile* file = OpenInfFile("A.INF");
  ASSERT_NE(file, nullptr);
  InfContext line = {};
  EXPECT_FALSE(FindFirstInfLine(file, "Missing", &line));
  EXPECT_EQ(LastSystemError(), kErrorSectionNotFound);
  EXPECT_FALSE(FindFirstInfLine(file, "Empty", &line));
  EXPECT_EQ(LastSystemError(), kErrorLineNotFound);
  EXPECT_TRUE(FindFirstInfLine(file, "VERSION", &line));
  EXPECT_FALSE(FindNextInfLine(&line));
  CloseInfFile(file);
}

TEST_F(Simulation, SectionThatAppearsTwiceIsOne) {
  const InfFileText inf("[A]\na=1\n[B]\nb=1\n[a]\nc=2\n");
  EXPECT_EQ(inf.FindSection("A")->lines.size(), 2U);
}

TEST_F(Simulation, ListIsDoublyTerminatedAndItsSizeSaysSo) {
  Machine.inf_files = {{"a.inf", ""}, {"b.inf", ""}};
  std::uint32_t size = 0;
  ASSERT_TRUE(GetInfFileList(nullptr, 0, &size));
  ASSERT_EQ(size, 13U);
  char list[13];
  EXPECT_FALSE(GetInfFileList(list, 12, nullptr));
  EXPECT_EQ(LastSystemError(), kErrorInsufficientBuffer);
  ASSERT_TRUE(GetInfFileList(list, 13, nullptr));
  EXPECT_EQ(std::string(list, 13), std::string("a.inf\0b.inf\0\0", 13));
}

TEST_F(Simulation, TextNeedsRoomForItsTerminator) {
  Machine.inf_files = {{"a.inf", InfWith("", "[A]\nkey=12345\n")}};
  InfFile* file = OpenInfFile("a.inf");
  char text[6];
  EXPECT_FALSE(GetInfKeyText(file, "A", "KEY", text, 5));
  EXPECT_TRUE(GetInfKeyText(file, "A", "KEY", text, 6));
  EXPECT_STREQ(text, "12345");
  CloseInfFile(file);
}

TEST_F(Simulation, FileWithoutASignatureIsOfTheWrongStyle) {
  Machine.inf_files = {{"a.inf", "[Version]\nClass=Ports\n"}};
  EXPECT_EQ(OpenInfFile("a.inf"), nullptr);
  EXPECT_EQ(LastSystemError(), kErrorWrongInfStyle);
}

TEST_F(Simulation, CopyOfAFileThatIsThereKeepsItsName) {
  Machine.inf_files = {{"oem0.inf", ""}, {"oem4.inf", kDriverInf}};
  WriteFile(Staged("a.inf"), kDriverInf);
  char name[260];
  ASSERT_TRUE(CopyInfFile(Staged("a.inf").c_str(), name, sizeof name));
  EXPECT_STREQ(name, "C:\\WINDOWS\\INF\\oem4.inf");
  EXPECT_EQ(Machine.inf_files.size(), 2U);
}

TEST_F(Simulation, EnumerationWithoutTheRecordsSizeIsRefusedAndNoted) {
  Machine.devices = {Device(true, {"X"})};
  DeviceSet* set = OpenDeviceSet();
  DeviceInfo device = {};
  EXPECT_FALSE(EnumerateDevice(set, 0, &device));
  EXPECT_EQ(LastSystemError(), kErrorInvalidUserBuffer);
  device.size = sizeof device;
  EXPECT_TRUE(EnumerateDevice(set, 0, &device));
  EXPECT_FALSE(EnumerateDevice(set, 0, &device)) << "the size must be set anew";
  CloseDeviceSet(set);
  EXPECT_EQ(Machine.misuses.size(), 2U);
  Machine.misuses.clear();
}

TEST_F(Simulation, UpdateOfADeviceThatHasTheDriverFindsNothingBetter) {
  Machine.devices = {Device(true, {"X"})};
  WriteFile(Staged("a.inf"), kDriverInf);
  EXPECT_TRUE(UpdateDevices(nullptr, "x", Staged("a.inf").c_str()));
  EXPECT_FALSE(UpdateDevices(nullptr, "x", Staged("a.inf").c_str()));
  EXPECT_EQ(LastSystemError(), kErrorNoMoreItems);
  EXPECT_FALSE(UpdateDevices(nullptr, "y", Staged("a.inf").c_str()));
  EXPECT_EQ(LastSystemError(), kErrorNoSuchDevinst);
}

const std::string kRussian = "\xD0\xB6";  // ж, one byte in the Cyrillic code page, two in UTF-8

TEST_F(Simulation, CodePageLimitsATextAndUtf8DoesSoToo) {
  Machine.code_page = CodePage::kCyrillic;
  Machine.inf_files = {{"a.inf", InfWith("", "[A]\nkey=ab" + kRussian + "\n")}};
  InfFile* file = OpenInfFile("a.inf");
  char text[5];
  EXPECT_FALSE(GetInfKeyText(file, "A", "KEY", text, 4));
  EXPECT_TRUE(GetInfKeyText(file, "A", "KEY", text, 5));
  EXPECT_EQ(text, "ab" + kRussian);
  Machine.code_page = CodePage::kWestern;
  EXPECT_TRUE(GetInfKeyText(file, "A", "KEY", text, 4));
  EXPECT_STREQ(text, "ab?");
  CloseInfFile(file);
}

TEST_F(Simulation, ListAsksForTheRoomThatItMayGrowTo) {
  Machine.code_page = CodePage::kCyrillic;
  Machine.inf_files = {{kRussian + ".inf", ""}};
  std::uint32_t size = 0;
  ASSERT_TRUE(GetInfFileList(nullptr, 0, &size));
  ASSERT_EQ(size, 21U);
  char list[21];
  ASSERT_TRUE(GetInfFileList(list, 21, nullptr));
  EXPECT_EQ(std::string(list, 8), kRussian + ".inf" + std::string(2, '\0'));
}

TEST_F(Simulation, MessageIsCutBetweenCharactersAndNoneWhereTheCodePageHasNoRoom) {
  Machine.code_page = CodePage::kCyrillic;
  Machine.messages[5] = kRussian + kRussian + kRussian;
  char text[6] = "";
  GetSystemMessage(5, text, 3);
  EXPECT_STREQ(text, "");
  GetSystemMessage(5, text, 4);
  EXPECT_EQ(text, kRussian);
  GetSystemMessage(5, text, 6);
  EXPECT_EQ(text, kRussian + kRussian);
}

TEST_F(Simulation, UpdateIsRefusedToAGuestOn64BitWindows) {
  Machine.devices = {Device(true, {"X"})};
  Machine.wow64 = true;
  WriteFile(Staged("a.inf"), kDriverInf);
  EXPECT_FALSE(UpdateDevices(nullptr, "x", Staged("a.inf").c_str()));
  EXPECT_EQ(LastSystemError(), kErrorInWow64);
}

TEST_F(Simulation, TemporaryFolderThatDoesNotFitIsNone) {
  Machine.temporary_folder = "C:\\T\\";
  char folder[6];
  EXPECT_EQ(GetTemporaryFolder(folder, 5), 0U);
  EXPECT_EQ(GetTemporaryFolder(folder, 6), 5U);
  EXPECT_STREQ(folder, "C:\\T\\");
}

TEST_F(Simulation, SuccessfulCallLeavesNoCodeBehind) {
  char name[260];
  EXPECT_FALSE(CopyInfFile("/absent/a.inf", name, sizeof name));
  EXPECT_EQ(LastSystemError(), kErrorFileNotFound);
  EXPECT_FALSE(CopyInfFile("/absent/a.inf", name, sizeof name));
  CloseDeviceSet(OpenDeviceSet());
  EXPECT_EQ(LastSystemError(), 0U);
}

}  // namespace
