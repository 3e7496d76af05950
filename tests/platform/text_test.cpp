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

}  // namespace
