// The driver page's operations on a Windows whose code page isn't UTF-8, called under Wine through
// code_page_probe: every text comes out in UTF-8, whatever the system's calls answer.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/run_program.h"

namespace {

const std::string kRussian = "\xD0\xB6";       // ж, one byte in code page 1251 and two in UTF-8
const std::string kJapanese = "\xE3\x83\xA6";  // ユ, two bytes in code page 932 and three in UTF-8

std::string Repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

// What `operation` gives where the system, in this code page, answers with `answer`.
std::string Asked(const std::string& operation, int code_page, const std::string& answer) {
  const ProgramResult result =
      RunProgram(CODE_PAGE_PROBE, {std::to_string(code_page), operation, answer});
  EXPECT_EQ(result.status, 0);
  return result.output.substr(0, result.output.rfind('\n'));
}

TEST(CodePageMessage, IsGivenInUtf8) {
  EXPECT_EQ(Asked("message", 1251, "No " + kRussian), "No " + kRussian);
  EXPECT_EQ(Asked("message", 65001, "No " + kRussian), "No " + kRussian);
}

TEST(CodePageMessage, OneThatGrowsBeyondTheBufferIsCutBetweenCharactersAndTerminated) {
  EXPECT_EQ(Asked("message", 1251, Repeated(kRussian, 400)), Repeated(kRussian, 399));
  EXPECT_EQ(Asked("message", 1251, "a" + Repeated(kRussian, 399)), "a" + Repeated(kRussian, 399));
  EXPECT_EQ(Asked("message", 1251, Repeated(kRussian, 799)), Repeated(kRussian, 399));
  EXPECT_EQ(Asked("message", 932, Repeated(kJapanese, 399)), Repeated(kJapanese, 266));
}

TEST(CodePageMessage, OneThatDoesNotFitInTheCodePageIsNone) {
  EXPECT_EQ(Asked("message", 1251, Repeated(kRussian, 800)), "");
}

class CodePageLine : public testing::TestWithParam<const char*> {};

TEST_P(CodePageLine, IsGivenInUtf8) {
  EXPECT_EQ(Asked(GetParam(), 1252, "gr\xC3\xBCn"), "gr\xC3\xBCn");
  EXPECT_EQ(Asked(GetParam(), 1251, kRussian), kRussian);
  EXPECT_EQ(Asked(GetParam(), 65001, kRussian), kRussian);
}

TEST_P(CodePageLine, FitsInBothFormsOrIsNotRead) {
  const std::string fits = "a" + Repeated(kRussian, 255);
  EXPECT_EQ(Asked(GetParam(), 1251, fits), fits);
  EXPECT_EQ(Asked(GetParam(), 1251, fits + "b"), "not read");
  EXPECT_EQ(Asked(GetParam(), 65001, std::string(511, 'a')), std::string(511, 'a'));
  EXPECT_EQ(Asked(GetParam(), 65001, std::string(512, 'a')), "not read");
}

INSTANTIATE_TEST_SUITE_P(By, CodePageLine, testing::Values("line", "key"),
                         [](const auto& test) { return std::string(test.param); });

TEST(CodePageInfFiles, AreListedInUtf8) {
  EXPECT_EQ(Asked("list", 1252, "gr\xC3\xBCnoem.inf|oem1.inf|"), "gr\xC3\xBCnoem.inf|oem1.inf|");
  const std::string longest =
      Repeated(kJapanese, 100) + "oem.inf|" + Repeated(kJapanese, 100) + "|";
  EXPECT_EQ(Asked("list", 932, longest), longest);
  EXPECT_EQ(Asked("list", 65001, "gr\xC3\xBCnoem.inf|"), "gr\xC3\xBCnoem.inf|");
  EXPECT_EQ(Asked("list", 1251, ""), "");
}

TEST(CodePageInfFiles, AreOpenedAndCopiedByTheirBytesInTheCodePage) {
  EXPECT_EQ(Asked("open", 1252, "gr\xC3\xBCn.inf"), "opened 67 72 FC 6E 2E 69 6E 66\nopened");
  EXPECT_EQ(Asked("open", 65001, "gr\xC3\xBC"), "opened 67 72 C3 BC\nopened");
  EXPECT_EQ(Asked("copy", 1251, kRussian + "oem1.inf"),
            "copied E6 6F 65 6D 31 2E 69 6E 66\n" + kRussian + "oem1.inf");
}

TEST(CodePageInfFiles, InstalledNameThatGrowsIsCutBetweenCharacters) {
  const std::string answer = Asked("copy", 1251, "a" + Repeated(kRussian, 258));
  EXPECT_EQ(answer.substr(answer.find('\n') + 1), "a" + Repeated(kRussian, 129));
}

TEST(CodePageIds, AreGivenInUtf8) {
  EXPECT_EQ(Asked("ids", 1251, "USB\\A|" + kRussian + "|"), "USB\\A|" + kRussian + "|");
  EXPECT_EQ(Asked("ids", 65001, "USB\\A|USB\\B|"), "USB\\A|USB\\B|");
}

TEST(CodePageIds, ListWithoutItsEndOrOfNoBytesIsGivenAsFarAsItGoes) {
  EXPECT_EQ(Asked("ids", 1251, "USB\\A|USB\\B-"), "USB\\A|USB\\B|");
  EXPECT_EQ(Asked("ids", 1251, ""), "");
}

TEST(CodePageTemporaryFolder, ThatDoesNotFitIsNone) {
  EXPECT_EQ(Asked("temporary-folder", 1252, "C:\\T\\"), "C:\\T\\");
  EXPECT_EQ(Asked("temporary-folder", 1252, "a" + Repeated(kRussian, 511)),
            "a" + Repeated(kRussian, 511));
  EXPECT_EQ(Asked("temporary-folder", 1252, Repeated(kRussian, 512)), "none");
  EXPECT_EQ(Asked("temporary-folder", 1252, std::string(1023, 'a')), std::string(1023, 'a'));
  EXPECT_EQ(Asked("temporary-folder", 1252, std::string(1024, 'a')), "none");
}

}  // namespace
