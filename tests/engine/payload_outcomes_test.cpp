// The whole payload, installed for one release, counted by what became of each entry. The two
// writers are watched through --wrap and do their work, so the tree is looked at as well.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "engine/file_disposition.h"
#include "engine/install_error.h"
#include "engine/writers.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "tests/engine/delivered_payload.h"
#include "tests/support/jars.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

namespace {

namespace fs = std::filesystem;

// The last call of a writer; both empty while there was none.
struct Watched {
  std::string folder;   // of a plain file, below the host folder
  std::string archive;  // of an object
  std::string name;     // of the file or object
  std::uint32_t index;
};
Watched watched;

}  // namespace

extern "C" {

int RealWriteEntryToFile(const char* base, const char* subfolder, const char* name,
                         std::uint32_t index) __asm__("__real__Z16WriteEntryToFilePKcS0_S0_j");
int WatchWriteEntryToFile(const char* base, const char* subfolder, const char* name,
                          std::uint32_t index) __asm__("__wrap__Z16WriteEntryToFilePKcS0_S0_j");
int RealWriteEntryToArchive(
    const char* base, const char* object, std::uint32_t index,
    const char* archive) __asm__("__real__Z19WriteEntryToArchivePKcS0_jS0_");
int WatchWriteEntryToArchive(
    const char* base, const char* object, std::uint32_t index,
    const char* archive) __asm__("__wrap__Z19WriteEntryToArchivePKcS0_jS0_");

int WatchWriteEntryToFile(const char* base, const char* subfolder, const char* name,
                          std::uint32_t index) {
  watched = {subfolder, "", name, index};
  return RealWriteEntryToFile(base, subfolder, name, index);
}

int WatchWriteEntryToArchive(const char* base, const char* object, std::uint32_t index,
                             const char* archive) {
  watched = {"", archive, object, index};
  return RealWriteEntryToArchive(base, object, index, archive);
}

}  // extern "C"

namespace {

constexpr char kCores[] = "hardware/quirlo/avr/cores/";
constexpr char kLibraries[] = "hardware/quirlo/avr/libraries/";

bool IsReleases(const std::string& name) {
  return name[0] >= '0' && name[0] <= '9';
}

// What a written entry shows of itself: the folder that the writer was given, and the name.
std::string WrittenOutcome(const std::string& entry, std::uint32_t index) {
  if (!watched.archive.empty()) return watched.archive;
  const std::string& folder = watched.folder;
  if (folder == "hardware/quirlo/avr/") return "board folder, " + watched.name;
  if (folder == "lib/") return "version marker";
  if (folder == "tools/Q4Security/tool/") return "plugin";
  if (folder == "hardware/tools/arm/arm-none-eabi/lib/") return "math library";
  if (folder == "examples/") return IsReleases(entry) ? "release's example" : "common example";
  if (folder == kLibraries) return IsReleases(entry) ? "release's library" : "library";
  // A core's file is named by its last part alone.
  if (folder.starts_with(kCores) && watched.name.find('/') == std::string::npos) return "core";
  if (folder == "hardware/tools/") {
    if (watched.name.starts_with("arm/")) return watched.index == index ? "toolchain" : "alias";
    return "tool";
  }
  return "written to " + folder;
}

// What is known of an entry that no writer was called for.
std::string SkippedOutcome(const std::string& entry) {
  if (IsReleases(entry) && !entry.starts_with("1.8.19")) return "other release's";
  if (entry.ends_with(".inf")) return "driver INF";
  if (entry.starts_with("1.8.19/WINDOWS/")) return "control file";
  if (entry.starts_with("cores/")) return "removal";
  if (entry.starts_with("libraries/")) return "library's description";
  return "on no list";
}

class PayloadOutcomes : public testing::Test {
 protected:
  PayloadOutcomes() : host_(dir_ / "host/"), entries_(DeliveredPayload()), store_(entries_) {
    SelectRelease("1.8.19");
    WriteJar(host_ + "lib/pde.jar", {{"processing/app/Base.class", "the host's"}, {"kept", "1"}});
    WriteJar(host_ + "lib/arduino-core.jar", {{"kept", "2"}});
    WriteFile(host_ + "hardware/quirlo/avr/cores/quirlo4/libc.c", "from an earlier version");
  }
  ~PayloadOutcomes() override { CloseOpenArchive(); }

  TempDir dir_;
  const std::string host_;
  const std::vector<TestEntry> entries_;
  const TestStore store_;
};

TEST_F(PayloadOutcomes, PayloadHasTheDeliveredShape) {
  ASSERT_EQ(entries_.size(), 13570U);
  std::set<std::string> names;
  int aliases = 0;
  int marks = 0;
  std::vector<std::string> empty;
  for (const TestEntry& entry : entries_) {
    EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
    const bool is_alias = entry.name.find(" --> ") != std::string::npos;
    if (is_alias) ++aliases;
    if (entry.content == kUnusedMark) ++marks;
    if (entry.content.empty() && !is_alias) empty.push_back(entry.name);
  }
  EXPECT_EQ(aliases, 368);
  EXPECT_EQ(marks, 26);
  EXPECT_EQ(empty.size(), 3U);
  EXPECT_STREQ(SupportedVersions(), "1.8.5, 1.8.9, 1.8.13, 1.8.15, 1.8.16, 1.8.19");

  // The first and the last index of each group.
  const struct {
    std::size_t first;
    std::size_t last;
    const char* prefix;
  } groups[] = {{17, 2110, "arm/"},     {2111, 2112, "cdcacm."},     {8339, 8389, "examples/"},
                {8390, 8790, "cores/"}, {8791, 13547, "libraries/"}, {13548, 13551, "armlib/"}};
  for (const auto& group : groups) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      EXPECT_EQ(entries_[i].name.starts_with(group.prefix), i >= group.first && i <= group.last)
          << i << " " << entries_[i].name;
    }
  }
  for (std::size_t i = 2113; i <= 8338; ++i) {
    const char* tree = i <= 2500 ? "/WINDOWS/" : i <= 8290 ? "/libraries/" : "/examples/";
    EXPECT_NE(entries_[i].name.find(tree), std::string::npos) << i << " " << entries_[i].name;
  }
}

TEST_F(PayloadOutcomes, AreThoseOfTheTableAndStandInTheHost) {
  std::map<std::string, int> counts;
  std::map<std::string, int> hints;
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    watched = {};
    const int result = DisposeEntry(host_.c_str(), i);
    const bool was_written = !watched.name.empty();
    ASSERT_EQ(result, was_written ? 1 : 0) << Store.names[i] << ": " << InstallErrorText();
    const std::string outcome =
        was_written ? WrittenOutcome(Store.names[i], i) : SkippedOutcome(Store.names[i]);
    ++counts[outcome];
    if (AntivirusHint) ++hints[outcome];
  }
  EXPECT_EQ(counts, (std::map<std::string, int>{{"other release's", 5200},
                                                {"driver INF", 1},
                                                {"board folder, boards.txt", 1},
                                                {"board folder, platform.txt", 1},
                                                {"version marker", 1},
                                                {"tool", 14},
                                                {"plugin", 1},
                                                {"toolchain", 1726},
                                                {"alias", 368},
                                                {"lib/pde.jar", 53},
                                                {"lib/arduino-core.jar", 8},
                                                {"control file", 2},
                                                {"removal", 1},
                                                {"board folder, keywords.txt", 1},
                                                {"core", 399},
                                                {"release's library", 965},
                                                {"common example", 51},
                                                {"math library", 4},
                                                {"release's example", 8},
                                                {"library's description", 75},
                                                {"library", 4682},
                                                {"on no list", 8}}));
  EXPECT_EQ(hints, (std::map<std::string, int>{
                       {"tool", 14}, {"lib/pde.jar", 53}, {"lib/arduino-core.jar", 8}}));

  // The last entry is a plain file, so nothing waits in an archive.
  EXPECT_EQ(OpenArchive.handle, nullptr);

  std::map<std::string, std::string> tree = ReadTree(host_);
  std::erase_if(tree, [](const auto& file) { return file.first.back() == '/'; });
  // Two jars, and every plain file that a writer was called for.
  EXPECT_EQ(tree.size(), 2U + 3 + 14 + 1 + 1726 + 368 + 1 + 399 + 965 + 51 + 4 + 8 + 4682);
  EXPECT_EQ(tree.count("hardware/quirlo/avr/cores/quirlo4/libc.c"), 0U);
  EXPECT_EQ(tree.at("hardware/tools/arm/bin/arm-none-eabi-g++.exe"),
            "arm/bin/arm-none-eabi-c++.exe");
  EXPECT_EQ(tree.at("hardware/tools/arm/" + std::string(92, 'n')), "arm/bin/arm-none-eabi-as.exe");
  EXPECT_EQ(tree.at("hardware/quirlo/avr/libraries/FastLED/src/fastspi_dma.h"), "");
  EXPECT_EQ(tree.at("hardware/quirlo/avr/boards.txt"), "1.8.19/boards.txt");
  EXPECT_EQ(tree.at("examples/readme.md"), "1.8.19/examples/readme.md");
  EXPECT_EQ(tree.at("lib/quirloduino.txt"), "1.60-beta5");
  // Outside the cores the mark is written: four of the release's files and a common one.
  EXPECT_EQ(std::count_if(tree.begin(), tree.end(),
                          [](const auto& file) { return file.second == kUnusedMark; }),
            5);

  const JarMembers ide = ReadJar(host_ + "lib/pde.jar");
  EXPECT_EQ(ide.size(), 54U);
  EXPECT_EQ(ide.at("processing/app/Base.class"),
            "1.8.19/WINDOWS/pde.jar/processing/app/Base.class");
  EXPECT_EQ(ide.at("processing/app/Base$18.class"),
            "1.8.19/WINDOWS/pde.jar/processing/app/Base$18.class");
  EXPECT_EQ(ide.at("kept"), "1");
  EXPECT_EQ(ReadJar(host_ + "lib/arduino-core.jar").size(), 9U);
}

}  // namespace
