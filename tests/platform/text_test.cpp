#include "platform/text.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

TEST(FormatBounded, TextThatFitsIsWholeAndItsLengthReturned) {
  char buffer[16];
  EXPECT_EQ(FormatBounded(buffer, sizeof buffer, "%s-%d", "abc", 42), 6U);
  EXPECT_STREQ(buffer, "abc-42");
}

TEST(FormatBounded, TextOfExactlyTheRoomIsWhole) {
  char buffer[7];
  EXPECT_EQ(FormatBounded(buffer, sizeof buffer, "%s", "sixsix"), 6U);
  EXPECT_STREQ(buffer, "sixsix");
}

TEST(FormatBounded, LongerTextIsCutTerminatedAndItsWholeLengthReturned) {
  char buffer[8] = "-------";
  buffer[6] = '#';
  EXPECT_EQ(FormatBounded(buffer, 6, "%s/%s", "arduino", "lib"), 11U);
  EXPECT_STREQ(buffer, "ardui");
  EXPECT_EQ(buffer[6], '#') << "a byte beyond the given size was touched";
}

TEST(FormatBounded, RoomForTheTerminatorAloneGivesEmptyText) {
  char buffer[2] = "x";
  EXPECT_EQ(FormatBounded(buffer, 1, "%s", "text"), 4U);
  EXPECT_STREQ(buffer, "");
}

TEST(FormatBounded, EmptyTextIsTerminated) {
  char buffer[4] = "xyz";
  EXPECT_EQ(FormatBounded(buffer, sizeof buffer, "%s", ""), 0U);
  EXPECT_STREQ(buffer, "");
}

TEST(FormatBounded, FailedConversionGivesEmptyText) {
  char buffer[16] = "before";
  const wchar_t no_character[] = {static_cast<wchar_t>(INT_MAX), L'\0'};
  EXPECT_EQ(FormatBounded(buffer, sizeof buffer, "text %ls", no_character), 0U);
  EXPECT_STREQ(buffer, "");
}

std::string Cut(const std::string& text, std::size_t size) {
  std::string buffer(size + 1, '#');
  CopyWholeCharacters(buffer.data(), size, text.c_str());
  EXPECT_EQ(buffer[size], '#') << "a byte beyond the given size was touched";
  return buffer.c_str();
}

TEST(CopyWholeCharacters, TextThatFitsIsWhole) {
  EXPECT_EQ(Cut("", 1), "");
  EXPECT_EQ(Cut("abc", 4), "abc");
  EXPECT_EQ(Cut("\xD0\x9C\xE3\x83\xA6", 6), "\xD0\x9C\xE3\x83\xA6");
}

TEST(CopyWholeCharacters, LongerTextIsCutBeforeTheCharacterThatDoesNotFit) {
  const std::string two = "a\xD0\x9C";
  EXPECT_EQ(Cut(two, 3), "a");
  const std::string three = "a\xE3\x83\xA6";
  EXPECT_EQ(Cut(three, 4), "a");
  EXPECT_EQ(Cut(three, 3), "a");
  const std::string four = "a\xF0\x9F\x99\x82z";
  EXPECT_EQ(Cut(four, 5), "a");
  EXPECT_EQ(Cut(four, 6), four.substr(0, 5));
}

TEST(CopyWholeCharacters, FirstCharacterThatDoesNotFitLeavesNothing) {
  EXPECT_EQ(Cut("\xD0\x9C", 2), "");
  EXPECT_EQ(Cut("abc", 1), "");
}

}  // namespace
