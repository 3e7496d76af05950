#include "driver/argumentless_format.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string Printed(const std::string& format, std::size_t size = 2048) {
  std::vector<char> buffer(size + 1, '#');
  FormatWithoutArguments(buffer.data(), size, format.c_str());
  EXPECT_EQ(buffer[size], '#') << "written beyond the bound";
  return buffer.data();
}

struct FormatCase {
  const char* situation;
  const char* format;
  const char* printed;
};

class ArgumentlessFormat : public ::testing::TestWithParam<FormatCase> {};

TEST_P(ArgumentlessFormat, PrintsDirectivesWithNothingInThem) {
  EXPECT_EQ(Printed(GetParam().format), GetParam().printed);
}

constexpr FormatCase kFormatCases[] = {
    {"NoPercentSign", "C:\\TEMP\\cdcacm.inf", "C:\\TEMP\\cdcacm.inf"},
    {"Empty", "", ""},
    {"Text", "a%sb", "ab"},
    {"Number", "a%db", "ab"},
    {"StoredCount", "a%nb", "ab"},
    {"Pointer", "a%pb", "ab"},
    {"DoubledSign", "100%%", "100%"},
    {"TwoDoubledSigns", "%%%%", "%%"},
    {"DoubledSignBeforeALetter", "%%s", "%s"},
    {"LoneSignAtTheEnd", "100%", "100%"},
    {"ThreeSignsAtTheEnd", "100%%%", "100%%"},
    {"FlagsWidthAndPrecision", "a%-+ #08.3fb", "ab"},
    {"StarsForWidthAndPrecision", "a%*.*sb", "ab"},
    {"LengthOfTwoLetters", "a%lldb%hhuc", "abc"},
    {"LengthOfWindows", "a%I64db%I32xc%Iud", "abcd"},
    {"BlankAsAFlag", "100% done", "100one"},
    {"PercentEncodedBlank", "My%20Files", "Myiles"},
    {"NoConversion", "a%yb", "a%yb"},
    {"EnvironmentVariable", "%TEMP%\\x", "%TEMP%\\x"},
    {"DirectiveCutOffByTheEnd", "a%-08.3l", "a%-08.3l"},
    {"SignWithinAnUnfinishedDirective", "a%5%b", "a%5%b"},
};

INSTANTIATE_TEST_SUITE_P(Each, ArgumentlessFormat, ::testing::ValuesIn(kFormatCases),
                         [](const auto& test) { return std::string(test.param.situation); });

TEST(ArgumentlessFormatDirective, ConversionsAndNoOtherCharactersEndOne) {
  const std::string conversions = "diouxXeEfFgGaAcCsSpn";
  const std::string unfinished = "-+ #0123456789.*hlLjtwzI%";
  for (char c = ' '; c <= '~'; ++c) {
    if (unfinished.find(c) != std::string::npos) continue;
    const std::string format = std::string("<%") + c + ">";
    const bool ends = conversions.find(c) != std::string::npos;
    EXPECT_EQ(Printed(format), ends ? "<>" : format);
  }
}

TEST(ArgumentlessFormatDirective, EveryFlagAndLengthIsPartOfOne) {
  for (const char* part : {"-",  "+", " ",  "#", "0", "7", "12", "*", ".3", ".*",  "h",
                           "hh", "l", "ll", "L", "j", "t", "w",  "z", "I",  "I32", "I64"}) {
    EXPECT_EQ(Printed(std::string("<%") + part + "d>"), "<>") << part;
  }
}

TEST(ArgumentlessFormatBound, TextIsCutAndTerminated) {
  EXPECT_EQ(Printed("abcdef", 4), "abc");
  EXPECT_EQ(Printed("abc", 4), "abc");
  EXPECT_EQ(Printed("abc", 1), "");
}

TEST(ArgumentlessFormatBound, WhatPrintsNothingTakesNoRoom) {
  EXPECT_EQ(Printed("a%sb%dc", 4), "abc");
}

}  // namespace
