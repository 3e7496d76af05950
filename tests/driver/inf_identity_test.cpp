#include "driver/inf_identity.h"

#include <cstdlib>

#include "tests/driver/driver_test.h"

namespace {

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class VersionText : public DriverTest {
 protected:
  // The text of a file of the INF folder, by its name.
  std::string Read(const std::string& content) {
    Machine.inf_files = {{"oem1.inf", content}};
    char buffer[kVersionTextSize];
    const int length = read_inf_version_text("oem1.inf", buffer);
    return std::string(buffer, static_cast<std::size_t>(length));
  }
};

TEST_F(VersionText, ValuesStandEndToEndWithoutKeysAndWithStringsSubstituted) {
  EXPECT_EQ(Read(kDriverInf), kDriverVersionText);
}

TEST_F(VersionText, EachLineGetsTheRoomThatIsLeft) {
  EXPECT_EQ(Read(InfWith("A=12345\nB=67\n")), "$Windows NT$1234567");
  EXPECT_THAT(Machine.calls,
              ElementsAreArray(VersionReadingCalls("oem1.inf", {"$Windows NT$", "12345", "67"})));
}

TEST_F(VersionText, NoSeparatorStandsBetweenTheLines) {
  EXPECT_EQ(Read(InfWith("A=a\nB=bc\n")), Read(InfWith("A=ab\nB=c\n")));
}

TEST_F(VersionText, FileThatCanNotBeOpenedHasNoText) {
  char buffer[kVersionTextSize] = "old";
  EXPECT_EQ(read_inf_version_text("absent.inf", buffer), 0);
  EXPECT_STREQ(buffer, "");
  EXPECT_THAT(Machine.calls, ElementsAreArray({"OpenInfFile(absent.inf)"}));
}

TEST_F(VersionText, SectionThatCanNotBeFoundHasNoText) {
  Machine.Fail("FindFirstInfLine");
  EXPECT_EQ(Read(kDriverInf), "");
  EXPECT_EQ(Machine.calls.back(), "CloseInfFile(oem1.inf)");
}

TEST_F(VersionText, LineThatCanNotBeReadIsPassedOver) {
  Machine.FailNth("GetInfLineText", 2);
  EXPECT_EQ(Read(InfWith("A=12345\nB=67\n")), "$Windows NT$67");
}

TEST_F(VersionText, LineThatFitsInTheCodePageAloneIsPassedOver) {
  Machine.code_page = CodePage::kCyrillic;
  std::string grown = "a";
  while (grown.size() < kVersionTextSize - 12) grown += "\xD0\xB6";  // 12 are the signature's
  EXPECT_EQ(Read(InfWith("A=" + grown + "\nB=y\n")), "$Windows NT$y");
  grown.erase(grown.size() - 2);
  EXPECT_EQ(Read(InfWith("A=" + grown + "\nB=y\n")), "$Windows NT$" + grown);
}

TEST_F(VersionText, TextThatFillsTheBufferIsKeptAndAllBehindItIsPassedOver) {
  const std::string fill(kVersionTextSize - 1 - 12, 'x');  // 12 are the signature's
  EXPECT_EQ(Read(InfWith("A=" + fill + "\nB=y\n")), "$Windows NT$" + fill);
}

TEST_F(VersionText, LineOneCharacterTooLongIsPassedOverAndTheNextIsRead) {
  const std::string too_long(kVersionTextSize - 12, 'x');
  EXPECT_EQ(Read(InfWith("A=" + too_long + "\nB=y\n")), "$Windows NT$y");
}

class InstalledInf : public DriverTest {
 protected:
  // The match for the staged driver among the machine's files, "" for none.
  std::string Find() {
    WriteFile(Staged("cdcacm.inf"), kDriverInf);
    char* name = find_installed_inf(Staged("cdcacm.inf").c_str());
    std::string found = name == nullptr ? "" : name;
    std::free(name);
    return found;
  }
};

TEST_F(InstalledInf, CopyUnderAnotherNameIsFound) {
  Machine.inf_files = {{"oem0.inf", InfWith("Class=Modem\n")}, {"OEM12.INF", kDriverInf}};
  EXPECT_EQ(Find(), "OEM12.INF");
}

TEST_F(InstalledInf, NameThatTheCodePageHasIsOpenedAndOneThatItLacksIsNot) {
  Machine.code_page = CodePage::kWestern;
  Machine.inf_files = {{"\xD0\xB6oem.inf", kDriverInf}, {"gr\xC3\xBCnoem.inf", kDriverInf}};
  EXPECT_EQ(Find(), "gr\xC3\xBCnoem.inf");
  EXPECT_THAT(Machine.CallsOf({"OpenInfFile"}),
              ElementsAreArray({"OpenInfFile(TEMP/cdcacm.inf)", "OpenInfFile(?oem.inf)",
                                "OpenInfFile(gr\xC3\xBCnoem.inf)"}));
}

TEST_F(InstalledInf, FirstOfSeveralCopiesIsTakenAndNothingBehindItIsOpened) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}, {"oem2.inf", kDriverInf}};
  EXPECT_EQ(Find(), "oem1.inf");
  EXPECT_THAT(Machine.CallsOf({"OpenInfFile"}),
              ElementsAreArray({"OpenInfFile(TEMP/cdcacm.inf)", "OpenInfFile(oem1.inf)"}));
}

TEST_F(InstalledInf, OnlyNamesWithOemAreOpened) {
  Machine.inf_files = {{"usbser.inf", kDriverInf},
                       {"cdcacm.inf", kDriverInf},
                       {"my_Oem_file.inf", InfWith("")},
                       {"ports.inf", kDriverInf}};
  EXPECT_EQ(Find(), "");
  EXPECT_THAT(Machine.CallsOf({"OpenInfFile"}),
              ElementsAreArray({"OpenInfFile(TEMP/cdcacm.inf)", "OpenInfFile(my_Oem_file.inf)"}));
}

TEST_F(InstalledInf, NameThatIsTheWholeStagedPathIsOpened) {
  std::string path = Staged("cdcacm.inf");
  for (char& letter : path) {
    if (letter == 'c') letter = 'C';
  }
  Machine.inf_files = {{path, kDriverInf}};
  Find();
  EXPECT_THAT(Machine.CallsOf({"OpenInfFile"}), ::testing::SizeIs(2));
}

TEST_F(InstalledInf, NewerDriverVerIsAnotherDriver) {
  std::string newer = kDriverInf;
  newer.replace(newer.find("1.0.0.0"), 7, "1.0.0.1");
  Machine.inf_files = {{"oem1.inf", newer}};
  EXPECT_EQ(Find(), "");
}

TEST_F(InstalledInf, OtherCaseInTheVersionIsAnotherDriver) {
  std::string other = kDriverInf;
  other.replace(other.find("Ports"), 5, "PORTS");
  Machine.inf_files = {{"oem1.inf", other}};
  EXPECT_EQ(Find(), "");
}

TEST_F(InstalledInf, TextThatOnlyBeginsAlikeIsAnotherDriver) {
  std::string longer = kDriverInf;
  longer.replace(longer.find("1.0.0.0 "), 8, "1.0.0.0x");
  Machine.inf_files = {{"oem1.inf", longer}};
  EXPECT_EQ(Find(), "");
}

TEST_F(InstalledInf, EverythingOutsideTheVersionMayDiffer) {
  Machine.inf_files = {{"oem1.inf", kDriverInf + "[More]\nx=y\n"}};
  EXPECT_EQ(Find(), "oem1.inf");
}

TEST_F(InstalledInf, CallsAreInOrder) {
  Machine.inf_files = {{"ports.inf", ""}, {"oem1.inf", InfWith("A=b\n")}};
  WriteFile(Staged("cdcacm.inf"), InfWith("A=c\n"));
  EXPECT_EQ(find_installed_inf(Staged("cdcacm.inf").c_str()), nullptr);
  EXPECT_THAT(
      Machine.calls,
      ElementsAreArray(Joined({VersionReadingCalls("TEMP/cdcacm.inf", {"$Windows NT$", "c"}),
                               {"GetInfFileList(no buffer, 0)", "GetInfFileList(buffer, 20)"},
                               VersionReadingCalls("oem1.inf", {"$Windows NT$", "b"})})));
}

TEST_F(InstalledInf, StagedFileWithoutATextIsNotLookedFor) {
  Machine.inf_files = {{"oem1.inf", ""}};
  EXPECT_EQ(find_installed_inf(Staged("absent.inf").c_str()), nullptr);
  EXPECT_THAT(Machine.CallsOf({"GetInfFileList"}), IsEmpty());
}

TEST_F(InstalledInf, InstalledFileThatCanNotBeOpenedDoesNotMatch) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}, {"oem2.inf", kDriverInf}};
  Machine.FailNth("OpenInfFile", 2);
  EXPECT_EQ(Find(), "oem2.inf");
}

TEST_F(InstalledInf, SizeOfTheListFails) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  Machine.FailNth("GetInfFileList", 1);
  EXPECT_EQ(Find(), "");
  EXPECT_THAT(Machine.CallsOf({"GetInfFileList"}), ::testing::SizeIs(1));
}

TEST_F(InstalledInf, FetchingTheListFails) {
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  Machine.FailNth("GetInfFileList", 2);
  EXPECT_EQ(Find(), "");
}

TEST_F(InstalledInf, EmptyListHoldsNoMatch) {
  EXPECT_EQ(Find(), "");
  EXPECT_THAT(Machine.CallsOf({"GetInfFileList"}),
              ElementsAreArray({"GetInfFileList(no buffer, 0)", "GetInfFileList(buffer, 1)"}));
}

}  // namespace
