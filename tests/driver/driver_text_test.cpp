#include "driver/driver_text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

TEST(FindSubstringNocase, CaseOfEitherSideIsIgnored) {
  const std::string text = "%12%\\USBSER.sys";
  EXPECT_EQ(find_substring_nocase(text.c_str(), "usbser.SYS"), text.c_str() + 5);
}

TEST(FindSubstringNocase, FirstOfSeveralMatchesIsTaken) {
  const std::string text = "ooeoem1oem2";
  EXPECT_EQ(find_substring_nocase(text.c_str(), "oem"), text.c_str() + 3);
}

TEST(FindSubstringNocase, NeedleLongerThanTheTextIsNotFound) {
  EXPECT_EQ(find_substring_nocase("oe", "oem"), nullptr);
}

TEST(FindSubstringNocase, MatchAtTheVeryEndIsFound) {
  const std::string text = "my.OEM";
  EXPECT_EQ(find_substring_nocase(text.c_str(), "oem"), text.c_str() + 3);
}

TEST(FindSubstringNocase, EmptyNeedleIsFoundAtTheStart) {
  const std::string text = "text";
  EXPECT_EQ(find_substring_nocase(text.c_str(), ""), text.c_str());
}

TEST(FindSubstringNocase, EmptyTextGivesNothingWhateverTheNeedle) {
  EXPECT_EQ(find_substring_nocase("", "oem"), nullptr);
  EXPECT_EQ(find_substring_nocase("", ""), nullptr);
}

TEST(FindSubstringNocase, BytesAbove127AreComparedAsTheyStand) {
  const std::string text = "\xE4oem";
  EXPECT_EQ(find_substring_nocase(text.c_str(), "\xE4OEM"), text.c_str());
  EXPECT_EQ(find_substring_nocase(text.c_str(), "\xC4OEM"), nullptr);
}

TEST(EqualNocase, WholeTextMustMatch) {
  EXPECT_TRUE(equal_nocase("USB\\Class_02", "usb\\CLASS_02"));
  EXPECT_TRUE(equal_nocase("", ""));
  EXPECT_FALSE(equal_nocase("USB\\Class_02", "USB\\Class_02&"));
  EXPECT_FALSE(equal_nocase("USB\\Class_02&", "USB\\Class_02"));
  EXPECT_FALSE(equal_nocase("", "U"));
}

// toupper would take '[' to '{' in no locale, but the two lie 32 apart as letters do.
TEST(EqualNocase, OnlyLettersHaveCase) {
  EXPECT_FALSE(equal_nocase("[", "{"));
  EXPECT_FALSE(equal_nocase("_", "\x7F"));
}

TEST(DuplicateText, CopyIsTheCallers) {
  char* copy = duplicate_text("oem3.inf");
  EXPECT_STREQ(copy, "oem3.inf");
  std::free(copy);
}

}  // namespace
