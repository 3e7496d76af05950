#include "store/location_value.h"
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "store/payload_format.h"

namespace {

// The value of TOOL_SUBDIR in `text`, or "none". The text is read from a block of exactly its size,
// so that the sanitizer sees every byte read beyond it.
std::string Find(const std::string& text, const char* key = "TOOL_SUBDIR") {
  const std::vector<unsigned char> block(text.begin(), text.end());
  char value[kLocationValueSize];
  std::strcpy(value, "untouched");
  if (FindLocationValue(block.data(), block.size(), key, value)) return value;
  EXPECT_STREQ(value, "untouched");
  return "none";
}

struct LocationCase {
  const char* situation;
  std::string text;
  std::string value;
};
void PrintTo(const LocationCase& test, std::ostream* stream) {
  *stream << test.situation;
}

class LocationValue : public testing::TestWithParam<LocationCase> {};

TEST_P(LocationValue, IsRead) {
  EXPECT_EQ(Find(GetParam().text), GetParam().value);
}

const LocationCase kCases[] = {
    {"TabBeforeTheValue", "TOOL_SUBDIR\t\"tools/\"\n", "tools/"},
    {"NothingBeforeTheValue", "TOOL_SUBDIR\"tools/\"\n", "tools/"},
    {"ValueOnALaterLine", "TOOL_SUBDIR\n\n\r\n  \"tools/\"\n", "tools/"},
    {"EveryKindOfWhiteSpace", "TOOL_SUBDIR \t\n\v\f\r\"tools/\"\n", "tools/"},
    {"KeyInTheMiddleOfALine", "set TOOL_SUBDIR \"tools/\"\n", "tools/"},
    {"KeyAtTheEndOfALongerWord", "MY_TOOL_SUBDIR \"mine/\"\nTOOL_SUBDIR \"tools/\"\n", "mine/"},
    {"KeyInsideALongerWord", "MY_TOOL_SUBDIR_X \"mine/\"\nTOOL_SUBDIR \"tools/\"\n", "none"},
    {"KeyInACommentAheadOfItsSetting", "# TOOL_SUBDIR is next\nTOOL_SUBDIR \"tools/\"\n", "none"},
    {"KeyAtTheEndOfACommentWithAQuoteBehind", "# for TOOL_SUBDIR\n\"wrong/\"\nTOOL_SUBDIR \"a/\"\n",
     "wrong/"},
    {"CommentedOutSetting", "# TOOL_SUBDIR \"old/\"\nTOOL_SUBDIR \"new/\"\n", "old/"},
    {"FirstOfTwoSettings", "TOOL_SUBDIR \"first/\"\nTOOL_SUBDIR \"second/\"\n", "first/"},
    {"NoSecondAttemptAfterAMissingQuote", "TOOL_SUBDIR tools/\nTOOL_SUBDIR \"tools/\"\n", "none"},
    {"EqualsSign", "TOOL_SUBDIR=\"tools/\"\n", "none"},
    {"SingleQuotes", "TOOL_SUBDIR 'tools/'\n", "none"},
    {"OtherCase", "tool_subdir \"tools/\"\n", "none"},
    {"ZeroByteIsNoWhiteSpace", std::string("TOOL_SUBDIR\0\"tools/\"\n", 21), "none"},
    {"EmptyValue", "TOOL_SUBDIR \"\"\n", ""},
    {"ValueWithLineEnds", "TOOL_SUBDIR \"a\r\nb\n\"\n", "a\r\nb\n"},
    {"ValueWithBackslash", "TOOL_SUBDIR \"a\\\"b\"\n", "a\\"},
    {"NoClosingQuoteRunsToTheEndOfTheFile", "TOOL_SUBDIR \"tools/\nOTHER x\n", "tools/\nOTHER x\n"},
    {"NoClosingQuoteIsLimitedTo255Bytes", "TOOL_SUBDIR \"" + std::string(400, '\n'),
     std::string(255, '\n')},
    {"ValueOf255BytesIsWhole", "TOOL_SUBDIR \"" + std::string(255, 'v') + "\"",
     std::string(255, 'v')},
    {"ValueOf256BytesIsCut", "TOOL_SUBDIR \"" + std::string(256, 'v') + "\"",
     std::string(255, 'v')},
    {"OpeningQuoteAtTheLastByte", "TOOL_SUBDIR \"", ""},
    {"KeyAtTheLastByte", "TOOL_SUBDIR", "none"},
    {"KeyAtTheLastByteBehindOtherText", "# text\nTOOL_SUBDIR", "none"},
    {"KeyAndOneByte", "TOOL_SUBDIR\"", ""},
    {"WhiteSpaceToTheEnd", "TOOL_SUBDIR \t \n", "none"},
    {"FileShorterThanTheKey", "TOOL", "none"},
    {"FileOneByteShorterThanTheKey", "TOOL_SUBDI", "none"},
    {"EmptyFile", "", "none"},
    {"KeyCutOffAtTheEnd", "PLUGIN_SUBDIR \"x/\"\nTOOL_SUBDI", "none"},
};

INSTANTIATE_TEST_SUITE_P(All, LocationValue, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.situation); });

TEST(LocationValueKeys, FirstPlaceThatHoldsTheKeyMayLieInAnotherKey) {
  EXPECT_EQ(Find("ARDUINO_JAR_FILE10 \"ten\"\nARDUINO_JAR_FILE1 \"one\"\n", "ARDUINO_JAR_FILE1"),
            "none");
}

TEST(LocationValueKeys, ThereAreEleven) {
  EXPECT_EQ(std::size(kLocationKeys), 11U);
}

}  // namespace
