// Folders below a base, and the rule that none is made outside of it.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "engine/install_error.h"
#include "engine/writers.h"
#include "platform/files.h"
#include "tests/engine/engine_test.h"

namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

class Folders : public EngineTest {
 protected:
  // Both calls on paths below the host folder.
  int Ensure(const std::string& path, const std::string& base = "") const {
    return EnsureDirectory((*this / path).c_str(), (*this / base).c_str());
  }
  int MakeChain(const std::string& path, const std::string& base = "") const {
    return MakeDirectoryChain((*this / path).c_str(), (*this / base).c_str());
  }
  std::string NotWithin(const std::string& path, const std::string& base) const {
    return "Trying to create directory \"" + (*this / path) + "\", but not within \"" +
           (*this / base) + "\"";
  }
};

TEST_F(Folders, ChainIsMadeLevelByLevel) {
  EXPECT_EQ(Ensure("a/b/c/"), 0);
  EXPECT_EQ(ReadTree(host()), (::Files{{"a/", ""}, {"a/b/", ""}, {"a/b/c/", ""}}));
}

TEST_F(Folders, PresentLevelsAreKept) {
  WriteFile(*this / "a/kept", "kept");
  EXPECT_EQ(Ensure("a/b/"), 0);
  EXPECT_EQ(ReadTree(host()), (::Files{{"a/", ""}, {"a/b/", ""}, {"a/kept", "kept"}}));
}

TEST_F(Folders, PresentFolderOutsideTheBaseIsNoFailure) {
  fs::create_directories(*this / "other");
  EXPECT_EQ(Ensure("other/", "base/"), 0);
  EXPECT_STREQ(InstallErrorText(), "");
}

TEST_F(Folders, DoubledSeparatorsAreOneLevel) {
  EXPECT_EQ(Ensure("a//b/"), 0);
  EXPECT_TRUE(fs::is_directory(*this / "a/b"));
}

TEST_F(Folders, BaseItselfIsWithinTheBase) {
  EXPECT_EQ(MakeChain("", ""), 0);
}

TEST_F(Folders, MissingBaseFailsBeforeContainmentIsLookedAt) {
  EXPECT_EQ(Ensure("other/a/", "base/"), -1);
  EXPECT_EQ(InstallErrorText(), "Directory \"" + (*this / "base/") + "\" does not exist!");
  EXPECT_TRUE(ReadTree(host()).empty());
}

TEST_F(Folders, FileAsTheBaseIsNoBase) {
  WriteFile(*this / "base", "a file");
  EXPECT_EQ(Ensure("base/a/", "base"), -1);
  EXPECT_EQ(InstallErrorText(), "Directory \"" + (*this / "base") + "\" does not exist!");
}

TEST_F(Folders, PathOutsideTheBaseIsRefused) {
  fs::create_directory(*this / "base");
  EXPECT_EQ(Ensure("other/a/", "base/"), -1);
  EXPECT_EQ(InstallErrorText(), NotWithin("other/a/", "base/"));
  EXPECT_EQ(ReadTree(host()), (::Files{{"base/", ""}}));
}

TEST_F(Folders, NeighbourThatSharesTheBasesLettersIsRefused) {
  fs::create_directory(*this / "ab");
  EXPECT_EQ(Ensure("abc/d/", "ab/"), -1);
  EXPECT_EQ(InstallErrorText(), NotWithin("abc/d/", "ab/"));
  EXPECT_EQ(ReadTree(host()), (::Files{{"ab/", ""}}));
}

TEST_F(Folders, PathThatTheBaseBeginsIsRefused) {
  fs::create_directories(*this / "ab/c");
  EXPECT_EQ(MakeChain("ab/", "ab/c/"), -1);
  EXPECT_EQ(InstallErrorText(), NotWithin("ab/", "ab/c/"));
}

TEST_F(Folders, BaseInOtherCaseIsRefused) {
  fs::create_directory(*this / "base");
  EXPECT_EQ(MakeChain("Base/a/", "base/"), -1);
  EXPECT_EQ(InstallErrorText(), NotWithin("Base/a/", "base/"));
}

TEST_F(Folders, OtherSeparatorInTheBaseIsAnotherText) {
  fs::create_directory(*this / "base");
  EXPECT_EQ(MakeChain("base/a/", "base\\"), -1);
  EXPECT_EQ(InstallErrorText(), NotWithin("base/a/", "base\\"));
}

// Every caller's base ends in its separator; without one only the letters are compared.
TEST_F(Folders, BaseWithoutSeparatorContainsWhatItBegins) {
  fs::create_directory(*this / "ab");
  EXPECT_EQ(Ensure("ab/d/", "ab"), 0);
  EXPECT_EQ(Ensure("abc/", "ab"), 0);
  EXPECT_EQ(ReadTree(host()), (::Files{{"ab/", ""}, {"ab/d/", ""}, {"abc/", ""}}));
}

TEST_F(Folders, LastLevelWithoutSlashIsMadeByNobody) {
  EXPECT_EQ(MakeChain("a/b"), -1);
  EXPECT_EQ(InstallErrorText(), "Could not create directory \"" + (*this / "a/b") + "\"!");
  EXPECT_EQ(ReadTree(host()), (::Files{{"a/", ""}}));
}

TEST_F(Folders, PresentLastLevelWithoutSlashIsFine) {
  fs::create_directories(*this / "a/b");
  EXPECT_EQ(MakeChain("a/b"), 0);
}

TEST_F(Folders, FileInTheWayIsKept) {
  WriteFile(*this / "a", "a file");
  EXPECT_EQ(Ensure("a/b/"), -1);
  EXPECT_EQ(InstallErrorText(), "Unable to create directory \"" + (*this / "a/") + "\".");
  EXPECT_EQ(Files(), (::Files{{"a", "a file"}}));
}

TEST_F(Folders, ReadOnlyParentRefuses) {
  fs::create_directory(*this / "a");
  const ScopedReadOnlyFolder folder(*this / "a");
  const ScopedOrdinaryUser user;
  EXPECT_EQ(Ensure("a/b/c/"), -1);
  EXPECT_EQ(InstallErrorText(), "Unable to create directory \"" + (*this / "a/b/") + "\".");
  EXPECT_EQ(ReadTree(host()), (::Files{{"a/", ""}}));
}

TEST_F(Folders, LevelsMadeBeforeAFailureStay) {
  WriteFile(*this / "a/b/c", "a file");
  EXPECT_EQ(Ensure("a/new/"), 0);
  EXPECT_EQ(Ensure("a/b/c/d/"), -1);
  EXPECT_TRUE(fs::is_directory(*this / "a/new"));
}

TEST_F(Folders, LevelBeyond259CharactersIsCutAndRefusedAtTheEnd) {
  const std::size_t length = std::string(host()).size();
  const std::string name(270 - length, 'x');
  EXPECT_EQ(MakeChain(name + "/"), -1);
  EXPECT_EQ(InstallErrorText(), "Could not create directory \"" + (*this / name) + "/\"!");
  EXPECT_EQ(ReadTree(host()), (::Files{{name.substr(0, 259 - length) + "/", ""}}));
}

TEST_F(Folders, DirectoryExistsForFoldersAlone) {
  WriteFile(*this / "file", "");
  EXPECT_TRUE(DirectoryExists(host()));
  EXPECT_FALSE(DirectoryExists((*this / "file").c_str()));
  EXPECT_FALSE(DirectoryExists((*this / "missing").c_str()));
  EXPECT_FALSE(DirectoryExists(""));
}

}  // namespace
