#include "engine/host_preferences.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>

#include "tests/engine/engine_test.h"
#include "tests/support/special_file.h"

namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

constexpr int k1819 = 10819;

// The three replacement lines in the order in which missing ones are put at the head.
constexpr char kOurs[] = "board=quirlo31\r\ntarget_package=quirlo\r\ntarget_platform=avr\r\n";

// The user's local application data folder is one of the test's own; the host folder has no
// portable folder until a test makes one.
class HostPreferences : public EngineTest {
 protected:
  HostPreferences() : environment_("XDG_DATA_HOME", data_.path()) {}

  std::string Arduino() const { return data_ / "Arduino/preferences.txt"; }
  std::string Arduino15() const { return data_ / "Arduino15/preferences.txt"; }
  std::string Portable() const { return *this / "portable/preferences.txt"; }

  void Update() const { UpdatePreferences(host(), k1819); }

  // The file after an update that found `before`.
  std::string Updated(const std::string& before) const {
    WriteFile(Arduino15(), before);
    Update();
    return ReadFile(Arduino15());
  }

  // What shows that a file was not even opened for writing.
  static struct stat Touch(const std::string& path) {
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1000));
    struct stat status = {};
    stat(path.c_str(), &status);
    return status;
  }
  static void ExpectUntouched(const std::string& path, const struct stat& before) {
    struct stat after = {};
    ASSERT_EQ(stat(path.c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_size, before.st_size);
    EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(after.st_ctim.tv_sec, before.st_ctim.tv_sec);
    EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
  }

  TempDir data_;

 private:
  ScopedEnvironment environment_;
};

// A path of 259 characters is whole, and one more is cut and so leads nowhere.
TEST_F(HostPreferences, PathIsFoundUpTo259Characters) {
  constexpr std::size_t kLongest = 259;
  const std::string end = "/portable/preferences.txt";
  for (const std::size_t length : {kLongest - 20, kLongest, kLongest + 1}) {
    std::string folder = *this / "";
    folder += std::string(length - end.size() - folder.size(), 'p');
    WriteFile(folder + end, "a=1\n");
    const char* path = FindPreferences(folder.c_str(), k1819);
    if (length > kLongest) {
      EXPECT_EQ(path, nullptr);
    } else {
      EXPECT_STREQ(path, (folder + end).c_str());
    }
  }
}

TEST_F(HostPreferences, PathInTheUsersDataIsFoundUpTo259Characters) {
  constexpr std::size_t kLongest = 259;
  const std::string end = "/Arduino15/preferences.txt";
  for (const std::size_t length : {kLongest, kLongest + 1}) {
    std::string data = data_ / "";
    data += std::string(length - end.size() - data.size(), 'd');
    const ScopedEnvironment environment("XDG_DATA_HOME", data);
    WriteFile(data + end, "a=1\n");
    EXPECT_EQ(FindPreferences(host(), k1819) != nullptr, length <= kLongest) << length;
  }
}

// Where the file lies, by version.

enum class Place { kNone, kArduino, kArduino15, kPortable };

struct Version {
  int number;
  Place place;         // with all three files there
  Place not_portable;  // without the one in the portable folder
};

void PrintTo(const Version& version, std::ostream* out) {
  *out << version.number;
}

class FindPreferencesByVersion : public HostPreferences,
                                 public testing::WithParamInterface<Version> {
 protected:
  void Expect(Place place) const {
    const char* path = FindPreferences(host(), GetParam().number);
    switch (place) {
      case Place::kNone:
        EXPECT_EQ(path, nullptr);
        return;
      case Place::kArduino:
        EXPECT_EQ(std::string(path), data_.path() + "\\Arduino\\preferences.txt");
        return;
      case Place::kArduino15:
        EXPECT_EQ(std::string(path), data_.path() + "\\Arduino15\\preferences.txt");
        return;
      case Place::kPortable:
        EXPECT_EQ(std::string(path), std::string(host()) + "/portable/preferences.txt");
        return;
    }
  }
};

TEST_P(FindPreferencesByVersion, LooksInItsOwnFolders) {
  WriteFile(Arduino(), "");
  WriteFile(Arduino15(), "");
  Expect(GetParam().not_portable);
  WriteFile(Portable(), "");
  Expect(GetParam().place);
}

TEST_P(FindPreferencesByVersion, AbsentFilesGiveNone) {
  fs::create_directories(data_ / "Arduino");
  fs::create_directories(data_ / "Arduino15");
  fs::create_directories(*this / "portable");
  Expect(Place::kNone);
}

INSTANTIATE_TEST_SUITE_P(Versions, FindPreferencesByVersion,
                         testing::Values(Version{-1, Place::kNone, Place::kNone},
                                         Version{0, Place::kNone, Place::kNone},
                                         Version{9999, Place::kNone, Place::kNone},
                                         Version{10000, Place::kArduino, Place::kArduino},
                                         Version{10498, Place::kArduino, Place::kArduino},
                                         Version{10499, Place::kNone, Place::kNone},
                                         Version{10500, Place::kArduino15, Place::kArduino15},
                                         Version{10599, Place::kArduino15, Place::kArduino15},
                                         Version{10600, Place::kPortable, Place::kArduino15},
                                         Version{10819, Place::kPortable, Place::kArduino15},
                                         Version{99999, Place::kPortable, Place::kArduino15},
                                         Version{100000, Place::kNone, Place::kNone}),
                         [](const testing::TestParamInfo<Version>& test) {
                           return test.param.number < 0 ? std::string("Negative")
                                                        : std::to_string(test.param.number);
                         });

TEST_F(HostPreferences, NoLocalDataFolderGivesNoneButThePortableFile) {
  const ScopedEnvironment data("XDG_DATA_HOME", "");
  const ScopedEnvironment home("HOME", "");
  EXPECT_EQ(FindPreferences(host(), 10000), nullptr);
  EXPECT_EQ(FindPreferences(host(), 10500), nullptr);
  EXPECT_EQ(FindPreferences(host(), k1819), nullptr);
  WriteFile(Portable(), "");
  EXPECT_NE(FindPreferences(host(), k1819), nullptr);
}

TEST_F(HostPreferences, ResultIsOneTextThatTheNextCallOverwrites) {
  WriteFile(Arduino15(), "");
  const char* first = FindPreferences(host(), k1819);
  WriteFile(Portable(), "");
  const char* second = FindPreferences(host(), k1819);
  EXPECT_EQ(first, second);
  EXPECT_EQ(std::string(first), std::string(host()) + "/portable/preferences.txt");
}

TEST_F(HostPreferences, PathCutAt259CharactersIsNotFound) {
  const std::string deep = *this / (std::string(100, 'x') + "/" + std::string(100, 'y') + "/");
  WriteFile(deep + "/portable/preferences.txt", "");
  ASSERT_LT(deep.size(), 260U);
  EXPECT_EQ(FindPreferences(deep.c_str(), k1819), nullptr);
}

TEST_F(HostPreferences, FolderMayEndInABackslash) {
  WriteFile(Portable(), "");
  std::string folder = host();
  folder.back() = '\\';
  EXPECT_EQ(FindPreferences(folder.c_str(), k1819), folder + "/portable/preferences.txt");
}

// The edit.

std::string OursBefore(std::string rest) {
  return rest.insert(0, kOurs);
}

struct Edit {
  const char* situation;
  std::string before;
  std::string after;
};

void PrintTo(const Edit& edit, std::ostream* out) {
  *out << edit.situation;
}

class PreferencesEdit : public HostPreferences, public testing::WithParamInterface<Edit> {};

TEST_P(PreferencesEdit, ComesOutByteForByte) {
  EXPECT_EQ(Updated(GetParam().before), GetParam().after);
}

std::string SituationOf(const testing::TestParamInfo<Edit>& info) {
  return info.param.situation;
}

INSTANTIATE_TEST_SUITE_P(
    Missing, PreferencesEdit,
    testing::Values(Edit{"EmptyFileGetsThreeLines", "", kOurs},
                    Edit{"OtherKeysGetThreeLinesAtTheirHead", "editor.font=a\nbuild.path=b\n",
                         OursBefore("editor.font=a\nbuild.path=b\n")},
                    Edit{"OneLineFeedGetsThreeLines", "\n", OursBefore("\n")},
                    Edit{"OnlyTheUnseenKeyGoesToTheHead",
                         "a=1\nboard=quirlo31\ntarget_platform=avr\n",
                         "target_package=quirlo\r\na=1\nboard=quirlo31\r\ntarget_platform=avr\r\n"},
                    Edit{"UnseenBoardGoesToTheHead", "target_platform=avr\ntarget_package=quirlo\n",
                         "board=quirlo31\r\ntarget_platform=avr\r\ntarget_package=quirlo\r\n"},
                    Edit{"UnseenPlatformGoesToTheHead", "board=quirlo31\ntarget_package=quirlo\n",
                         "target_platform=avr\r\nboard=quirlo31\r\ntarget_package=quirlo\r\n"}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(
    Wrong, PreferencesEdit,
    testing::Values(
        Edit{"WrongBoardWithLineFeedsTakesACarriageReturn",
             "a=1\nboard=uno\ntarget_package=quirlo\ntarget_platform=avr\nz=26\n",
             "a=1\nboard=quirlo31\r\ntarget_package=quirlo\r\ntarget_platform=avr\r\nz=26\n"},
        Edit{"WrongPackageReplacesARightBoard",
             "board=quirlo41\r\ntarget_package=arduino\r\ntarget_platform=avr\r\n", kOurs},
        Edit{"WrongPlatformReplacesARightBoard",
             "board=quirlo41\r\ntarget_package=quirlo\r\ntarget_platform=sam\r\n", kOurs},
        Edit{"OrderOfTheLinesStays",
             "target_platform=sam\nb=2\ntarget_package=arduino\nboard=uno\nc=3",
             "target_platform=avr\r\nb=2\ntarget_package=quirlo\r\nboard=quirlo31\r\nc=3"},
        Edit{"EveryLineOfAKeyIsReplaced",
             "board=quirlo41\nboard=uno\na=1\nboard=due\ntarget_package=quirlo\n"
             "target_platform=avr\n",
             "board=quirlo31\r\nboard=quirlo31\r\na=1\nboard=quirlo31\r\n"
             "target_package=quirlo\r\ntarget_platform=avr\r\n"},
        Edit{"LastOfSeveralLinesCounts",
             "board=quirlo31\nboard=uno\ntarget_package=quirlo\ntarget_platform=avr\n",
             "board=quirlo31\r\nboard=quirlo31\r\ntarget_package=quirlo\r\n"
             "target_platform=avr\r\n"},
        Edit{"TrailingBlankIsNotRight",
             "board=quirlo31 \ntarget_package=quirlo\ntarget_platform=avr\n", kOurs},
        Edit{"LeadingBlankInTheValueIsNotRight",
             "board= quirlo31\ntarget_package=quirlo\ntarget_platform=avr\n", kOurs},
        Edit{"BoardInOtherCaseIsNotRight",
             "board=Quirlo31\ntarget_package=quirlo\ntarget_platform=avr\n", kOurs},
        Edit{"BeginningOfABoardIsNotRight",
             "board=quirlo3\ntarget_package=quirlo\ntarget_platform=avr\n", kOurs},
        Edit{"LongerBoardIsNotRight",
             "board=quirlo310\ntarget_package=quirlo\ntarget_platform=avr\n", kOurs},
        Edit{"TwoCarriageReturnsAreNotRight",
             "board=quirlo31\r\r\ntarget_package=quirlo\ntarget_platform=avr\n", kOurs},
        Edit{"UnterminatedLastLineIsNotRight",
             "target_package=quirlo\ntarget_platform=avr\nboard=quirlo31",
             "target_package=quirlo\r\ntarget_platform=avr\r\nboard=quirlo31\r\n"},
        Edit{"UnterminatedLineWithACarriageReturnIsNotRight",
             "target_package=quirlo\ntarget_platform=avr\nboard=quirlo31\r",
             "target_package=quirlo\r\ntarget_platform=avr\r\nboard=quirlo31\r\n"}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(
    NothingBehindTheKey, PreferencesEdit,
    testing::Values(
        Edit{"BoardWithALineFeedIsSeenAndWrong",
             "board=\ntarget_package=quirlo\ntarget_platform=avr\n", kOurs},
        Edit{"UnterminatedBoardIsUnseenAndStays",
             "target_package=quirlo\ntarget_platform=avr\nboard=",
             "board=quirlo31\r\ntarget_package=quirlo\r\ntarget_platform=avr\r\nboard="},
        Edit{"PackageWithALineFeedIsSeenAndWrong",
             "board=quirlo31\ntarget_package=\ntarget_platform=avr\n", kOurs},
        Edit{"UnterminatedPackageIsUnseenAndStays",
             "board=quirlo31\ntarget_platform=avr\ntarget_package=",
             "target_package=quirlo\r\nboard=quirlo31\r\ntarget_platform=avr\r\ntarget_package="},
        Edit{"PlatformWithALineFeedIsSeenAndWrong",
             "board=quirlo31\ntarget_package=quirlo\ntarget_platform=\n", kOurs},
        Edit{"UnterminatedPlatformIsUnseenAndStays",
             "board=quirlo31\ntarget_package=quirlo\ntarget_platform=",
             "target_platform=avr\r\nboard=quirlo31\r\ntarget_package=quirlo\r\ntarget_platform="}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(
    NoKey, PreferencesEdit,
    testing::Values(
        Edit{"BehindABlank", " board=uno\n", OursBefore(" board=uno\n")},
        Edit{"InOtherCase", "Board=uno\n", OursBefore("Board=uno\n")},
        Edit{"InsideALine", "last.board=uno\n", OursBefore("last.board=uno\n")},
        Edit{"BehindACarriageReturnAlone", "a=1\rboard=uno\n", OursBefore("a=1\rboard=uno\n")},
        Edit{"WithABlankBeforeTheSign", "board =uno\n", OursBefore("board =uno\n")},
        Edit{"LongerKey", "target_package_x=uno\n", OursBefore("target_package_x=uno\n")},
        Edit{"CommentedOut", "#board=uno\n", OursBefore("#board=uno\n")}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(OtherLines, PreferencesEdit,
                         testing::Values(Edit{"KeepTheirEndings", "a\r\nb\nc\r\r\n\r\n\n\rd",
                                              OursBefore("a\r\nb\nc\r\r\n\r\n\n\rd")},
                                         Edit{"KeepTheirZeroBytes", std::string("a\0b\n\0", 5),
                                              OursBefore(std::string("a\0b\n\0", 5))},
                                         Edit{"KeepTheirHighBytes",
                                              "sketchbook=C:\\Users\\J\xFCrgen\n",
                                              OursBefore("sketchbook=C:\\Users\\J\xFCrgen\n")}),
                         SituationOf);

// All three right.

class AcceptedBoard : public HostPreferences, public testing::WithParamInterface<const char*> {};

TEST_P(AcceptedBoard, LeavesTheFileUntouchedWithEitherLineEnd) {
  for (const char* end : {"\n", "\r\n"}) {
    std::string text = "a=1\nboard=";
    text.append(GetParam()).append(end);
    text.append("target_package=quirlo").append(end);
    text.append("target_platform=avr").append(end).append("z=26");
    WriteFile(Arduino15(), text);
    const struct stat before = Touch(Arduino15());
    Update();
    ExpectUntouched(Arduino15(), before);
    EXPECT_EQ(ReadFile(Arduino15()), text);
  }
}

INSTANTIATE_TEST_SUITE_P(Boards, AcceptedBoard,
                         testing::Values("quirlo31", "quirlo35", "quirlo36", "quirlo40", "quirlo41",
                                         "quirloMM", "quirlo30", "quirloLC", "quirlo2",
                                         "quirlopp2"),
                         [](const testing::TestParamInfo<const char*>& test) {
                           return std::string(test.param);
                         });

TEST_F(HostPreferences, LastRightLineOfAKeyLeavesTheFileUntouched) {
  WriteFile(Arduino15(),
            "board=uno\ntarget_package=arduino\ntarget_platform=sam\n"
            "target_platform=avr\ntarget_package=quirlo\nboard=quirlo41\n");
  const struct stat before = Touch(Arduino15());
  Update();
  ExpectUntouched(Arduino15(), before);
}

TEST_F(HostPreferences, SecondUpdateLeavesTheFileUntouched) {
  EXPECT_EQ(Updated("board=uno\n"),
            "target_package=quirlo\r\ntarget_platform=avr\r\nboard=quirlo31\r\n");
  const struct stat before = Touch(Arduino15());
  Update();
  ExpectUntouched(Arduino15(), before);
}

// Around the edit.

TEST_F(HostPreferences, FileIsRewrittenInPlaceWithNothingBesideIt) {
  WriteFile(Arduino15(), "board=uno\n");
  const struct stat before = Touch(Arduino15());
  Update();
  struct stat after = {};
  ASSERT_EQ(stat(Arduino15().c_str(), &after), 0);
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_EQ(ReadTree(data_.path()).size(), 2U);  // the folder and the file
}

TEST_F(HostPreferences, PortableFileTakesPrecedence) {
  WriteFile(Arduino15(), "a=1\n");
  WriteFile(Portable(), "a=1\n");
  Update();
  EXPECT_EQ(ReadFile(Portable()), OursBefore("a=1\n"));
  EXPECT_EQ(ReadFile(Arduino15()), "a=1\n");
}

TEST_F(HostPreferences, ReleaseBelow160DoesNotLookInThePortableFolder) {
  WriteFile(Arduino15(), "a=1\n");
  WriteFile(Portable(), "a=1\n");
  UpdatePreferences(host(), 10599);
  EXPECT_EQ(ReadFile(Portable()), "a=1\n");
  EXPECT_EQ(ReadFile(Arduino15()), OursBefore("a=1\n"));
}

TEST_F(HostPreferences, VersionWithoutAPlaceTouchesNothing) {
  for (const std::string& path : {Arduino(), Arduino15(), Portable()}) WriteFile(path, "a=1\n");
  UpdatePreferences(host(), 10499);
  UpdatePreferences(host(), 0);
  for (const std::string& path : {Arduino(), Arduino15(), Portable()}) {
    EXPECT_EQ(ReadFile(path), "a=1\n");
  }
}

TEST_F(HostPreferences, NoFileIsCreatedBeforeArduinosFirstRun) {
  fs::create_directories(data_ / "Arduino15");
  Update();
  EXPECT_EQ(ReadTree(data_.path()), (::Files{{"Arduino15/", ""}}));
  EXPECT_TRUE(ReadTree(host()).empty());
}

TEST_F(HostPreferences, FolderInItsPlaceEndsSilently) {
  fs::create_directories(Portable());
  WriteFile(Arduino15(), "a=1\n");
  Update();
  EXPECT_TRUE(fs::is_directory(Portable()));
  EXPECT_EQ(ReadFile(Arduino15()), "a=1\n");  // the folder has taken precedence
}

// Their sizes, or the sizes and one, are 0 and 1 in 32 bits. A file of holes takes no room.
TEST_F(HostPreferences, FileBeyondThe32BitSizesIsLeftAlone) {
  for (const std::uintmax_t size : {0xFFFFFFFFULL, 0x100000000ULL, 0x100000001ULL}) {
    WriteFile(Arduino15(), "board=uno\n");
    fs::resize_file(Arduino15(), size);
    const struct stat before = Touch(Arduino15());
    Update();
    ExpectUntouched(Arduino15(), before);
    EXPECT_EQ(fs::file_size(Arduino15()), size);
  }
}

TEST_F(HostPreferences, UnreadableFileEndsSilently) {
  WriteFile(Arduino15(), "a=1\n");
  chmod(Arduino15().c_str(), 0222);
  {
    const ScopedOrdinaryUser user;
    Update();
  }
  chmod(Arduino15().c_str(), 0666);
  EXPECT_EQ(ReadFile(Arduino15()), "a=1\n");
}

TEST_F(HostPreferences, UnwritableFileEndsSilently) {
  WriteFile(Arduino15(), "a=1\n");
  chmod(Arduino15().c_str(), 0444);
  const ScopedOrdinaryUser user;
  Update();
  EXPECT_EQ(ReadFile(Arduino15()), "a=1\n");
}

TEST_F(HostPreferences, WhatIsNoFileInTheFilesPlaceEndsSilently) {
  for (const SpecialFile& special : kSpecialFiles) {
    special.make(Arduino15());
    Update();
    EXPECT_TRUE(IsSpecialFile(Arduino15())) << special.kind;
    fs::remove(Arduino15());
  }
}

}  // namespace
