// Orders and aliases that no tree brings about, since the packager makes them itself.
#include "packager/order_rules.h"

#include <gtest/gtest.h>

#include <string>

#include "packager/refusal.h"

namespace {

std::vector<PayloadFile> Entries(const std::vector<std::string>& names) {
  std::vector<PayloadFile> entries;
  entries.reserve(names.size());
  for (const std::string& name : names) entries.push_back({name, 0});
  return entries;
}

std::string RefusalOfOrder(const std::vector<std::string>& names) {
  try {
    CheckOrder(Entries(names));
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "accepted";
}

std::string RefusalOfAliases(const std::vector<PayloadFile>& entries) {
  try {
    CheckAliases(entries);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "accepted";
}

TEST(OrderRules, ArchiveObjectAtTheEndIsRefused) {
  EXPECT_EQ(RefusalOfOrder({"quirloduino.txt", "1.8.5/WINDOWS/pde.jar/A.class"}),
            "1.8.5/WINDOWS/pde.jar/A.class: the table must not end in an object of an archive");
}

TEST(OrderRules, OtherLastEntryThanTheMarkerIsRefused) {
  EXPECT_EQ(RefusalOfOrder({"quirloduino.txt", "1.8.5/boards.txt"}),
            "1.8.5/boards.txt: the last entry must be the version marker, quirloduino.txt");
}

TEST(OrderRules, BoardFilesBeforeOtherInstalledFilesAreRefused) {
  EXPECT_EQ(RefusalOfOrder({"1.8.5/boards.txt", "libraries/A/a.h", "quirloduino.txt"}),
            "libraries/A/a.h: an entry of the group \"libraries/\" must not follow one of "
            "\"release board files\"");
}

TEST(OrderRules, GroupInTwoPiecesIsRefused) {
  EXPECT_EQ(RefusalOfOrder({"cores/a/a.c", "libraries/A/a.h", "cores/a/b.c", "quirloduino.txt"}),
            "cores/a/b.c: an entry of the group \"cores/\" must not follow one of \"libraries/\"");
}

TEST(OrderRules, RootToolsInOtherOrderAreRefused) {
  EXPECT_EQ(RefusalOfOrder({"quirlo_reboot.exe", "quirlo.exe", "quirloduino.txt"}),
            "quirlo.exe: the list of the group \"root tools\" has this before quirlo_reboot.exe");
}

TEST(OrderRules, ReleasesInOrderOfTheirNumbersAreRefused) {
  EXPECT_EQ(RefusalOfOrder(
                {"1.8.5/WINDOWS/locations.txt", "1.8.13/WINDOWS/locations.txt", "quirloduino.txt"}),
            "1.8.13/WINDOWS/locations.txt: within a group the releases must follow as sorted "
            "texts");
}

TEST(OrderRules, ClassFilesOfOneArchiveApartAreRefused) {
  EXPECT_EQ(RefusalOfOrder({"1.8.5/WINDOWS/pde.jar/A.class", "1.8.5/WINDOWS/locations.txt",
                            "1.8.5/WINDOWS/pde.jar/B.class", "quirloduino.txt"}),
            "1.8.5/WINDOWS/pde.jar/B.class: the files of one archive must stand together");
}

TEST(OrderRules, OtherOrderWithinAFolderIsAccepted) {
  EXPECT_EQ(RefusalOfOrder({"libraries/B/b.h", "libraries/A/a.h", "quirloduino.txt"}), "accepted");
}

TEST(OrderRules, SameArchiveOfTwoReleasesIsAccepted) {
  EXPECT_EQ(RefusalOfOrder({"1.8.13/WINDOWS/pde.jar/A.class", "1.8.5/WINDOWS/pde.jar/A.class",
                            "quirloduino.txt"}),
            "accepted");
}

TEST(AliasRules, TargetBeforeTheAliasIsAccepted) {
  EXPECT_EQ(RefusalOfAliases({{"arm/a", 3}, {"arm/b --> arm/a", 0}}), "accepted");
}

TEST(AliasRules, TargetBehindTheAliasIsRefused) {
  EXPECT_EQ(RefusalOfAliases({{"arm/b --> arm/c", 0}, {"arm/c", 3}}),
            "arm/b --> arm/c: an alias's target must be an earlier entry");
}

TEST(AliasRules, TargetInOtherCaseIsRefused) {
  EXPECT_EQ(RefusalOfAliases({{"arm/a", 3}, {"arm/b --> arm/A", 0}}),
            "arm/b --> arm/A: an alias's target must be an earlier entry");
}

TEST(AliasRules, TargetThatIsAnAliasIsRefused) {
  EXPECT_EQ(
      RefusalOfAliases({{"arm/a", 3}, {"arm/b --> arm/a", 0}, {"arm/c --> arm/b --> arm/a", 0}}),
      "arm/c --> arm/b --> arm/a: an alias's target must not be an alias");
  EXPECT_EQ(RefusalOfAliases({{"arm/a", 3}, {"arm/b --> arm/a", 0}, {"arm/c --> arm/b", 0}}),
            "arm/c --> arm/b: an alias's target must be an earlier entry");
}

TEST(AliasRules, AliasOfAnySizeButZeroIsRefused) {
  EXPECT_EQ(RefusalOfAliases({{"arm/a", 3}, {"arm/b --> arm/a", 3}}),
            "arm/b --> arm/a: an alias must have size 0");
}

TEST(AliasRules, AliasOutsideTheToolchainIsRefused) {
  EXPECT_EQ(RefusalOfAliases({{"arm/a", 3}, {"cores/q/b --> arm/a", 0}}),
            "cores/q/b --> arm/a: an alias must lie under arm/");
}

TEST(AliasRules, LeftSideOf511CharactersIsTheLongest) {
  const std::string left = "arm/" + std::string(507, 'x');
  EXPECT_EQ(RefusalOfAliases({{"arm/a", 3}, {left + " --> arm/a", 0}}), "accepted");
  EXPECT_EQ(RefusalOfAliases({{"arm/a", 3}, {left + "x --> arm/a", 0}}),
            left + "x --> arm/a: an alias's left side must not be longer than 511 characters");
}

}  // namespace
