// The entries under cores/ that take a file out of the host.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <ostream>
#include <string>

#include "engine/file_disposition.h"
#include "engine/install_error.h"
#include "tests/engine/engine_test.h"
#include "tests/support/special_file.h"

namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

constexpr char kMark[] = "// this file no longer used\n";
constexpr char kEntry[] = "cores/quirlo4/libc.c";

class Removal : public EngineTest {
 protected:
  Removal() : target_(*this / (std::string(kCores) + "quirlo4/libc.c")) {}

  const std::string target_;
};

TEST_F(Removal, PresentFileIsGone) {
  Load({{kEntry, kMark}});
  WriteFile(target_, "from an earlier version");
  WriteFile(*this / (std::string(kCores) + "quirlo4/kept.c"), "kept");
  EXPECT_EQ(Dispose(kEntry), 0);
  EXPECT_EQ(Files(), (::Files{{std::string(kCores) + "quirlo4/kept.c", "kept"}}));
  EXPECT_STREQ(InstallErrorText(), "");
  EXPECT_FALSE(AntivirusHint);
}

TEST_F(Removal, AbsentFileCountsAsDone) {
  Load({{kEntry, kMark}});
  EXPECT_EQ(Dispose(kEntry), 0);
  EXPECT_STREQ(InstallErrorText(), "");
  EXPECT_TRUE(ReadTree(host()).empty());  // not even a folder is made for it
}

TEST_F(Removal, FolderInItsPlaceIsPassedOver) {
  Load({{kEntry, kMark}});
  fs::create_directories(target_);
  EXPECT_EQ(Dispose(kEntry), 0);
  EXPECT_STREQ(InstallErrorText(), "");
  EXPECT_TRUE(fs::is_directory(target_));
}

TEST_F(Removal, WhatIsNoFileInItsPlaceCountsAsAbsent) {
  Load({{kEntry, kMark}});
  for (const SpecialFile& special : kSpecialFiles) {
    special.make(target_);
    EXPECT_EQ(Dispose(kEntry), 0);
    EXPECT_TRUE(IsSpecialFile(target_)) << special.kind;
    fs::remove(target_);
  }
}

TEST_F(Removal, UndeletableFileFailsWithWords) {
  Load({{kEntry, kMark}});
  WriteFile(target_, "stays");
  const ScopedReadOnlyFolder folder(fs::path(target_).parent_path());
  const ScopedOrdinaryUser user;
  EXPECT_EQ(Dispose(kEntry), -1);
  EXPECT_STREQ(InstallErrorText(),
               "Unable to delete \"hardware/quirlo/avr/cores/quirlo4/libc.c\".");
  EXPECT_EQ(ReadFile(target_), "stays");
}

TEST_F(Removal, UnreadableFileCountsAsAbsent) {
  Load({{kEntry, kMark}});
  WriteFile(target_, "stays");
  fs::permissions(target_, fs::perms::none);
  {
    const ScopedOrdinaryUser user;
    EXPECT_EQ(Dispose(kEntry), 0);
  }
  fs::permissions(target_, fs::perms::all);
  EXPECT_EQ(ReadFile(target_), "stays");
}

TEST_F(Removal, FileBehindACutPathCountsAsAbsent) {
  const std::string name = "q/" + std::string(240, 'x');
  Load({{"cores/" + name, kMark}});
  WriteFile(*this / (kCores + name), "stays");
  EXPECT_EQ(DisposeEntry(host(), 0), 0);
  EXPECT_EQ(Files(), (::Files{{kCores + name, "stays"}}));
}

TEST_F(Removal, HostFolderMayEndInABackslash) {
  Load({{kEntry, kMark}});
  WriteFile(target_, "");
  std::string folder = host();
  folder.back() = '\\';
  EXPECT_EQ(DisposeEntry(folder.c_str(), 0), 0);
  EXPECT_FALSE(fs::exists(target_));
}

TEST_F(Removal, LastByteOfTheMarkIsFree) {
  Load({{kEntry, "// this file no longer used;"}});
  WriteFile(target_, "");
  EXPECT_EQ(Dispose(kEntry), 0);
  EXPECT_FALSE(fs::exists(target_));
}

TEST_F(Removal, KeywordsWithTheMarkAreRemovedFromTheCores) {
  Load({{"cores/keywords.txt", kMark}});
  WriteFile(*this / "hardware/quirlo/avr/keywords.txt", "kept");
  WriteFile(*this / "hardware/quirlo/avr/cores/keywords.txt", "removed");
  EXPECT_EQ(Dispose("cores/keywords.txt"), 0);
  EXPECT_EQ(Files(), (::Files{{"hardware/quirlo/avr/keywords.txt", "kept"}}));
}

TEST_F(Removal, FileDirectlyUnderCoresWithTheMarkIsRemoved) {
  Load({{"cores/old.c", kMark}});
  WriteFile(*this / "hardware/quirlo/avr/cores/old.c", "");
  EXPECT_EQ(Dispose("cores/old.c"), 0);
  EXPECT_TRUE(Files().empty());
}

// Nearly the mark: written like any other file.
class NearMark : public Removal, public testing::WithParamInterface<std::string> {};

TEST_P(NearMark, IsWritten) {
  Load({{kEntry, GetParam()}});
  EXPECT_EQ(Dispose(kEntry), 1);
  EXPECT_EQ(ReadFile(target_), GetParam());
}

INSTANTIATE_TEST_SUITE_P(SizeOf27, NearMark, testing::Values("// this file no longer used"));
INSTANTIATE_TEST_SUITE_P(SizeOf29, NearMark, testing::Values("// this file no longer used\r\n"));
INSTANTIATE_TEST_SUITE_P(FirstByteDiffers, NearMark,
                         testing::Values("/* this file no longer used\n"));
INSTANTIATE_TEST_SUITE_P(LastByteOfTheTextDiffers, NearMark,
                         testing::Values("// this file no longer useD\n"));

// The mark outside cores/: it blanks the host's copy.
class MarkElsewhere : public EngineTest, public testing::WithParamInterface<const char*> {};

TEST_P(MarkElsewhere, IsWrittenOverTheHostsCopy) {
  Load({{GetParam(), kMark}});
  EXPECT_EQ(Dispose(GetParam()), 1);
  EXPECT_EQ(Dispose(GetParam()), 1);
  const ::Files files = Files();
  ASSERT_EQ(files.size(), 1U);
  EXPECT_EQ(files.begin()->second, kMark);
}

INSTANTIATE_TEST_SUITE_P(Groups, MarkElsewhere,
                         testing::Values("libraries/USBHost_q36/keyboardHIDExtras.cpp",
                                         "1.8.19/libraries/EEPROM/EEPROM.cpp",
                                         "1.8.19/libraries/SdFat/src/ExFatLib/upcase.cpp",
                                         "examples/a.ino", "arm/a.h", "quirlo.exe",
                                         "1.8.19/boards.txt"));

// Headers that two old releases brought themselves.
struct OldHeader {
  const char* situation;
  const char* release;
  const char* entry;
  bool removed;
};

void PrintTo(const OldHeader& header, std::ostream* out) {
  *out << header.entry << " of " << header.release;
}

class OldReleases : public EngineTest, public testing::WithParamInterface<OldHeader> {};

TEST_P(OldReleases, HeaderIsRemovedOrWritten) {
  const OldHeader& header = GetParam();
  Load({{header.entry, "ours"}}, header.release);
  const std::string place = "hardware/quirlo/avr/" + std::string(header.entry);
  WriteFile(*this / place, "an earlier version's");
  EXPECT_EQ(Dispose(header.entry), header.removed ? 0 : 1);
  EXPECT_EQ(Files(), header.removed ? ::Files() : ::Files({{place, "ours"}}));
}

INSTANTIATE_TEST_SUITE_P(
    Headers, OldReleases,
    testing::Values(OldHeader{"UdpOf0022", "0022", "cores/quirlo/Udp.h", true},
                    OldHeader{"ServerOf0022", "0022", "cores/quirlo/Server.h", true},
                    OldHeader{"ClientOf0022", "0022", "cores/quirlo/Client.h", true},
                    OldHeader{"UdpOf0023", "0023", "cores/quirlo/Udp.h", true},
                    OldHeader{"ServerOf0023", "0023", "cores/quirlo/Server.h", true},
                    OldHeader{"ClientOf0023", "0023", "cores/quirlo/Client.h", true},
                    OldHeader{"OtherHeaderOf0022", "0022", "cores/quirlo/Print.h", false},
                    OldHeader{"OtherCoreOf0022", "0022", "cores/quirlo3/Udp.h", false},
                    OldHeader{"UdpOf0021", "0021", "cores/quirlo/Udp.h", false},
                    OldHeader{"UdpOf1819", "1.8.19", "cores/quirlo/Udp.h", false},
                    OldHeader{"UdpOfReleaseThatBeginsAs0022", "0022a", "cores/quirlo/Udp.h", false},
                    OldHeader{"UdpOfReleaseThat0022Begins", "002", "cores/quirlo/Udp.h", true}),
    [](const testing::TestParamInfo<OldHeader>& test) { return test.param.situation; });

}  // namespace
