#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <string>

#include "engine/install_error.h"
#include "engine/writers.h"
#include "tests/engine/engine_test.h"
#include "tests/support/jars.h"
#include "tests/support/small_disk.h"
#include "tests/support/special_file.h"

namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

class FileWriter : public EngineTest {
 protected:
  FileWriter() { Load({{"entry", "content"}, {"empty", ""}, {"large", Noise(200'000)}}); }

  // A name of one level that, written into the host folder, makes a path of `length` characters.
  std::string NameFor(std::size_t length) const {
    return std::string(length - std::string(host()).size(), 'x');
  }

  // The text of a folder chain below the host folder, with its '/', that makes a path of `length`
  // characters with it.
  std::string FolderFor(std::size_t length) const {
    std::string name = NameFor(length);
    name[name.size() / 2] = '/';
    name.back() = '/';
    return name;
  }
};

constexpr std::uint32_t kEntry = 0;
constexpr std::uint32_t kEmpty = 1;
constexpr std::uint32_t kLarge = 2;

TEST_F(FileWriter, FoldersAreMadeOnTheWay) {
  EXPECT_EQ(WriteEntryToFile(host(), "a/b/", "c/d/e.txt", kEntry), 1);
  EXPECT_EQ(Files(), (::Files{{"a/b/c/d/e.txt", "content"}}));
  EXPECT_STREQ(InstallErrorText(), "");
}

TEST_F(FileWriter, EmptySubfolderPutsTheFileIntoTheBase) {
  EXPECT_EQ(WriteEntryToFile(host(), "", "e.txt", kEntry), 1);
  EXPECT_EQ(Files(), (::Files{{"e.txt", "content"}}));
}

TEST_F(FileWriter, NameWithoutSlashMakesNoLevelOfItsOwn) {
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "e", kEntry), 1);
  EXPECT_EQ(ReadTree(host()), (::Files{{"a/", ""}, {"a/e", "content"}}));
}

TEST_F(FileWriter, BackslashInTheNameMakesNoLevel) {
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "b\\c", kEntry), -1);
  EXPECT_STREQ(InstallErrorText(), "Unable to write file \"a/b\\c\".");
  EXPECT_EQ(ReadTree(host()), (::Files{{"a/", ""}}));
}

TEST_F(FileWriter, EntryOfSizeZeroMakesAnEmptyFile) {
  EXPECT_EQ(WriteEntryToFile(host(), "", "e", kEmpty), 1);
  EXPECT_EQ(Files(), (::Files{{"e", ""}}));
}

TEST_F(FileWriter, LargeEntryIsWrittenWhole) {
  EXPECT_EQ(WriteEntryToFile(host(), "", "e", kLarge), 1);
  EXPECT_EQ(ReadFile(*this / "e"), Noise(200'000));
}

TEST_F(FileWriter, PresentFileIsReplaced) {
  WriteFile(*this / "a/e", "something longer than the entry");
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "e", kEntry), 1);
  EXPECT_EQ(Files(), (::Files{{"a/e", "content"}}));
}

TEST_F(FileWriter, VanishedBaseFailsBeforeAnyFolderIsMade) {
  fs::remove(host());
  EXPECT_EQ(WriteEntryToFile(host(), "a/b/", "c", kEntry), -1);
  EXPECT_EQ(InstallErrorText(), "Directory \"" + std::string(host()) + "\" does not exist!");
  EXPECT_FALSE(fs::exists(host()));
}

TEST_F(FileWriter, ReadOnlyFolderRefusesTheFile) {
  WriteFile(*this / "a/old", "old");
  const ScopedReadOnlyFolder folder(*this / "a");
  const ScopedOrdinaryUser user;
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "new", kEntry), -1);
  EXPECT_STREQ(InstallErrorText(), "Unable to write file \"a/new\".");
  EXPECT_EQ(Files(), (::Files{{"a/old", "old"}}));
}

TEST_F(FileWriter, ReadOnlyFileIsRefusedAndKept) {
  WriteFile(*this / "e", "old");
  chmod((*this / "e").c_str(), 0444);
  const ScopedOrdinaryUser user;
  EXPECT_EQ(WriteEntryToFile(host(), "", "e", kEntry), -1);
  EXPECT_STREQ(InstallErrorText(), "Unable to write file \"e\".");
  EXPECT_EQ(Files(), (::Files{{"e", "old"}}));
}

TEST_F(FileWriter, ReadOnlyFolderRefusesAFolder) {
  fs::create_directory(*this / "a");
  const ScopedReadOnlyFolder folder(*this / "a");
  const ScopedOrdinaryUser user;
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "b/c/d", kEntry), -1);
  EXPECT_EQ(InstallErrorText(), "Unable to create directory \"" + (*this / "a/b/") + "\".");
  EXPECT_EQ(ReadTree(host()), (::Files{{"a/", ""}}));
}

TEST_F(FileWriter, FolderInTheFilesPlaceIsRefused) {
  fs::create_directories(*this / "a/e");
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "e", kEntry), -1);
  EXPECT_STREQ(InstallErrorText(), "Unable to write file \"a/e\".");
  EXPECT_TRUE(fs::is_directory(*this / "a/e"));
}

TEST_F(FileWriter, FileInAFoldersPlaceIsRefused) {
  WriteFile(*this / "a", "a file");
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "e", kEntry), -1);
  EXPECT_EQ(InstallErrorText(), "Unable to create directory \"" + (*this / "a/") + "\".");
  EXPECT_EQ(Files(), (::Files{{"a", "a file"}}));
}

TEST_F(FileWriter, FullDiskFailsTheWriteAndLeavesAPart) {
  fs::create_directory(*this / "disk");
  const ScopedSmallDisk disk(*this / "disk", 64 << 10);
  if (!disk.ok()) GTEST_SKIP() << "mounting is not allowed here";
  EXPECT_EQ(WriteEntryToFile(host(), "disk/", "large", kLarge), -1);
  EXPECT_STREQ(InstallErrorText(), "Error while writing to file \"disk/large\".");
  const std::string part = ReadFile(*this / "disk/large");
  EXPECT_FALSE(part.empty());
  EXPECT_EQ(part, Noise(200'000).substr(0, part.size()));
}

TEST_F(FileWriter, FullDiskFailsTheFlushOfASmallFile) {
  fs::create_directory(*this / "disk");
  const ScopedSmallDisk disk(*this / "disk", 64 << 10);
  if (!disk.ok()) GTEST_SKIP() << "mounting is not allowed here";
  WriteEntryToFile(host(), "disk/", "large", kLarge);
  EXPECT_EQ(WriteEntryToFile(host(), "disk/", "small", kEntry), -1);
  EXPECT_STREQ(InstallErrorText(), "Error after writing to file \"disk/small\".");
  EXPECT_EQ(ReadFile(*this / "disk/small"), "");
}

TEST_F(FileWriter, WhatIsNoFileInTheFilesPlaceIsRefused) {
  for (const SpecialFile& special : kSpecialFiles) {
    const std::string name = special.kind;
    special.make(*this / name);
    EXPECT_EQ(WriteEntryToFile(host(), "", name.c_str(), kEntry), -1);
    EXPECT_EQ(InstallErrorText(), "Unable to write file \"" + name + "\".");
    EXPECT_TRUE(IsSpecialFile(*this / name));
  }
}

TEST_F(FileWriter, PathOf259CharactersIsWhole) {
  const std::string name = NameFor(259);
  EXPECT_EQ(WriteEntryToFile(host(), "", name.c_str(), kEntry), 1);
  EXPECT_EQ(Files(), (::Files{{name, "content"}}));
}

TEST_F(FileWriter, PathOf260CharactersIsCutByOneWithoutAWord) {
  EXPECT_EQ(WriteEntryToFile(host(), "", NameFor(260).c_str(), kEntry), 1);
  EXPECT_EQ(Files(), (::Files{{NameFor(259), "content"}}));
  EXPECT_STREQ(InstallErrorText(), "");
}

TEST_F(FileWriter, CutPathThatNamesAFolderFailsWithTheWholeName) {
  fs::create_directory(*this / NameFor(259));
  const std::string name = NameFor(270);
  EXPECT_EQ(WriteEntryToFile(host(), "", name.c_str(), kEntry), -1);
  EXPECT_EQ(InstallErrorText(), "Unable to write file \"" + name + "\".");
}

TEST_F(FileWriter, CutFolderLevelIsRefused) {
  const std::string name = NameFor(260) + "/e";
  EXPECT_EQ(WriteEntryToFile(host(), "", name.c_str(), kEntry), -1);
  EXPECT_EQ(InstallErrorText(), "Could not create directory \"" + (*this / NameFor(259)) + "\"!");
  EXPECT_TRUE(ReadTree(host()).empty());
}

TEST_F(FileWriter, NoRoomBehindTheSubfolderFailsOnTheCutPath) {
  const std::string folder = FolderFor(259);
  EXPECT_EQ(WriteEntryToFile(host(), folder.c_str(), "a/e", kEntry), -1);
  EXPECT_EQ(InstallErrorText(), "Unable to write file \"" + folder + "a/e\".");
  EXPECT_TRUE(fs::is_directory(*this / folder));
  EXPECT_TRUE(Files().empty());
}

TEST_F(FileWriter, OneByteOfRoomIsUsed) {
  const std::string folder = FolderFor(258);
  EXPECT_EQ(WriteEntryToFile(host(), folder.c_str(), "e", kEntry), 1);
  EXPECT_EQ(Files(), (::Files{{folder + "e", "content"}}));
}

TEST_F(FileWriter, SubfolderBeyondTheLimitIsRefusedEvenWhereItExists) {
  const std::string folder = FolderFor(260);
  fs::create_directories(*this / folder);
  EXPECT_EQ(WriteEntryToFile(host(), folder.c_str(), "e", kEntry), -1);
  const std::string cut = (*this / folder).substr(0, 259);
  EXPECT_EQ(InstallErrorText(), "Could not create directory \"" + cut + "\"!");
  EXPECT_TRUE(Files().empty());
}

TEST_F(FileWriter, SubfolderFarBeyondTheLimitIsRefused) {
  const std::string folder = "a/" + std::string(200, 'x') + "/" + std::string(200, 'y') + "/";
  EXPECT_EQ(WriteEntryToFile(host(), folder.c_str(), "b/e", kEntry), -1);
  EXPECT_EQ(std::string(InstallErrorText()).rfind("Could not create directory \"", 0), 0U);
  EXPECT_TRUE(Files().empty());
}

TEST_F(FileWriter, OpenArchiveIsCommittedFirst) {
  WriteJar(*this / "lib/pde.jar", {{"kept", "kept"}});
  ASSERT_EQ(WriteEntryToArchive(host(), "A.class", kEntry, "lib/pde.jar"), 1);
  EXPECT_EQ(WriteEntryToFile(host(), "", "e", kEntry), 1);
  EXPECT_EQ(OpenArchive.handle, nullptr);
  EXPECT_EQ(ReadJar(*this / "lib/pde.jar"), (JarMembers{{"A.class", "content"}, {"kept", "kept"}}));
}

TEST_F(FileWriter, FailedCommitWritesNoFile) {
  WriteJar(*this / "lib/pde.jar", {{"kept", "kept"}});
  const ::Files before = ReadTree(host());
  ASSERT_EQ(WriteEntryToArchive(host(), "A.class", kEntry, "lib/pde.jar"), 1);
  const ScopedReadOnlyFolder folder(*this / "lib");
  const ScopedOrdinaryUser user;
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "e", kEntry), -1);
  EXPECT_EQ(InstallErrorText(), "Unable to write changes to \"" + (*this / "lib/pde.jar") + "\"");
  EXPECT_EQ(OpenArchive.handle, nullptr);
  EXPECT_EQ(ReadTree(host()), before);
}

}  // namespace
