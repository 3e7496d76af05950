// The removal of old library folders, on a real disk.
#include "engine/library_removal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "store/host_selection.h"
#include "tests/support/arduino_host.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

namespace {

constexpr char kLibraries[] = "hardware/quirlo/avr/libraries/";
const std::vector<std::string> kOld = {"Adafruit_GFX", "Adafruit_CC3000", "Adafruit_RA8875",
                                       "openGLCD",     "ST7565",          "SD/utility"};

std::vector<std::string> Names(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& [name, content] : ReadTree(folder)) names.push_back(name);
  return names;
}

class OldLibraries : public ::testing::Test {
 protected:
  OldLibraries() {
    SelectRelease("1.8.19");
    for (const std::string& library : kOld) {
      WriteFile(libraries_ + library + "/src/deep/file.cpp", "old");
      WriteFile(libraries_ + library + "/file.h", "old");
    }
  }

  std::vector<std::string> Left() const { return Names(libraries_); }

  TempDir dir_;
  TestStore store_{ControlEntries1819()};
  std::string host_ = dir_ / "arduino";
  std::string libraries_ = host_ + "/" + kLibraries;
};

TEST_F(OldLibraries, AllSixPathsGoAndOnlyTheUtilityFolderOfSd) {
  WriteFile(libraries_ + "SD/SD.h", "stays");
  WriteFile(libraries_ + "Adafruit_GFX2/a.h", "stays");
  WriteFile(libraries_ + "adafruit_gfx/a.h", "stays");
  WriteFile(host_ + "/Adafruit_GFX/a.h", "stays");
  RemoveOldLibraries((host_ + "/").c_str());
  EXPECT_THAT(Left(), ElementsAre("Adafruit_GFX2/", "Adafruit_GFX2/a.h", "SD/", "SD/SD.h",
                                  "adafruit_gfx/", "adafruit_gfx/a.h"));
  EXPECT_TRUE(fs::exists(host_ + "/Adafruit_GFX/a.h"));
}

TEST_F(OldLibraries, HostMayEndInEitherSeparatorOrNone) {
  for (const char* ending : {"", "/", "\\"}) {
    WriteFile(libraries_ + "openGLCD/file.h", "old");
    RemoveOldLibraries((host_ + ending).c_str());
    EXPECT_FALSE(fs::exists(libraries_ + "openGLCD")) << ending;
  }
}

TEST_F(OldLibraries, MissingHostTextRemovesNothing) {
  RemoveOldLibraries(nullptr);
  RemoveOldLibraries("");
  for (const std::string& library : kOld) EXPECT_TRUE(fs::exists(libraries_ + library));
}

TEST_F(OldLibraries, WithoutAReleaseNothingIsRemoved) {
  // Also where a missing place would be taken for the host folder itself, or for the words in which
  // a missing text is shown.
  for (const std::string& library : kOld) {
    WriteFile(host_ + "/" + library + "/file.h", "stays");
    WriteFile(host_ + "/(null)" + library + "/file.h", "stays");
  }
  const auto before = ReadTree(host_);
  SelectRelease("");
  RemoveOldLibraries((host_ + "/").c_str());
  EXPECT_EQ(ReadTree(host_), before);
}

// The copy of the host's text holds every host below which there is room for an old library.
TEST_F(OldLibraries, HostAsLongAsItsLongestLibraryAllowsLosesThemToo) {
  constexpr std::size_t kLongestFolder = 257;  // of one whose entries can be named
  const std::string below = std::string("/") + kLibraries + "Adafruit_CC3000";
  std::string host = dir_.path();
  host += "/" + std::string(kLongestFolder - below.size() - host.size() - 1, 'h');
  fs::rename(host_, host);
  for (const std::string& library : kOld) {
    fs::remove_all(host + "/" + kLibraries + library + "/src");  // no room for what is below
    fs::rename(host + "/" + kLibraries + library + "/file.h",
               host + "/" + kLibraries + library + "/f");
  }
  RemoveOldLibraries((host + "/").c_str());
  EXPECT_THAT(Names(host + "/" + kLibraries), ElementsAre("SD/"));
}

TEST_F(OldLibraries, EveryFolderIsClosedAgain) {
  const auto open_handles = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const auto before = open_handles();
  RemoveOldLibraries((host_ + "/").c_str());
  EXPECT_EQ(open_handles(), before);
}

TEST_F(OldLibraries, PathThatDoesNotExistIsPassedOver) {
  fs::remove_all(libraries_ + "Adafruit_GFX");
  RemoveOldLibraries((host_ + "/").c_str());
  EXPECT_THAT(Left(), ElementsAre("SD/"));
}

// It could be removed, being empty, but nobody has seen that.
TEST_F(OldLibraries, FolderThatCannotBeOpenedIsPassedOver) {
  const std::string closed = libraries_ + "openGLCD";
  fs::remove_all(closed);
  fs::create_directory(closed);
  fs::permissions(closed, fs::perms::none);
  fs::permissions(libraries_, fs::perms::all);
  {
    const ScopedOrdinaryUser user;
    RemoveOldLibraries((host_ + "/").c_str());
  }
  EXPECT_TRUE(fs::exists(closed));
}

TEST_F(OldLibraries, PathThatIsAPlainFileIsPassedOver) {
  fs::remove_all(libraries_ + "openGLCD");
  WriteFile(libraries_ + "openGLCD", "a file");
  RemoveOldLibraries((host_ + "/").c_str());
  EXPECT_THAT(Left(), ElementsAre("SD/", "openGLCD"));
}

// Off Windows it is the folder's right that keeps a file from being removed.
TEST_F(OldLibraries, WhatCannotBeRemovedStaysWithItsFolderAndTheOthersGo) {
  const std::string locked = libraries_ + "openGLCD/locked";
  WriteFile(locked + "/file.h", "stays");
  for (const auto& entry : fs::recursive_directory_iterator(dir_.path())) {
    if (geteuid() == 0 && lchown(entry.path().c_str(), 65534, 65534) != 0) FAIL();
  }
  fs::permissions(locked, fs::perms::owner_read | fs::perms::owner_exec);
  {
    const ScopedOrdinaryUser user;
    RemoveOldLibraries((host_ + "/").c_str());
  }
  fs::permissions(locked, fs::perms::owner_all);
  EXPECT_THAT(Left(),
              ElementsAre("SD/", "openGLCD/", "openGLCD/locked/", "openGLCD/locked/file.h"));
}

TEST_F(OldLibraries, LibrarySubdirIsThatOfTheSelectedRelease) {
  std::string locations = kLocations;
  const std::string usual = kLibraries;
  locations.replace(locations.find(usual), usual.size(), "libraries/");
  const TestStore store({{"1.8.19/WINDOWS/locations.txt", locations}});
  SelectRelease("1.8.19");
  WriteFile(host_ + "/libraries/openGLCD/a.h", "old");
  RemoveOldLibraries((host_ + "/").c_str());
  EXPECT_FALSE(fs::exists(host_ + "/libraries/openGLCD"));
  EXPECT_TRUE(fs::exists(libraries_ + "openGLCD"));
}

// Off Windows a name may hold a backslash. It names what stands in the folder and nothing else.
TEST_F(OldLibraries, NamesWithABackslashLeadNowhereAndAreRemoved) {
  WriteFile(libraries_ + "Servo/Servo.h", "stays");
  WriteFile(libraries_ + "Servo/src/Servo.cpp", "stays");
  WriteFile(host_ + "/lib/version.txt", "stays");
  for (const char* name : {"..\\Servo", "..\\..\\..\\..\\..\\lib\\version.txt", "back\\slash", "\\",
                           "src\\deep\\file.cpp"}) {
    WriteFile(libraries_ + "openGLCD/" + name, "goes");
  }
  WriteFile(libraries_ + "ST7565/..\\Servo/deep\\er/file", "goes, with its folders");
  RemoveOldLibraries((host_ + "/").c_str());
  EXPECT_THAT(Names(host_ + "/lib"), ElementsAre("version.txt"));
  EXPECT_THAT(Left(),
              ElementsAre("SD/", "Servo/", "Servo/Servo.h", "Servo/src/", "Servo/src/Servo.cpp"));
}

// ---- the tree ---------------------------------------------------------------------------------

TEST(RemoveTree, EmptiesTheFolderAndLeavesIt) {
  const TempDir dir;
  WriteFile(dir / "tree/a/b/c.txt", "c");
  WriteFile(dir / "tree/.hidden/d.txt", "d");
  WriteFile(dir / "tree/e.txt", "e");
  fs::create_directories(dir / "tree/empty");
  EXPECT_EQ(RemoveTree((dir / "tree").c_str()), 1);
  EXPECT_THAT(Names(dir.path()), ElementsAre("tree/"));
}

TEST(RemoveTree, EmptyFolderIsOne) {
  const TempDir dir;
  EXPECT_EQ(RemoveTree(dir.path().c_str()), 1);
}

TEST(RemoveTree, FileOrNothingIsZeroAndStays) {
  const TempDir dir;
  WriteFile(dir / "file", "stays");
  EXPECT_EQ(RemoveTree((dir / "file").c_str()), 0);
  EXPECT_EQ(RemoveTree((dir / "nothing").c_str()), 0);
  EXPECT_THAT(Names(dir.path()), ElementsAre("file"));
}

TEST(RemoveTree, LinkThatLeadsNowhereIsRemoved) {
  const TempDir dir;
  fs::create_directories(dir / "tree");
  fs::create_symlink(dir / "nothing", dir / "tree/link");
  EXPECT_EQ(RemoveTree((dir / "tree").c_str()), 1);
  EXPECT_THAT(Names(dir / "tree"), IsEmpty());
}

TEST(RemoveTree, LinkToAFileIsRemovedAndTheFileStays) {
  const TempDir dir;
  WriteFile(dir / "file", "stays");
  fs::create_directories(dir / "tree");
  fs::create_symlink(dir / "file", dir / "tree/link");
  EXPECT_EQ(RemoveTree((dir / "tree").c_str()), 1);
  EXPECT_THAT(Names(dir.path()), UnorderedElementsAre("file", "tree/"));
}

// What can't be removed doesn't make it another answer, nor does another link in its place.
TEST(RemoveTree, FolderThatKeepsWhatItHoldsIsOneAllTheSame) {
  const TempDir dir;
  WriteFile(dir / "tree/locked/file", "stays");
  if (geteuid() == 0) {
    for (const auto& entry : fs::recursive_directory_iterator(dir.path())) {
      ASSERT_EQ(lchown(entry.path().c_str(), 65534, 65534), 0);
    }
  }
  fs::permissions(dir / "tree/locked", fs::perms::owner_read | fs::perms::owner_exec);
  int result = 0;
  {
    const ScopedOrdinaryUser user;
    result = RemoveTree((dir / "tree").c_str());
  }
  fs::permissions(dir / "tree/locked", fs::perms::owner_all);
  EXPECT_EQ(result, 1);
  EXPECT_THAT(Names(dir / "tree"), ElementsAre("locked/", "locked/file"));
}

// A folder of exactly that many characters.
std::string FolderOfLength(const TempDir& dir, std::size_t length) {
  std::string path = dir.path();
  while (path.size() + 102 < length) path += "/" + std::string(100, 'f');
  path += "/" + std::string(length - path.size() - 1, 'g');
  fs::create_directories(path);
  return path;
}

TEST(RemoveTree, LongestFolderThatIsOpenedLosesWhatCanBeNamed) {
  const TempDir dir;
  const std::string folder = FolderOfLength(dir, 257);
  WriteFile(folder + "/a", "one character fits");
  WriteFile(folder + "/bb", "cut to one that isn't there");
  EXPECT_EQ(RemoveTree(folder.c_str()), 1);
  EXPECT_THAT(Names(folder), ElementsAre("bb"));
}

TEST(RemoveTree, FolderWithoutRoomForAnEntryIsNotOpened) {
  for (const std::size_t length : {258U, 259U, 300U}) {
    const TempDir dir;
    const std::string folder = FolderOfLength(dir, length);
    WriteFile(folder + "/file", "stays");
    WriteFile(fs::path(folder).parent_path() / "sibling", "stays");
    EXPECT_EQ(RemoveTree(folder.c_str()), 0) << length;
    EXPECT_TRUE(fs::exists(folder + "/file"));
    EXPECT_TRUE(fs::exists(fs::path(folder).parent_path() / "sibling"));
  }
}

TEST(RemoveTree, HostOfTheLongestTextLosesNothingOfItsOwn) {
  const TempDir dir;
  const std::string host = FolderOfLength(dir, 258);
  const TestStore store(ControlEntries1819());
  SelectRelease("1.8.19");
  WriteFile(host + "/" + kLibraries + "openGLCD/a.h", "stays");
  WriteFile(host + "/lib/version.txt", "stays");
  RemoveOldLibraries((host + "/").c_str());
  EXPECT_TRUE(fs::exists(host + "/lib/version.txt"));
  EXPECT_TRUE(fs::exists(host + "/" + kLibraries + "openGLCD/a.h"));
}

}  // namespace
