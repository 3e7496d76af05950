#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/embedded_file_store.h"
#include "tests/support/test_store.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

// A store that holds nothing but the criteria files of these releases.
std::vector<TestEntry> Releases(const std::vector<std::string>& names) {
  std::vector<TestEntry> entries;
  entries.reserve(names.size());
  for (const std::string& name : names)
    entries.push_back({name + "/WINDOWS/directory_criteria.txt", ""});
  return entries;
}

std::vector<std::string> Listed() {
  std::vector<std::string> listed;
  for (std::size_t i = 0; i < SupportedVersionCount(); ++i) {
    listed.emplace_back(SupportedVersionAt(i));
  }
  return listed;
}

TEST(SupportedVersions, DeliveredReleasesComeInAscendingOrder) {
  const TestStore store(Releases({"1.8.13", "1.8.15", "1.8.16", "1.8.19", "1.8.5", "1.8.9"}));
  EXPECT_STREQ(SupportedVersions(), "1.8.5, 1.8.9, 1.8.13, 1.8.15, 1.8.16, 1.8.19");
  EXPECT_EQ(SupportedVersionCount(), 6U);
}

TEST(SupportedVersions, OneEightNineComesBeforeOneEightThirteen) {
  const TestStore store(Releases({"1.8.13", "1.8.9"}));
  EXPECT_STREQ(SupportedVersions(), "1.8.9, 1.8.13");
}

TEST(SupportedVersions, FirstDifferingNumberDecides) {
  const TestStore store(Releases({"2.0.0", "1.10.0", "1.9.9", "1.8.19", "10.0.0"}));
  EXPECT_THAT(Listed(), ElementsAre("1.8.19", "1.9.9", "1.10.0", "2.0.0", "10.0.0"));
}

TEST(SupportedVersions, EqualNumbersAreOrderedAsTexts) {
  const TestStore store(Releases({"1.8.9-b", "1.08.9", "1.8.9", "1.8.9-a"}));
  EXPECT_THAT(Listed(), ElementsAre("1.08.9", "1.8.9", "1.8.9-a", "1.8.9-b"));
}

TEST(SupportedVersions, NamesThatDoNotScanAreOrderedAsTexts) {
  const TestStore store(Releases({"nightly", "1.8.13", "beta", "0022", "1.9"}));
  EXPECT_THAT(Listed(), ElementsAre("0022", "1.8.13", "1.9", "beta", "nightly"));
}

TEST(SupportedVersions, SameReleaseTwiceIsListedTwice) {
  const TestStore store(Releases({"1.8.9", "1.8.5", "1.8.9"}));
  EXPECT_STREQ(SupportedVersions(), "1.8.5, 1.8.9, 1.8.9");
}

TEST(SupportedVersions, OnlyCriteriaFilesOfWindowsTreesCount) {
  const TestStore store({{"1.8.1/WINDOWS/locations.txt", ""},
                         {"1.8.2/LINUX/directory_criteria.txt", ""},
                         {"1.8.3/windows/directory_criteria.txt", ""},
                         {"1.8.4/boards.txt", ""},
                         {"1.8.5/WINDOWS/directory_criteria.txt", ""}});
  EXPECT_STREQ(SupportedVersions(), "1.8.5");
}

TEST(SupportedVersions, NothingBeforeTheEndingIsNoRelease) {
  const TestStore store(Releases({"", "1.8.5"}));
  EXPECT_STREQ(SupportedVersions(), "1.8.5");
}

TEST(SupportedVersions, EndingInsideALongerNameCounts) {
  const TestStore store({{"quirlo.exe", ""}, {"1.8.5/WINDOWS/directory_criteria.txt.old", ""}});
  EXPECT_STREQ(SupportedVersions(), "1.8.5");
}

TEST(SupportedVersions, StoreWithoutReleasesGivesEmptyText) {
  const TestStore store({{"quirlo.exe", "tool"}, {"quirloduino.txt", "1.60-beta5"}});
  EXPECT_STREQ(SupportedVersions(), "");
  EXPECT_EQ(SupportedVersionCount(), 0U);
  EXPECT_STREQ(SupportedVersionAt(0), "");
}

TEST(SupportedVersions, TextsAreBuiltOnceAndKept) {
  const TestStore store(Releases({"1.8.5", "1.8.9"}));
  const char* text = SupportedVersions();
  const char* first = SupportedVersionAt(0);
  EXPECT_EQ(SupportedVersions(), text);
  EXPECT_EQ(SupportedVersionAt(0), first);
}

TEST(SupportedVersions, NeedsNoLoadedPayload) {
  const TestStore store(Releases({"1.8.5"}), false);
  EXPECT_STREQ(SupportedVersions(), "1.8.5");
}

TEST(SupportedVersions, ListStopsAtTwentyOfTwentyFiveReleases) {
  std::vector<std::string> names;
  std::vector<std::string> first_twenty_ascending;
  for (int patch = 25; patch >= 1; --patch) names.push_back("1.8." + std::to_string(patch));
  for (int patch = 6; patch <= 25; ++patch) {
    first_twenty_ascending.push_back("1.8." + std::to_string(patch));
  }
  const TestStore store(Releases(names));
  EXPECT_EQ(SupportedVersionCount(), 20U);
  EXPECT_THAT(Listed(), ElementsAreArray(first_twenty_ascending));
}

TEST(SupportedVersionAt, AtTheCountAndBeyondIsEmptyText) {
  const TestStore store(Releases({"1.8.5", "1.8.9"}));
  EXPECT_STREQ(SupportedVersionAt(1), "1.8.9");
  EXPECT_STREQ(SupportedVersionAt(2), "");
  EXPECT_STREQ(SupportedVersionAt(19), "");
  EXPECT_STREQ(SupportedVersionAt(20), "");
  EXPECT_STREQ(SupportedVersionAt(static_cast<std::size_t>(-1)), "");
}

TEST(SupportedVersionAt, BuildsTheListByItself) {
  const TestStore store(Releases({"1.8.5"}));
  EXPECT_STREQ(SupportedVersionAt(0), "1.8.5");
}

// A release that scans, of any length.
std::string LongRelease(int patch, std::size_t length) {
  std::string name = "1.8." + std::to_string(patch) + "-";
  return name + std::string(length - name.size(), 'x');
}

TEST(SupportedVersionsText, ReleaseThatDoesNotFitLeavesTheSeparatorInPlace) {
  const std::string first = LongRelease(1, 100);
  const std::string second = LongRelease(2, 100);
  const TestStore store(Releases({first, second, LongRelease(3, 52)}));
  EXPECT_EQ(SupportedVersions(), first + ", " + second + ", ");
  EXPECT_EQ(SupportedVersionCount(), 3U) << "the list itself is not cut";
}

TEST(SupportedVersionsText, TextOfExactly255CharactersIsWhole) {
  const std::string first = LongRelease(1, 100);
  const std::string second = LongRelease(2, 153);
  const TestStore store(Releases({first, second, "1.8.3"}));
  EXPECT_EQ(SupportedVersions(), first + ", " + second);
}

TEST(SupportedVersionsText, SeparatorThatDoesNotFitIsLeftOff) {
  const std::string first = LongRelease(1, 254);
  const TestStore store(Releases({first, "1.8.3"}));
  EXPECT_EQ(SupportedVersions(), first);
}

TEST(SupportedVersionsText, SeparatorThatFillsTheTextStays) {
  const std::string first = LongRelease(1, 253);
  const TestStore store(Releases({first, "1.8.3"}));
  EXPECT_EQ(SupportedVersions(), first + ", ");
}

TEST(SupportedVersionsText, ShorterReleaseBehindOneThatDoesNotFitIsNotTried) {
  const std::string first = LongRelease(1, 200);
  const TestStore store(Releases({first, LongRelease(2, 100), "1.8.3"}));
  EXPECT_EQ(SupportedVersions(), first + ", ");
}

TEST(SupportedVersionsText, FirstReleaseBeyond255CharactersLeavesTheTextEmpty) {
  const TestStore store(Releases({LongRelease(1, 256)}));
  EXPECT_STREQ(SupportedVersions(), "");
}

}  // namespace
