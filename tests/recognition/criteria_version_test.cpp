// The line "version:" of a criteria file.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/recognition/recognition_test.h"

namespace {

struct VersionCase {
  const char* situation;
  const char* release;  // the expected one, as the entry names it
  std::string text;     // of lib/version.txt
  int result;
  const char* words;  // what the log says of it
};
void PrintTo(const VersionCase& test, std::ostream* stream) {
  *stream << test.situation;
}

class VersionLine : public RecognitionTest, public testing::WithParamInterface<VersionCase> {};

TEST_P(VersionLine, IsJudged) {
  const VersionCase& version = GetParam();
  WriteFile(dir_ / "lib/version.txt", version.text);
  EXPECT_EQ(
      Check("version:lib/version.txt\n", version.release),
      (Verdict{version.result, std::string("    version: \"lib/version.txt\" ") + version.words}));
}

const char kFork[] = " wrong version: 1.7.11\n    Arduinorg software is not supported\n";

const VersionCase kVersionCases[] = {
    {"Expected", "1.8.19", "1.8.19\n", 1, " version matches\n"},
    {"WithoutLineEnd", "1.8.19", "1.8.19", 1, " version matches\n"},
    {"CarriageReturn", "1.8.19", "1.8.19\r\n", 1, " version matches\n"},
    {"BlanksAndLineEndsAhead", "1.8.19", " \r\n\t1.8.19", 1, " version matches\n"},
    {"TextBehindTheThirdNumber", "1.8.19", "1.8.19+dfsg1-1\n", 1, " version matches\n"},
    {"FourthNumber", "1.8.19", "1.8.19.7", 1, " version matches\n"},
    {"BetaInTheFileIsIgnored", "1.8.19", "1.8.19-beta2\n", 1, " version matches\n"},
    {"BetaInTheEntryNeedsABetaThatNoPlainTextGives", "1.8.19-beta2", "1.8.19-beta2\n", 0,
     " wrong version: 1.8.19"},
    {"OtherPatchEndsWithoutALineFeed", "1.8.19", "1.8.10\n", 0, " wrong version: 1.8.10"},
    {"OtherMinor", "1.8.19", "1.9.19", 0, " wrong version: 1.9.19"},
    {"OtherMajor", "1.8.19", "2.8.19", 0, " wrong version: 2.8.19"},
    {"ForkIsRefused", "1.8.19", "1.7.11\n", 0, kFork},
    {"OfficialOneSevenIsTakenForTheForkToo", "1.7.5", "1.7.11\n", 0, kFork},
    {"ExpectedOneSevenMatches", "1.7.11", "1.7.11\n", 1, " version matches\n"},
    {"MinorSevenOfAnotherMajorIsNoFork", "1.8.19", "2.7.11", 0, " wrong version: 2.7.11"},
    {"MinorSeventeenIsNoFork", "1.8.19", "1.17.0", 0, " wrong version: 1.17.0"},
    {"EmptyFile", "1.8.19", "", 0, " incorrect version format\n"},
    {"Nightly", "1.8.19", "nightly", 0, " Nightly builds are not supported\n"},
    {"NightlyWithMoreBehind", "1.8.19", "nightly-2023-01-01\n1.8.19\n", 0,
     " Nightly builds are not supported\n"},
    {"NightlyOnTheSecondLine", "1.8.19", "\nnightly\n", 0, " incorrect version format\n"},
    {"NightlyInOtherCase", "1.8.19", "Nightly\n", 0, " incorrect version format\n"},
    {"NightlyCutShort", "1.8.19", "nightl", 0, " incorrect version format\n"},
    {"TwoNumbers", "1.8.19", "1.8\n", 0, " incorrect version format\n"},
    {"ThirdPartNoNumber", "1.8.19", "1.8.x\n", 0, " incorrect version format\n"},
    {"WordAhead", "1.8.19", "Arduino 1.8.19\n", 0, " incorrect version format\n"},
    {"OldBetaMatchesTheEntrysBeta", "1.5.0-beta123", "PR-beta1.5-BUILD-123\n", 1,
     " version matches\n"},
    {"OldBetaOfAnotherBuild", "1.5.0-beta123", "PR-beta1.5-BUILD-124\n", 0,
     " wrong version: 1.5.0"},
    {"OldBetaOfAnotherMinor", "1.5.0-beta123", "PR-beta1.6-BUILD-123\n", 0,
     " wrong version: 1.6.0"},
    {"OldBetaAgainstAPatch", "1.5.1-beta123", "PR-beta1.5-BUILD-123\n", 0, " wrong version: 1.5.0"},
    {"OldBetaAgainstAPlainReleaseShowsPatchZero", "1.8.19", "PR-beta1.8-BUILD-123\n", 0,
     " wrong version: 1.8.0"},
    {"OldBetaOfTheFork", "1.8.19", "PR-beta1.7-BUILD-3\n", 0,
     " wrong version: 1.7.0\n    Arduinorg software is not supported\n"},
    {"OldBetaWithoutBuild", "1.8.19", "PR-beta1.8\n", 0, " incorrect version format\n"},
    {"OldBetaWithoutBuildNumber", "1.8.19", "PR-beta1.8-BUILD-\n", 0,
     " incorrect version format\n"},
    {"OldBetaWithoutMinor", "1.8.19", "PR-beta1-BUILD-3\n", 0, " incorrect version format\n"},
    // The 17 characters ahead of the build number and 110 of its digits fill the 127 that are read.
    {"LineIsReadTo127Characters", "1.8.0-beta9", "PR-beta1.8-BUILD-" + std::string(109, '0') + "98",
     1, " version matches\n"},
};

INSTANTIATE_TEST_SUITE_P(All, VersionLine, testing::ValuesIn(kVersionCases),
                         [](const auto& test) { return std::string(test.param.situation); });

class VersionFile : public RecognitionTest {};

TEST_F(VersionFile, MissingFileFails) {
  EXPECT_EQ(Check("version:lib/version.txt\n"),
            (Verdict{0, "    version: \"lib/version.txt\"  file missing\n"}));
}

TEST_F(VersionFile, FolderInItsPlaceIsMissing) {
  std::filesystem::create_directories(dir_ / "lib/version.txt");
  EXPECT_EQ(Check("version:lib/version.txt\n"),
            (Verdict{0, "    version: \"lib/version.txt\"  file missing\n"}));
}

TEST_F(VersionFile, FileThatCannotBeReadIsMissing) {
  WriteFile(dir_ / "lib/version.txt", "1.8.19");
  std::filesystem::permissions(dir_ / "lib/version.txt", std::filesystem::perms::none);
  const ScopedOrdinaryUser user;
  EXPECT_EQ(Check("version:lib/version.txt\n"),
            (Verdict{0, "    version: \"lib/version.txt\"  file missing\n"}));
}

TEST_F(VersionFile, NameMayHoldBlanks) {
  WriteFile(dir_ / "lib/the version.txt", "1.8.19");
  EXPECT_EQ(Check("version:lib/the version.txt\n"),
            (Verdict{1, "    version: \"lib/the version.txt\"  version matches\n"}));
}

}  // namespace
