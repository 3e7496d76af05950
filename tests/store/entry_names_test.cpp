#include <gtest/gtest.h>

#include <string>

#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "tests/support/test_store.h"

namespace {

TEST(FindEntryByName, FindsFirstAndLastEntry) {
  const TestStore store({{"a", ""}, {"b", ""}, {"c", ""}});
  EXPECT_EQ(FindEntryByName("a"), 0);
  EXPECT_EQ(FindEntryByName("c"), 2);
}

TEST(FindEntryByName, FirstOfTwoEqualNamesWins) {
  const TestStore store({{"a", ""}, {"same", "1"}, {"same", "2"}});
  EXPECT_EQ(FindEntryByName("same"), 1);
}

TEST(FindEntryByName, CaseAndLengthMustBeEqual) {
  const TestStore store({{"Q4Security.jar", ""}, {"mktinyfat.exe", ""}});
  EXPECT_EQ(FindEntryByName("q4security.jar"), -1);
  EXPECT_EQ(FindEntryByName("Q4Security"), -1);
  EXPECT_EQ(FindEntryByName("Q4Security.jar2"), -1);
  EXPECT_EQ(FindEntryByName(""), -1);
}

TEST(FindEntryByName, EmptyStoreHoldsNothing) {
  EXPECT_EQ(FindEntryByName("a"), -1);
}

TEST(FindEntryByName, NeedsNoLoadedPayload) {
  const TestStore store({{"a", "1"}, {"b", "2"}}, false);
  EXPECT_EQ(FindEntryByName("b"), 1);
}

TEST(EndsWith, TailMustBeTheSuffixExactly) {
  EXPECT_TRUE(EndsWith("lib/pde.jar", ".jar"));
  EXPECT_FALSE(EndsWith("lib/pde.JAR", ".jar"));
  EXPECT_FALSE(EndsWith("lib/pde.jars", ".jar"));
}

TEST(EndsWith, TextEndsWithItselfAndWithNothing) {
  EXPECT_TRUE(EndsWith("text", "text"));
  EXPECT_TRUE(EndsWith("text", ""));
  EXPECT_TRUE(EndsWith("", ""));
}

TEST(EndsWith, SuffixLongerThanTheTextIsFalse) {
  EXPECT_FALSE(EndsWith("jar", ".jar"));
  EXPECT_FALSE(EndsWith("", "x"));
}

TEST(AfterPrefix, GivesTheRemainder) {
  const char* text = "cores/quirlo4/main.cpp";
  EXPECT_EQ(AfterPrefix(text, "cores/"), text + 6);
  EXPECT_STREQ(AfterPrefix(text, text), "");
}

TEST(AfterPrefix, TextThatLacksPartOfThePrefixGivesNone) {
  EXPECT_EQ(AfterPrefix("core", "cores/"), nullptr);
  EXPECT_EQ(AfterPrefix("Cores/a", "cores/"), nullptr);
  EXPECT_EQ(AfterPrefix("", "c"), nullptr);
}

TEST(AfterPrefix, EmptyPrefixGivesTheTextItself) {
  const char* text = "cores/";
  EXPECT_EQ(AfterPrefix(text, ""), text);
}

class SelectedRelease : public testing::Test {
 protected:
  void TearDown() override { ResetHostSelection(); }
};

TEST_F(SelectedRelease, WithNoneSelectedEveryTextQualifies) {
  EXPECT_TRUE(InSelectedRelease("1.8.19/boards.txt"));
  EXPECT_TRUE(InSelectedRelease("quirlo.exe"));
  EXPECT_TRUE(InSelectedRelease(""));
}

TEST_F(SelectedRelease, OnlyItsOwnEntriesQualify) {
  SelectRelease("1.8.19");
  EXPECT_TRUE(InSelectedRelease("1.8.19/boards.txt"));
  EXPECT_FALSE(InSelectedRelease("1.8.16/boards.txt"));
  EXPECT_FALSE(InSelectedRelease("boards.txt"));
}

TEST_F(SelectedRelease, TextShorterThanItsNameDoesNotQualify) {
  SelectRelease("1.8.19");
  EXPECT_FALSE(InSelectedRelease("1.8.1"));
  EXPECT_FALSE(InSelectedRelease(""));
}

TEST_F(SelectedRelease, LiteralAsksWhichReleaseIsSelected) {
  SelectRelease("0022");
  EXPECT_TRUE(InSelectedRelease("0022/"));
  SelectRelease("1.8.19");
  EXPECT_FALSE(InSelectedRelease("0022/"));
}

TEST_F(SelectedRelease, NameThatBeginsAnotherClaimsItsEntries) {
  SelectRelease("1.8.1");
  EXPECT_TRUE(InSelectedRelease("1.8.13/boards.txt"));
}

TEST(ScratchConcat, JoinsBothTexts) {
  EXPECT_STREQ(ScratchConcat("libraries/", "OneWire"), "libraries/OneWire");
  EXPECT_STREQ(ScratchConcat("", ""), "");
}

TEST(ScratchConcat, NextCallReusesTheText) {
  const char* first = ScratchConcat("a", "b");
  EXPECT_EQ(ScratchConcat("c", "d"), first);
  EXPECT_STREQ(first, "cd");
}

TEST(ScratchConcat, OverlongTextIsCutTo4095Characters) {
  const std::string half(2048, 'x');
  EXPECT_EQ(ScratchConcat(half.c_str(), half.c_str()), std::string(4095, 'x'));
}

}  // namespace
