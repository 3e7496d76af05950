#include <gtest/gtest.h>

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

constexpr char kJar[] = "lib/pde.jar";
constexpr std::uint32_t kEntry = 0;
constexpr std::uint32_t kEmpty = 1;
constexpr std::uint32_t kLarge = 2;

class ArchiveWriter : public EngineTest {
 protected:
  ArchiveWriter() {
    Load({{"entry", "ours"}, {"empty", ""}, {"large", Noise(50'000)}});
    WriteJar(*this / kJar, members_);
  }

  int Write(const std::string& object, std::uint32_t index = kEntry, const char* jar = kJar) const {
    return WriteEntryToArchive(host(), object.c_str(), index, jar);
  }
  std::string UnableToWriteChanges(const char* jar = kJar) const {
    return "Unable to write changes to \"" + (*this / jar) + "\"";
  }
  std::string UnableToOpen(const std::string& jar) const {
    return "Unable to open file \"" + (*this / jar) + "\".";
  }

  JarMembers members_ = {{"processing/app/Base.class", "the host's"},
                         {"processing/app/Editor.class", "the host's"},
                         {"META-INF/MANIFEST.MF", Noise(5'000)}};
};

TEST_F(ArchiveWriter, PresentObjectIsReplacedAndTheOthersStay) {
  EXPECT_EQ(Write("processing/app/Base.class"), 1);
  EXPECT_TRUE(CloseOpenArchive());
  members_["processing/app/Base.class"] = "ours";
  EXPECT_EQ(ReadJar(*this / kJar), members_);
  EXPECT_STREQ(InstallErrorText(), "");
}

TEST_F(ArchiveWriter, WhatIsNoFileInTheArchivesPlaceIsNotOpened) {
  for (const SpecialFile& special : kSpecialFiles) {
    const std::string jar = std::string("lib/") + special.kind;
    special.make(*this / jar);
    EXPECT_EQ(Write("Base.class", kEntry, jar.c_str()), -1);
    EXPECT_EQ(InstallErrorText(), UnableToOpen(jar));
    EXPECT_TRUE(IsSpecialFile(*this / jar));
  }
}

TEST_F(ArchiveWriter, AbsentObjectIsAdded) {
  EXPECT_EQ(Write("processing/app/Added.class"), 1);
  EXPECT_TRUE(CloseOpenArchive());
  members_["processing/app/Added.class"] = "ours";
  EXPECT_EQ(ReadJar(*this / kJar), members_);
}

TEST_F(ArchiveWriter, ObjectInOtherCaseOrFolderIsAnotherObject) {
  EXPECT_EQ(Write("processing/app/base.class"), 1);
  EXPECT_EQ(Write("Base.class"), 1);
  EXPECT_TRUE(CloseOpenArchive());
  members_["processing/app/base.class"] = "ours";
  members_["Base.class"] = "ours";
  EXPECT_EQ(ReadJar(*this / kJar), members_);
}

TEST_F(ArchiveWriter, EmptyEntryMakesAnEmptyObject) {
  EXPECT_EQ(Write("processing/app/Base.class", kEmpty), 1);
  EXPECT_TRUE(CloseOpenArchive());
  members_["processing/app/Base.class"] = "";
  EXPECT_EQ(ReadJar(*this / kJar), members_);
}

TEST_F(ArchiveWriter, NothingReachesTheDiskBeforeTheClose) {
  const ::Files before = ReadTree(host());
  EXPECT_EQ(Write("processing/app/Base.class"), 1);
  EXPECT_EQ(Write("Added.class", kLarge), 1);
  EXPECT_EQ(ReadTree(host()), before);
}

TEST_F(ArchiveWriter, SecondEntryForOneObjectWins) {
  EXPECT_EQ(Write("Added.class", kLarge), 1);
  EXPECT_EQ(Write("Added.class"), 1);
  EXPECT_TRUE(CloseOpenArchive());
  members_["Added.class"] = "ours";
  EXPECT_EQ(ReadJar(*this / kJar), members_);
}

TEST_F(ArchiveWriter, SecondRunReplacesWhatTheFirstAdded) {
  for (int run = 0; run < 2; ++run) {
    EXPECT_EQ(Write("Added.class"), 1);
    EXPECT_TRUE(CloseOpenArchive());
  }
  members_["Added.class"] = "ours";
  EXPECT_EQ(ReadJar(*this / kJar), members_);
}

TEST_F(ArchiveWriter, BaseMayEndInABackslash) {
  std::string base = host();
  base.back() = '\\';
  EXPECT_EQ(WriteEntryToArchive(base.c_str(), "Added.class", kEntry, kJar), 1);
  EXPECT_EQ(OpenArchive.path, base + kJar);
  EXPECT_TRUE(CloseOpenArchive());
  EXPECT_EQ(ReadJar(*this / kJar).count("Added.class"), 1U);
}

TEST_F(ArchiveWriter, AbsentArchiveIsNotMade) {
  EXPECT_EQ(Write("A.class", kEntry, "lib/missing.jar"), -1);
  EXPECT_EQ(InstallErrorText(), UnableToOpen("lib/missing.jar"));
  EXPECT_EQ(OpenArchive.handle, nullptr);
  EXPECT_FALSE(fs::exists(*this / "lib/missing.jar"));
}

TEST_F(ArchiveWriter, FileThatIsNoArchiveIsRefusedAndKept) {
  WriteFile(*this / "lib/bad.jar", "no archive at all, but some bytes of text");
  EXPECT_EQ(Write("A.class", kEntry, "lib/bad.jar"), -1);
  EXPECT_EQ(InstallErrorText(), UnableToOpen("lib/bad.jar"));
  EXPECT_EQ(ReadFile(*this / "lib/bad.jar"), "no archive at all, but some bytes of text");
}

TEST_F(ArchiveWriter, FolderInTheArchivesPlaceIsRefused) {
  fs::create_directory(*this / "lib/folder.jar");
  EXPECT_EQ(Write("A.class", kEntry, "lib/folder.jar"), -1);
  EXPECT_EQ(InstallErrorText(), UnableToOpen("lib/folder.jar"));
}

TEST_F(ArchiveWriter, UnreadableArchiveIsRefused) {
  fs::permissions(*this / kJar, fs::perms::none);
  const ScopedOrdinaryUser user;
  EXPECT_EQ(Write("A.class"), -1);
  EXPECT_EQ(InstallErrorText(), UnableToOpen(kJar));
}

TEST_F(ArchiveWriter, ArchiveNameIsCutAt255Characters) {
  const std::string name(300, 'x');
  EXPECT_EQ(WriteEntryToArchive("", "A.class", kEntry, name.c_str()), -1);
  EXPECT_EQ(InstallErrorText(), "Unable to open file \"" + name.substr(0, 255) + "\".");
}

TEST_F(ArchiveWriter, ArchivePathIsCutAt259Characters) {
  const std::string name = std::string(250, 'x') + ".jar";
  EXPECT_EQ(Write("A.class", kEntry, name.c_str()), -1);
  EXPECT_EQ(InstallErrorText(), "Unable to open file \"" + (*this / name).substr(0, 259) + "\".");
}

TEST_F(ArchiveWriter, CutPathIsStillTheSameArchive) {
  const std::string whole(260 - std::string(host()).size(), 'x');
  WriteJar((*this / whole).substr(0, 259), members_);
  EXPECT_EQ(Write("A.class", kEntry, whole.c_str()), 1);
  const auto* const handle = OpenArchive.handle;
  EXPECT_EQ(Write("B.class", kEntry, whole.c_str()), 1);
  EXPECT_EQ(OpenArchive.handle, handle);
  EXPECT_EQ(OpenArchive.path, (*this / whole).substr(0, 259));
}

TEST_F(ArchiveWriter, CloseWithoutAnOpenArchiveIsFine) {
  EXPECT_TRUE(CloseOpenArchive());
  EXPECT_STREQ(InstallErrorText(), "");
}

TEST_F(ArchiveWriter, RefusedCommitKeepsTheArchiveByteForByte) {
  const ::Files before = ReadTree(host());
  ASSERT_EQ(Write("processing/app/Base.class"), 1);
  ASSERT_EQ(Write("Added.class", kLarge), 1);
  const ScopedReadOnlyFolder folder(*this / "lib");
  const ScopedOrdinaryUser user;
  EXPECT_FALSE(CloseOpenArchive());
  EXPECT_EQ(InstallErrorText(), UnableToWriteChanges());
  EXPECT_EQ(OpenArchive.handle, nullptr);
  EXPECT_EQ(ReadTree(host()), before);  // and no temporary file beside it
  EXPECT_TRUE(CloseOpenArchive());
}

TEST_F(ArchiveWriter, FullDiskRefusesTheCommitAndKeepsTheArchive) {
  fs::create_directory(*this / "disk");
  const ScopedSmallDisk disk(*this / "disk", 64 << 10);
  if (!disk.ok()) GTEST_SKIP() << "mounting is not allowed here";
  WriteJar(*this / "disk/pde.jar", members_);
  const ::Files before = ReadTree(*this / "disk");
  ASSERT_EQ(Write("Added.class", kLarge, "disk/pde.jar"), 1);
  ASSERT_EQ(Write("More.class", kLarge, "disk/pde.jar"), 1);
  EXPECT_FALSE(CloseOpenArchive());
  EXPECT_EQ(InstallErrorText(), UnableToWriteChanges("disk/pde.jar"));
  EXPECT_EQ(OpenArchive.handle, nullptr);
  EXPECT_EQ(ReadTree(*this / "disk"), before);
}

TEST_F(ArchiveWriter, ArchiveIsUsableAgainAfterARefusedCommit) {
  ASSERT_EQ(Write("Dropped.class"), 1);
  {
    const ScopedReadOnlyFolder folder(*this / "lib");
    const ScopedOrdinaryUser user;
    EXPECT_FALSE(CloseOpenArchive());
  }
  EXPECT_EQ(Write("Added.class"), 1);
  EXPECT_TRUE(CloseOpenArchive());
  members_["Added.class"] = "ours";
  EXPECT_EQ(ReadJar(*this / kJar), members_);
}

TEST_F(ArchiveWriter, RefusedCommitOfAnotherArchiveStopsTheObject) {
  WriteJar(*this / "more/core.jar", members_);
  const ::Files before = ReadTree(host());
  ASSERT_EQ(Write("Dropped.class"), 1);
  const ScopedReadOnlyFolder folder(*this / "lib");
  const ScopedOrdinaryUser user;
  EXPECT_EQ(Write("A.class", kEntry, "more/core.jar"), -1);
  EXPECT_EQ(InstallErrorText(), UnableToWriteChanges());
  EXPECT_EQ(OpenArchive.handle, nullptr);
  EXPECT_EQ(ReadTree(host()), before);
}

}  // namespace
