#include "platform/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/special_file.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

using testing::UnorderedElementsAre;

// A path longer than the system takes, which would name an existing folder if it were shorter.
std::string OverlongPath(const std::string& folder) {
  std::string path = folder;
  while (path.size() < kLibraryPathSize) path += "/.";
  return path;
}

std::string Content(std::FILE* file) {
  std::string content;
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) content += static_cast<char>(c);
  std::fclose(file);
  return content;
}

class OpenFileSeparators : public testing::TestWithParam<const char*> {};

TEST_P(OpenFileSeparators, ReachesTheFile) {
  const TempDir dir;
  WriteFile(dir / "lib/sub/file.txt", "content");
  std::FILE* file = OpenFile((dir.path() + GetParam()).c_str(), "r");
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(Content(file), "content");
}

INSTANTIATE_TEST_SUITE_P(All, OpenFileSeparators,
                         testing::Values("/lib/sub/file.txt", "\\lib\\sub\\file.txt",
                                         "\\lib/sub\\file.txt", "//lib//sub///file.txt",
                                         "\\\\lib\\\\sub\\\\file.txt", "\\/lib/\\sub\\//file.txt"));

class OpenFileModes : public testing::TestWithParam<const char*> {};

TEST_P(OpenFileModes, FolderIsRefusedWithAccessDenied) {
  const TempDir dir;
  errno = 0;
  EXPECT_EQ(OpenFile(dir.path().c_str(), GetParam()), nullptr);
  EXPECT_EQ(errno, EACCES);
}

TEST_P(OpenFileModes, FolderWithTrailingSeparatorIsRefused) {
  const TempDir dir;
  EXPECT_EQ(OpenFile((dir.path() + "\\").c_str(), GetParam()), nullptr);
  EXPECT_EQ(OpenFile((dir.path() + "/").c_str(), GetParam()), nullptr);
}

// None is waited for, and none is asked for anything.
TEST_P(OpenFileModes, WhatIsNoPlainFileIsRefusedWithAccessDenied) {
  const TempDir dir;
  for (const SpecialFile& special : kSpecialFiles) {
    special.make(dir / special.kind);
    errno = 0;
    EXPECT_EQ(OpenFile((dir / special.kind).c_str(), GetParam()), nullptr) << special.kind;
    EXPECT_EQ(errno, EACCES) << special.kind;
    EXPECT_TRUE(IsSpecialFile(dir / special.kind));
  }
}

TEST_P(OpenFileModes, LinkToAFileIsOpened) {
  const TempDir dir;
  WriteFile(dir / "file", "content");
  fs::create_symlink("file", dir / "link");
  std::FILE* file = OpenFile((dir / "link").c_str(), GetParam());
  ASSERT_NE(file, nullptr);
  std::fclose(file);
}

INSTANTIATE_TEST_SUITE_P(All, OpenFileModes,
                         testing::Values("r", "rb", "r+", "w", "wb", "w+", "a", "ab", "a+"));

TEST(OpenFile, WritesThroughEitherSeparator) {
  const TempDir dir;
  fs::create_directory(dir / "lib");
  std::FILE* file = OpenFile((dir.path() + "\\lib\\new.txt").c_str(), "wb");
  ASSERT_NE(file, nullptr);
  std::fputs("new", file);
  std::fclose(file);
  EXPECT_EQ(ReadFile(dir / "lib/new.txt"), "new");
}

TEST(OpenFile, MissingFileIsNull) {
  const TempDir dir;
  EXPECT_EQ(OpenFile((dir / "none").c_str(), "r"), nullptr);
  EXPECT_EQ(errno, ENOENT);
}

TEST(OpenFile, UnreadableFileIsNull) {
  const TempDir dir;
  WriteFile(dir / "secret", "content");
  fs::permissions(dir / "secret", fs::perms::none);
  const ScopedOrdinaryUser user;
  EXPECT_EQ(OpenFile((dir / "secret").c_str(), "r"), nullptr);
  EXPECT_EQ(errno, EACCES);
}

TEST(OpenFile, OverlongPathIsNull) {
  const TempDir dir;
  EXPECT_EQ(OpenFile(OverlongPath(dir.path()).c_str(), "r"), nullptr);
  EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST(DirectoryExists, FolderExistsWithAnyTrailingSeparators) {
  const TempDir dir;
  for (const char* ending : {"", "/", "\\", "//", "\\\\", "/\\", "\\/"}) {
    EXPECT_TRUE(DirectoryExists((dir.path() + ending).c_str())) << ending;
  }
}

TEST(DirectoryExists, FileIsNoFolder) {
  const TempDir dir;
  WriteFile(dir / "file", "content");
  EXPECT_FALSE(DirectoryExists((dir / "file").c_str()));
}

TEST(DirectoryExists, MissingFolderDoesNotExist) {
  const TempDir dir;
  EXPECT_FALSE(DirectoryExists((dir / "none").c_str()));
  EXPECT_FALSE(DirectoryExists(""));
}

TEST(DirectoryExists, FolderThatCannotBeReadDoesNotExist) {
  const TempDir dir;
  fs::create_directory(dir / "closed");
  fs::permissions(dir / "closed", fs::perms::owner_write | fs::perms::others_exec);
  {
    const ScopedOrdinaryUser user;
    EXPECT_FALSE(DirectoryExists((dir / "closed").c_str()));
  }
  fs::permissions(dir / "closed", fs::perms::owner_all);  // or it could not be removed
}

TEST(DirectoryExists, LinkToAFolderExists) {
  const TempDir dir;
  fs::create_directory(dir / "target");
  fs::create_directory_symlink("target", dir / "link");
  EXPECT_TRUE(DirectoryExists((dir / "link").c_str()));
}

TEST(DirectoryExists, OverlongPathDoesNotExist) {
  const TempDir dir;
  EXPECT_FALSE(DirectoryExists(OverlongPath(dir.path()).c_str()));
  EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST(DirectoryExists, LeavesNothingOpen) {
  const TempDir dir;
  const auto open_handles = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const auto before = open_handles();
  DirectoryExists(dir.path().c_str());
  EXPECT_EQ(open_handles(), before);
}

TEST(OpenDirectory, ListsEveryNameWithTheDots) {
  const TempDir dir;
  WriteFile(dir / "file", "");
  fs::create_directory(dir / "folder");
  DirectoryHandle* directory = OpenDirectory((dir.path() + "\\").c_str());
  ASSERT_NE(directory, nullptr);
  std::vector<std::string> names;
  while (const char* name = NextDirectoryEntry(directory)) names.emplace_back(name);
  CloseDirectory(directory);
  EXPECT_THAT(names, UnorderedElementsAre(".", "..", "file", "folder"));
}

TEST(OpenDirectory, FileMissingFolderAndOverlongPathAreNull) {
  const TempDir dir;
  WriteFile(dir / "file", "");
  EXPECT_EQ(OpenDirectory((dir / "file").c_str()), nullptr);
  EXPECT_EQ(OpenDirectory((dir / "none").c_str()), nullptr);
  EXPECT_EQ(OpenDirectory(OverlongPath(dir.path()).c_str()), nullptr);
}

// What a listing names, with a neighbour that a translated name would reach instead.
class ListedNames : public testing::Test {
 protected:
  ListedNames() {
    WriteFile(dir_ / "a/b", "the neighbour");
    WriteFile(dir_ / "a\\b", "1234");
    fs::create_directories(dir_ / "c/d");
    fs::create_directories(dir_ / "c\\d");
    WriteFile(dir_ / "e\\f/..\\g", "12");
    directory_ = OpenDirectory((dir_.path() + "\\").c_str());
  }
  ~ListedNames() override {
    if (directory_ != nullptr) CloseDirectory(directory_);
  }

  TempDir dir_;
  DirectoryHandle* directory_;
};

TEST_F(ListedNames, AreLookedAtAsTheyStand) {
  ASSERT_NE(directory_, nullptr);
  PathStatus status;
  ASSERT_TRUE(StatListed(directory_, "a\\b", &status));
  EXPECT_EQ(status.size, 4U);
  EXPECT_FALSE(status.is_directory);
  ASSERT_TRUE(StatListed(directory_, "c\\d", &status));
  EXPECT_TRUE(status.is_directory);
  EXPECT_FALSE(StatListed(directory_, "none", &status));
  EXPECT_FALSE(StatListed(directory_, std::string(5000, 'x').c_str(), &status));
  EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST_F(ListedNames, AreRemovedAsTheyStand) {
  ASSERT_NE(directory_, nullptr);
  EXPECT_TRUE(RemoveListedFile(directory_, "a\\b"));
  EXPECT_TRUE(RemoveListedDirectory(directory_, "c\\d"));
  EXPECT_FALSE(RemoveListedFile(directory_, "a\\b"));
  EXPECT_FALSE(RemoveListedFile(directory_, "c"));
  EXPECT_FALSE(RemoveListedDirectory(directory_, "a"));  // not empty
  EXPECT_EQ(ReadFile(dir_ / "a/b"), "the neighbour");
  EXPECT_TRUE(fs::is_directory(dir_ / "c/d"));
}

TEST_F(ListedNames, AreOpenedAsTheyStandAtEveryDepth) {
  ASSERT_NE(directory_, nullptr);
  DirectoryHandle* below = OpenListedDirectory(directory_, "e\\f");
  ASSERT_NE(below, nullptr);
  EXPECT_EQ(OpenListedDirectory(below, "..\\c"), nullptr);
  PathStatus status;
  ASSERT_TRUE(StatListed(below, "..\\g", &status));
  EXPECT_EQ(status.size, 2U);
  EXPECT_TRUE(RemoveListedFile(below, "..\\g"));
  CloseDirectory(below);
  EXPECT_EQ(OpenListedDirectory(directory_, "none"), nullptr);
  EXPECT_EQ(OpenListedDirectory(directory_, "a\\b"), nullptr);
}

TEST(CanBeGiven, PathWithABackslashCanNot) {
  EXPECT_TRUE(CanBeGiven("/home/user/arduino-1.8.19/"));
  EXPECT_TRUE(CanBeGiven(""));
  EXPECT_FALSE(CanBeGiven("/home/a\\b/"));
}

TEST(MakeDirectory, MakesOneFolderWithEitherSeparator) {
  const TempDir dir;
  EXPECT_TRUE(MakeDirectory((dir.path() + "\\one").c_str()));
  EXPECT_TRUE(MakeDirectory((dir.path() + "/one\\two/").c_str()));
  EXPECT_TRUE(fs::is_directory(dir / "one/two"));
}

TEST(MakeDirectory, MissingParentFails) {
  const TempDir dir;
  EXPECT_FALSE(MakeDirectory((dir / "one/two").c_str()));
  EXPECT_FALSE(fs::exists(dir / "one"));
}

TEST(MakeDirectory, ExistingFolderOrFileFails) {
  const TempDir dir;
  WriteFile(dir / "file", "content");
  EXPECT_FALSE(MakeDirectory(dir.path().c_str()));
  EXPECT_EQ(errno, EEXIST);
  EXPECT_FALSE(MakeDirectory((dir / "file").c_str()));
  EXPECT_EQ(ReadFile(dir / "file"), "content");
}

TEST(MakeDirectory, OverlongPathFails) {
  const TempDir dir;
  EXPECT_FALSE(MakeDirectory(OverlongPath(dir.path()).c_str()));
}

TEST(RemoveFile, RemovesAFileThroughEitherSeparator) {
  const TempDir dir;
  WriteFile(dir / "lib/file", "content");
  EXPECT_TRUE(RemoveFile((dir.path() + "\\lib\\file").c_str()));
  EXPECT_FALSE(fs::exists(dir / "lib/file"));
}

TEST(RemoveFile, FolderIsRefused) {
  const TempDir dir;
  fs::create_directory(dir / "empty");
  EXPECT_FALSE(RemoveFile((dir / "empty").c_str()));
  EXPECT_TRUE(fs::is_directory(dir / "empty"));
}

TEST(RemoveFile, LinkIsRemovedAndItsTargetStays) {
  const TempDir dir;
  WriteFile(dir / "target", "content");
  fs::create_symlink("target", dir / "link");
  EXPECT_TRUE(RemoveFile((dir / "link").c_str()));
  EXPECT_EQ(ReadFile(dir / "target"), "content");
}

TEST(RemoveFile, MissingFileAndOverlongPathFail) {
  const TempDir dir;
  EXPECT_FALSE(RemoveFile((dir / "none").c_str()));
  EXPECT_FALSE(RemoveFile(OverlongPath(dir.path()).c_str()));
}

TEST(RemoveEmptyDirectory, RemovesAnEmptyFolder) {
  const TempDir dir;
  fs::create_directory(dir / "empty");
  EXPECT_TRUE(RemoveEmptyDirectory((dir.path() + "\\empty").c_str()));
  EXPECT_FALSE(fs::exists(dir / "empty"));
}

TEST(RemoveEmptyDirectory, FolderWithAFileStays) {
  const TempDir dir;
  WriteFile(dir / "full/file", "content");
  EXPECT_FALSE(RemoveEmptyDirectory((dir / "full").c_str()));
  EXPECT_EQ(ReadFile(dir / "full/file"), "content");
}

TEST(RemoveEmptyDirectory, FileMissingFolderAndOverlongPathFail) {
  const TempDir dir;
  WriteFile(dir / "file", "content");
  EXPECT_FALSE(RemoveEmptyDirectory((dir / "file").c_str()));
  EXPECT_FALSE(RemoveEmptyDirectory((dir / "none").c_str()));
  EXPECT_FALSE(RemoveEmptyDirectory(OverlongPath(dir.path()).c_str()));
  EXPECT_TRUE(fs::exists(dir / "file"));
}

TEST(StatPath, TellsSizeOfAFile) {
  const TempDir dir;
  WriteFile(dir / "lib/file", "12345");
  PathStatus status;
  ASSERT_TRUE(StatPath((dir.path() + "\\lib\\file").c_str(), &status));
  EXPECT_EQ(status.size, 5U);
  EXPECT_FALSE(status.is_directory);
}

TEST(StatPath, SizeOfAFileBeyondFourGigabytesIsWhole) {
  const TempDir dir;
  WriteFile(dir / "sparse", "");
  fs::resize_file(dir / "sparse", 5000000000U);
  PathStatus status;
  ASSERT_TRUE(StatPath((dir / "sparse").c_str(), &status));
  EXPECT_EQ(status.size, 5000000000U);
}

TEST(StatPath, TellsAFolder) {
  const TempDir dir;
  PathStatus status;
  ASSERT_TRUE(StatPath((dir.path() + "\\").c_str(), &status));
  EXPECT_TRUE(status.is_directory);
}

TEST(StatPath, FollowsLinks) {
  const TempDir dir;
  WriteFile(dir / "target", "123");
  fs::create_symlink("target", dir / "link");
  fs::create_symlink("nothing", dir / "broken");
  PathStatus status;
  ASSERT_TRUE(StatPath((dir / "link").c_str(), &status));
  EXPECT_EQ(status.size, 3U);
  EXPECT_FALSE(StatPath((dir / "broken").c_str(), &status));
}

TEST(StatPath, MissingPathAndOverlongPathFail) {
  const TempDir dir;
  PathStatus status;
  EXPECT_FALSE(StatPath((dir / "none").c_str(), &status));
  EXPECT_FALSE(StatPath(OverlongPath(dir.path()).c_str(), &status));
}

// The file that stands at `path` now has these permission bits.
unsigned PermissionsOf(const std::string& path) {
  return static_cast<unsigned>(fs::status(path).permissions());
}

// A folder in which a file was looked at and another one has come into its place since.
class ReplacedFile : public testing::Test {
 protected:
  ReplacedFile() {
    WriteFile(path_, "old");
    fs::permissions(path_, fs::perms(0664));
    access_ = AccessOf(path_.c_str());
    WriteFile(new_, "new");
    fs::permissions(new_, fs::perms(0600));
  }

  TempDir dir_;
  std::string path_ = dir_ / "file";
  std::string new_ = dir_ / "new";
  FileAccess access_;
};

TEST_F(ReplacedFile, GetsThePermissionsOfTheOldOne) {
  fs::rename(new_, path_);
  RestoreAccess((dir_.path() + "\\file").c_str(), access_);
  EXPECT_EQ(PermissionsOf(path_), 0664U);
}

TEST_F(ReplacedFile, IsLeftAloneWhenTheOldOneWasNotSeen) {
  fs::rename(new_, path_);
  RestoreAccess(path_.c_str(), AccessOf((dir_ / "none").c_str()));
  EXPECT_EQ(PermissionsOf(path_), 0600U);
}

TEST_F(ReplacedFile, IsLeftAloneWhenItIsTheOldOne) {
  fs::permissions(path_, fs::perms(0600));
  RestoreAccess(path_.c_str(), access_);
  EXPECT_EQ(PermissionsOf(path_), 0600U);
}

// Nobody may have a file elsewhere opened to others by what they put into the folder.
TEST_F(ReplacedFile, IsLeftAloneWhenItHasAnotherNameOrIsALink) {
  WriteFile(dir_ / "secret", "somebody's");
  fs::permissions(dir_ / "secret", fs::perms(0600));
  fs::rename(path_, dir_ / "old");  // its inode is not to be had again
  fs::create_hard_link(dir_ / "secret", path_);
  RestoreAccess(path_.c_str(), access_);
  EXPECT_EQ(PermissionsOf(dir_ / "secret"), 0600U);
  fs::remove(path_);
  fs::create_symlink("secret", path_);
  RestoreAccess(path_.c_str(), access_);
  EXPECT_EQ(PermissionsOf(dir_ / "secret"), 0600U);
  fs::remove(path_);
  fs::create_directory(path_);
  fs::permissions(path_, fs::perms(0700));
  RestoreAccess(path_.c_str(), access_);
  EXPECT_EQ(PermissionsOf(path_), 0700U);
}

TEST_F(ReplacedFile, IsLeftAloneWhenItIsNoPlainFile) {
  fs::rename(path_, dir_ / "old");
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  RestoreAccess(path_.c_str(), access_);
  EXPECT_EQ(PermissionsOf(path_), 0600U);
}

TEST_F(ReplacedFile, MayBeGone) {
  fs::remove(path_);
  RestoreAccess(path_.c_str(), access_);
  EXPECT_FALSE(fs::exists(path_));
}

}  // namespace
