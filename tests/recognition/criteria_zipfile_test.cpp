// The line "zipfile:" of a criteria file.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/recognition/jar_damage.h"
#include "tests/recognition/recognition_test.h"
#include "tests/support/jars.h"

namespace fs = std::filesystem;

namespace {

class ZipfileLine : public RecognitionTest {
 protected:
  ZipfileLine() { WriteJar(jar_, {{"Base.class", std::string(1000, 'b')}}); }

  const Verdict kPresent{1, "    zip file: \"lib/pde.jar\"  present\n"};
  const Verdict kRefused{0, "    zip file: \"lib/pde.jar\"  missing or corrupt\n"};
  const std::string jar_ = dir_ / "lib/pde.jar";
};

TEST_F(ZipfileLine, SoundArchiveIsPresentAndUnchanged) {
  const std::string before = ReadFile(jar_);
  EXPECT_EQ(Check("zipfile:lib/pde.jar\n"), kPresent);
  EXPECT_EQ(ReadFile(jar_), before);
}

TEST_F(ZipfileLine, NameMayHoldBlanks) {
  fs::rename(jar_, dir_ / "lib/my pde.jar");
  EXPECT_EQ(Check("zipfile:lib/my pde.jar\n"),
            (Verdict{1, "    zip file: \"lib/my pde.jar\"  present\n"}));
}

TEST_F(ZipfileLine, BackslashInTheFolderReachesTheArchive) {
  EXPECT_EQ(CheckFolder(dir_.path() + "\\lib\\", "zipfile:pde.jar\n").result, 1);
}

TEST_F(ZipfileLine, FlippedDataByteIsNotSeen) {
  FlipDataByte(jar_);
  EXPECT_EQ(Check("zipfile:lib/pde.jar\n"), kPresent);
}

TEST_F(ZipfileLine, ArchiveWithoutMembersIsPresentAndStays) {
  const std::string no_members = std::string("PK\5\6") + std::string(18, '\0');
  WriteFile(jar_, no_members);
  EXPECT_EQ(Check("zipfile:lib/pde.jar\n"), kPresent);
  EXPECT_EQ(ReadFile(jar_), no_members);
}

TEST_F(ZipfileLine, TruncatedArchiveIsRefused) {
  TruncateJar(jar_);
  EXPECT_EQ(Check("zipfile:lib/pde.jar\n"), kRefused);
}

TEST_F(ZipfileLine, AlteredHeaderIsRefused) {
  AlterHeader(jar_);
  EXPECT_EQ(Check("zipfile:lib/pde.jar\n"), kRefused);
}

TEST_F(ZipfileLine, FileOfZeroBytesIsRefusedAndStays) {
  WriteFile(jar_, "");
  EXPECT_EQ(Check("zipfile:lib/pde.jar\n"), kRefused);
  EXPECT_TRUE(fs::exists(jar_));
}

TEST_F(ZipfileLine, FileThatIsNoArchiveIsRefused) {
  WriteFile(jar_, std::string(5000, 'x'));
  EXPECT_EQ(Check("zipfile:lib/pde.jar\n"), kRefused);
}

TEST_F(ZipfileLine, MissingFileIsRefusedAndNotMade) {
  fs::remove(jar_);
  EXPECT_EQ(Check("zipfile:lib/pde.jar\n"), kRefused);
  EXPECT_FALSE(fs::exists(jar_));
}

TEST_F(ZipfileLine, FolderIsRefused) {
  fs::remove(jar_);
  fs::create_directory(jar_);
  EXPECT_EQ(Check("zipfile:lib/pde.jar\n"), kRefused);
}

}  // namespace
