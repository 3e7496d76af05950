// The lines of a description, at the widths of Arial: "i" takes 3 pixels, "m" 12, a blank 4, and a
// line has 238.
#include "packager/description_fit.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Letters(std::size_t count, char letter = 'i') {
  return std::string(count, letter);
}

TEST(DescriptionFit, WordsThatFillALineExactlyStayTogether) {
  EXPECT_EQ(DescriptionLines(Letters(39) + " " + Letters(39)), 1);
  EXPECT_EQ(DescriptionLines(Letters(39) + " " + Letters(40)), 2);
}

TEST(DescriptionFit, FourWordsOf48PixelsFitALine) {
  EXPECT_EQ(DescriptionLines("mmmm mmmm mmmm mmmm"), 1);
  EXPECT_EQ(DescriptionLines("mmmm mmmm mmmm mmmm mmmm"), 2);
  EXPECT_EQ(DescriptionLines("mmmm mmmm mmmm mmmm mmmm mmmm mmmm mmmm mmmm"), 3);
}

TEST(DescriptionFit, WordLongerThanALineIsNotBroken) {
  EXPECT_EQ(DescriptionLines(Letters(300)), 1);
  EXPECT_EQ(DescriptionLines("i " + Letters(300) + " i"), 3);
}

TEST(DescriptionFit, LineFeedsBreakAndTheLastIsNoLineOfItsOwn) {
  EXPECT_EQ(DescriptionLines(""), 1);
  EXPECT_EQ(DescriptionLines("one\n"), 1);
  EXPECT_EQ(DescriptionLines("one\n\ntwo\n"), 3);
}

TEST(DescriptionFit, LetterBeyondAsciiCountsOnce) {
  // Eight pixels each, as "n" takes.
  EXPECT_EQ(DescriptionLines(Letters(20, 'n') + " ü" + Letters(8, 'n')), 1);
  EXPECT_EQ(DescriptionLines(Letters(20, 'n') + " ü" + Letters(9, 'n')), 2);
}

TEST(DescriptionFit, ControlCharacterIsShownAsTwo) {
  // "^M" takes 7 and 12 pixels.
  EXPECT_EQ(DescriptionLines(Letters(39) + " " + Letters(32) + "\r"), 1);
  EXPECT_EQ(DescriptionLines(Letters(39) + " " + Letters(33) + "\r"), 2);
}

TEST(DescriptionFit, WhatThePageCutsOffIsNotCounted) {
  EXPECT_EQ(DescriptionLines(Letters(1023) + "\n\n\n"), 1);
}

TEST(DescriptionFit, RoomIsWhatThePictureLeaves) {
  EXPECT_EQ(RoomForLines(0), 10);
  EXPECT_EQ(RoomForLines(96), 4);
  EXPECT_EQ(RoomForLines(110), 3);
}

}  // namespace
