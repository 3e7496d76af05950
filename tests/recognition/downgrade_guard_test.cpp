// The guard against installing over a newer package.
#include "recognition/downgrade_guard.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "recognition/identify_arduino.h"
#include "store/host_selection.h"
#include "store/package_version.h"
#include "tests/recognition/recognition_test.h"
#include "tests/support/special_file.h"

namespace {

std::string Refusal(const std::string& number) {
  return "     Quirloduino " + number +
         " is installed in this copy of Arduino !!!\n"
         "     This installer can not be used to downgrade, because it\n"
         "     is not able to anticipate and delete files added by future\n"
         "     versions.  To downgrade, please extract a fresh copy of\n"
         "     Arduino, then run this installer on the fresh copy.\n";
}

struct MarkerCase {
  const char* situation;
  std::string text;       // of lib/quirloduino.txt
  const char* installed;  // the number that the refusal shows; null when the install may go ahead
};

void PrintTo(const MarkerCase& test, std::ostream* stream) {
  *stream << test.situation;
}

class MarkerFile : public RecognitionTest {};

TEST_F(MarkerFile, WhatIsNoFileInItsPlaceLetsTheInstallGoAhead) {
  for (const SpecialFile& special : kSpecialFiles) {
    special.make(dir_ / "lib/quirloduino.txt");
    EXPECT_EQ(CheckDowngrade(Folder().c_str()), 1) << special.kind;
    std::filesystem::remove(dir_ / "lib/quirloduino.txt");
  }
}

class DowngradeGuard : public RecognitionTest, public testing::WithParamInterface<MarkerCase> {};

TEST_P(DowngradeGuard, JudgesTheMarker) {
  WriteFile(dir_ / "lib/quirloduino.txt", GetParam().text);
  const bool passes = GetParam().installed == nullptr;
  EXPECT_EQ(CheckDowngrade(Folder().c_str()), passes ? 1 : 0);
  EXPECT_EQ(Log(), passes ? "" : Refusal(GetParam().installed));
}

const MarkerCase kMarkers[] = {
    {"OwnVersionPasses", kPackageVersion, nullptr},
    {"OtherBetaOfTheSameNumberPasses", "1.60-beta9", nullptr},
    {"SameNumberWithoutBetaPasses", "1.60", nullptr},
    {"SameNumberWrittenShortPasses", "1.6", nullptr},
    {"OlderVersionPasses", "1.59", nullptr},
    {"OneHundredCountsAsTenHundredths", "1.100", nullptr},
    {"WithinTheMarginPasses", "1.60009", nullptr},
    // Nearer to the margin than single precision can tell; in double precision it is above.
    {"MarginIsAddedInDoublePrecision", "1.6001", "1.60"},
    {"BeyondTheMarginIsRefused", "1.6002", "1.60"},
    {"NextHundredthIsRefused", "1.61", "1.61"},
    {"NextTenthIsRefused", "1.7", "1.70"},
    {"NextWholeNumberIsRefused", "2", "2.00"},
    {"BetaOfANewerVersionIsRefused", "1.61-beta1\n", "1.61"},
    {"OnlyTheFirstLineCounts", "1.60\n1.61\n", nullptr},
    {"CarriageReturnIsIgnored", "1.61\r\n", "1.61"},
    {"BlanksAheadOfTheNumberAreSkipped", " \t1.61", "1.61"},
    {"SignIsPartOfTheNumber", "+1.61", "1.61"},
    {"NegativeNumberPasses", "-1.61", nullptr},
    {"EmptyFilePasses", "", nullptr},
    {"EmptyFirstLinePasses", "\n1.61\n", nullptr},
    {"WordPasses", "beta", nullptr},
    {"WordAheadOfTheNumberPasses", "v1.61", nullptr},
    {"WordThatSomeReadersTakeForInfinityPasses", "info", nullptr},
    {"InfinityPasses", "infinity", nullptr},
    {"NotANumberPasses", "nan", nullptr},
    {"HexadecimalIsReadAsItsLeadingZero", "0x10", nullptr},
    // The number lies beyond the 1,283 characters that are read.
    {"LineIsReadTo1283Characters", std::string(1283, ' ') + "1.61", nullptr},
    {"NumberUpToTheLastCharacterReadCounts", std::string(1279, ' ') + "1.61", "1.61"},
    {"ExponentIsPartOfTheNumber", "161e-2", "1.61"},
    {"CapitalExponentIsPartOfTheNumber", "0.161E+1", "1.61"},
    {"NumberAtTheEndOfTheCharactersReadIsCut", std::string(1282, ' ') + "19", nullptr},
};

INSTANTIATE_TEST_SUITE_P(All, DowngradeGuard, testing::ValuesIn(kMarkers),
                         [](const auto& test) { return std::string(test.param.situation); });

class DowngradeMarker : public RecognitionTest {};

TEST_F(DowngradeMarker, FolderWithoutMarkerPasses) {
  EXPECT_EQ(CheckDowngrade(Folder().c_str()), 1);
  EXPECT_EQ(Log(), "");
}

TEST_F(DowngradeMarker, FolderInItsPlacePasses) {
  std::filesystem::create_directories(dir_ / "lib/quirloduino.txt");
  EXPECT_EQ(CheckDowngrade(Folder().c_str()), 1);
}

TEST_F(DowngradeMarker, MarkerThatCannotBeReadPasses) {
  WriteFile(dir_ / "lib/quirloduino.txt", "1.61");
  std::filesystem::permissions(dir_ / "lib/quirloduino.txt", std::filesystem::perms::none);
  const ScopedOrdinaryUser user;
  EXPECT_EQ(CheckDowngrade(Folder().c_str()), 1);
}

TEST_F(DowngradeMarker, FolderMayEndInABackslash) {
  WriteFile(dir_ / "lib/quirloduino.txt", "1.61");
  EXPECT_EQ(CheckDowngrade((dir_.path() + "\\").c_str()), 0);
}

TEST_F(DowngradeMarker, PathIsCutAt1283Characters) {
  // The folder's own length leaves no room for the whole name of the marker.
  WriteFile(dir_ / "lib/quirloduino.txt", "1.61");
  std::string folder = Folder();
  while (folder.size() + 19 < 1283) folder += "/";
  const std::size_t room = 1283 - folder.size();
  EXPECT_EQ(room, 19U);
  EXPECT_EQ(CheckDowngrade(folder.c_str()), 0);
  EXPECT_EQ(CheckDowngrade((folder + "/").c_str()), 1);
}

TEST_F(DowngradeMarker, RefusalWithoutALogStands) {
  LogBuffer = nullptr;
  WriteFile(dir_ / "lib/quirloduino.txt", "1.61");
  EXPECT_EQ(CheckDowngrade(Folder().c_str()), 0);
}

class Downgrade : public RecognitionTest {
 protected:
  Downgrade() {
    WriteFile(dir_ / "lib/version.txt", "1.8.5\n");
    WriteFile(dir_ / "lib/quirloduino.txt", "1.61");
  }
  const TestEntry kFits{"1.8.5/WINDOWS/directory_criteria.txt", "version:lib/version.txt\n"};
  const TestEntry kOther{"1.8.9/WINDOWS/directory_criteria.txt", "version:lib/version.txt\n"};
};

TEST_F(Downgrade, RefusedFolderGoesThroughTheRemainingReleases) {
  const TestStore store({kFits, kOther});
  EXPECT_EQ(IdentifyArduino(Folder().c_str()), 0);
  EXPECT_STREQ(HostVersion, "");
  EXPECT_EQ(Log(), "Directory: " + Folder() +
                       "\n"
                       "  Checking Arduino 1.8.5:\n"
                       "    version: \"lib/version.txt\"  version matches\n"
                       "    Found Arduino 1.8.5\n" +
                       Refusal("1.61") +
                       "  Checking Arduino 1.8.9:\n"
                       "    version: \"lib/version.txt\"  wrong version: 1.8.5"
                       "    Does not match Arduino 1.8.9\n");
}

TEST_F(Downgrade, RefusalByTheLastReleaseEndsLikeAnUnknownFolder) {
  const TestStore store({kOther, kFits});
  SelectRelease("1.8.9");
  EXPECT_EQ(IdentifyArduino(Folder().c_str()), 0);
  EXPECT_STREQ(HostVersion, "");
  EXPECT_EQ(HostVersionLength, 0U);
  EXPECT_EQ(Log(), "Directory: " + Folder() +
                       "\n"
                       "  Checking Arduino 1.8.9:\n"
                       "    version: \"lib/version.txt\"  wrong version: 1.8.5"
                       "    Does not match Arduino 1.8.9\n"
                       "  Checking Arduino 1.8.5:\n"
                       "    version: \"lib/version.txt\"  version matches\n"
                       "    Found Arduino 1.8.5\n" +
                       Refusal("1.61"));
}

TEST_F(Downgrade, MarkerOfTheOwnVersionLetsTheReleaseWin) {
  WriteFile(dir_ / "lib/quirloduino.txt", kPackageVersion);
  const TestStore store({kFits, kOther});
  EXPECT_EQ(IdentifyArduino(Folder().c_str()), 10805);
  EXPECT_STREQ(HostVersion, "1.8.5");
}

}  // namespace
