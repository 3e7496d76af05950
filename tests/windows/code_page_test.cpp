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

}  // namespace
