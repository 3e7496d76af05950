// The decisions alone, as the packager asks for them: no store is loaded, no library page exists
// and nothing is written.
#include "engine/disposition_rules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr char kMark[] = "// this file no longer used\n";

// What a decision may ask, and what it did ask, in order.
struct World {
  std::string release = "1.8.19";
  std::map<std::string, std::string> locations = {
      {"TOOL_SUBDIR", "tool/"},         {"PLUGIN_SUBDIR", "plugin/"},
      {"ARMLIB_SUBDIR", "armlib/"},     {"LIBRARY_SUBDIR", "library/"},
      {"CORES_SUBDIR", "cores/"},       {"KEYWORDS_SUBDIR", "keywords/"},
      {"VERSION_SUBDIR", "version/"},   {"EXAMPLES_SUBDIR", "examples/"},
      {"BOARDS_SUBDIR", "boards/"},     {"ARDUINO_JAR_FILE1", "ide.jar"},
      {"ARDUINO_JAR_FILE2", "core.jar"}};
  std::map<std::string, int> earlier = {{"arm/target", 3}};
  std::set<std::string> unselected;
  mutable std::vector<std::string> asked;
};

const char* Location(const void* user, const char* key) {
  const auto& world = *static_cast<const World*>(user);
  world.asked.emplace_back(key);
  const auto found = world.locations.find(key);
  return found == world.locations.end() ? nullptr : found->second.c_str();
}

int FindEntryBelow(const void* user, const char* name, std::uint32_t end) {
  const auto& world = *static_cast<const World*>(user);
  world.asked.push_back(std::string(name) + " below " + std::to_string(end));
  const auto found = world.earlier.find(name);
  return found == world.earlier.end() ? -1 : found->second;
}

bool IsSelected(const void* user, const char* library) {
  const auto& world = *static_cast<const World*>(user);
  world.asked.push_back("library " + std::string(library));
  return world.unselected.count(library) == 0;
}

// The entry stands at index 7. Its bytes are there only when they may be looked at.
Disposition Decide(const World& world, const std::string& name, const char* content = "") {
  static std::string kept;  // the answer points into the name
  kept = name;
  const std::size_t size = std::strlen(content);
  const auto* bytes = size == 28 ? reinterpret_cast<const unsigned char*>(content) : nullptr;
  return DecideEntry({kept.c_str(), 7, static_cast<std::uint32_t>(size), bytes},
                     {world.release.c_str(), &world, Location, FindEntryBelow, IsSelected});
}

std::string FileOf(const Disposition& answer) {
  return {answer.file, answer.file_length};
}

constexpr auto kPassOver = DispositionAction::kPassOver;
constexpr auto kWriteFile = DispositionAction::kWriteFile;
constexpr auto kWriteObject = DispositionAction::kWriteObject;
constexpr auto kRemove = DispositionAction::kRemove;
constexpr auto kFail = DispositionAction::kFail;

// One row of the list: an entry that it decides, and the answer. `place` and `file` count only
// where something is written or removed.
struct Case {
  const char* rule;
  const char* name;
  DispositionAction action;
  const char* place = "";
  const char* file = "";
  const char* key = nullptr;
  bool hint = false;
  const char* content = "";
};

// All rules in their order.
const Case kCases[] = {
    {"another release's", "1.8.9/boards.txt", kPassOver},
    {"driver INF, for the driver page", "cdcacm.inf", kPassOver},
    {"board list", "1.8.19/boards.txt", kWriteFile, "boards/", "boards.txt", "BOARDS_SUBDIR"},
    {"platform description", "1.8.19/platform.txt", kWriteFile, "boards/", "platform.txt",
     "BOARDS_SUBDIR"},
    {"tool", "mktinyfat.exe", kWriteFile, "tool/", "mktinyfat.exe", "TOOL_SUBDIR", true},
    {"plugin", "Q4Security.jar", kWriteFile, "plugin/Q4Security/tool/", "Q4Security.jar",
     "PLUGIN_SUBDIR"},
    {"other tool", "otherlibs/WINDOWS/a/b.dll", kWriteFile, "tool/", "a/b.dll", "TOOL_SUBDIR"},
    {"version marker", "quirloduino.txt", kWriteFile, "version/", "quirloduino.txt",
     "VERSION_SUBDIR"},
    {"toolchain, alias", "arm/copy --> arm/target", kWriteFile, "tool/", "arm/copy", "TOOL_SUBDIR"},
    {"toolchain", "avrquirlo/bin/a.exe", kWriteFile, "tool/", "avrquirlo/bin/a.exe", "TOOL_SUBDIR"},
    {"Java source", "1.8.19/a/B.java", kWriteFile, "src/", "a/B.java"},
    {"keywords", "1.8.19/keywords.txt", kWriteFile, "keywords/", "keywords.txt", "KEYWORDS_SUBDIR"},
    {"own keywords", "1.8.19/keywords_quirlo.txt", kWriteFile, "keywords/", "keywords_quirlo.txt",
     "KEYWORDS_SUBDIR"},
    {"theme", "1.8.19/theme.txt", kWriteFile, "version/theme/", "theme.txt", "VERSION_SUBDIR"},
    {"class of pde.jar", "1.8.19/WINDOWS/pde.jar/a/B$1.class", kWriteObject, "ide.jar",
     "a/B$1.class", "ARDUINO_JAR_FILE1", true},
    {"class of arduino-core.jar", "1.8.19/WINDOWS/arduino-core.jar/C.class", kWriteObject,
     "core.jar", "C.class", "ARDUINO_JAR_FILE2", true},
    {"bundle file, not installed", "1.8.19/WINDOWS/a.app/Info.plist", kPassOver, "", "", nullptr,
     true},
    {"rest of WINDOWS/, not installed", "1.8.19/WINDOWS/locations.txt", kPassOver},
    {"core, for the oldest releases removed", "cores/quirlo/Udp.h", kRemove, "cores/",
     "quirlo/Udp.h", "CORES_SUBDIR"},
    {"core, no longer used and removed", "cores/quirlo4/libc.c", kRemove, "cores/",
     "quirlo4/libc.c", "CORES_SUBDIR", false, kMark},
    {"keywords of the cores", "cores/keywords.txt", kWriteFile, "boards/", "keywords.txt",
     "BOARDS_SUBDIR"},
    {"core, without a folder", "cores/readme.txt", kFail},
    {"core", "cores/a/b/c.h", kWriteFile, "cores/a/b/", "c.h", "CORES_SUBDIR"},
    {"release's library", "1.8.19/libraries/A/a.h", kWriteFile, "library/", "A/a.h",
     "LIBRARY_SUBDIR"},
    {"example", "examples/a/b.ino", kWriteFile, "examples/", "a/b.ino", "EXAMPLES_SUBDIR"},
    {"math library", "armlib/a.a", kWriteFile, "armlib/", "a.a", "ARMLIB_SUBDIR"},
    {"release's example", "1.8.19/examples/a.ino", kWriteFile, "examples/", "a.ino",
     "EXAMPLES_SUBDIR"},
    {"library's text or picture, for the library page", "libraries/DogLcd.png", kPassOver},
    {"library with an overlong name", nullptr, kPassOver},
    {"library, not selected", "libraries/Unticked/a.h", kPassOver},
    {"library", "libraries/A/b/c.h", kWriteFile, "library/", "A/b/c.h", "LIBRARY_SUBDIR"},
    {"no rule", "vscode_plugins.exe", kPassOver},
};

std::string NameOf(const Case& entry) {
  return entry.name != nullptr ? entry.name : "libraries/" + std::string(256, 'x') + "/a.h";
}

void PrintTo(const Case& entry, std::ostream* out) {
  *out << entry.rule;
}

// The release in which the rule can be seen at work, and what isn't ticked.
World WorldOf(const Case& entry) {
  World world;
  if (entry.action == kRemove && *entry.content == '\0') world.release = "0022";
  world.unselected = {"Unticked"};
  return world;
}

class DispositionRule : public testing::TestWithParam<Case> {};

TEST_P(DispositionRule, DecidesItsEntry) {
  const Case& expected = GetParam();
  const World world = WorldOf(expected);
  const Disposition answer = Decide(world, NameOf(expected), expected.content);
  EXPECT_STREQ(DispositionRuleTitle(answer.rule), expected.rule);
  EXPECT_EQ(answer.action, expected.action);
  EXPECT_EQ(answer.antivirus_hint, expected.hint);
  EXPECT_STREQ(answer.key, expected.key);
  EXPECT_STREQ(answer.place, expected.place);
  if (*expected.file != '\0') {
    EXPECT_EQ(FileOf(answer), expected.file);
  }
  EXPECT_EQ(answer.source, answer.rule == 8 ? 3U : 7U);
  EXPECT_EQ(answer.error, nullptr);
}

// What is written or removed goes to a place that the release defines, or nowhere at all. The hint
// stays, as it did before the place was asked for.
TEST_P(DispositionRule, FailsWithoutWordsWhereTheKeyIsMissing) {
  const Case& expected = GetParam();
  if (expected.key == nullptr) return;
  World world = WorldOf(expected);
  world.locations.erase(expected.key);
  const Disposition answer = Decide(world, NameOf(expected), expected.content);
  EXPECT_STREQ(DispositionRuleTitle(answer.rule), expected.rule);
  EXPECT_EQ(answer.action, kFail);
  EXPECT_EQ(answer.error, nullptr);
  EXPECT_EQ(answer.antivirus_hint, expected.hint);
  EXPECT_STREQ(answer.place, "");
}

// No more is asked than the rule needs.
TEST_P(DispositionRule, AsksForItsPlaceOnce) {
  const Case& expected = GetParam();
  const World world = WorldOf(expected);
  Decide(world, NameOf(expected), expected.content);
  const std::string key = expected.key == nullptr ? "" : expected.key;
  EXPECT_EQ(std::count_if(world.asked.begin(), world.asked.end(),
                          [&key](const std::string& text) {
                            return text == key || text.ends_with("_SUBDIR");
                          }),
            key.empty() ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(InOrder, DispositionRule, testing::ValuesIn(kCases));

TEST(DispositionRules, StandInThisOrder) {
  ASSERT_EQ(DispositionRuleCount(), std::size(kCases));
  for (std::size_t i = 0; i < std::size(kCases); ++i) {
    EXPECT_STREQ(DispositionRuleTitle(i), kCases[i].rule) << i;
  }
}

// Entries that more than one rule would take, and the one that does.
TEST(DispositionRules, TheFirstThatHoldsDecides) {
  const struct {
    const char* name;
    const char* rule;
  } both[] = {
      {"1.8.9/cdcacm.inf", "another release's"},
      {"1.8.9/WINDOWS/Info.plist", "another release's"},
      {"1.8.19/boards.inf", "driver INF, for the driver page"},
      {"arm/a.inf", "driver INF, for the driver page"},
      {"cores/a.inf", "driver INF, for the driver page"},
      {"libraries/Unticked/a.inf", "driver INF, for the driver page"},
      {"arm/a.inf --> arm/target", "toolchain, alias"},
      {"1.8.19/WINDOWS/pde.jar/A.java", "Java source"},
      {"1.8.19/libraries/A/a.java", "Java source"},
      {"1.8.19/examples/a.java", "Java source"},
      {"1.8.19/WINDOWS/libraries/A/a.h", "rest of WINDOWS/, not installed"},
      {"1.8.19/WINDOWS/other.jar/A.class", "rest of WINDOWS/, not installed"},
      {"1.8.19/WINDOWS/pde.jar/a/Info.plist", "bundle file, not installed"},
  };
  for (const auto& [name, rule] : both) {
    World world;
    world.unselected = {"Unticked"};
    EXPECT_STREQ(DispositionRuleTitle(Decide(world, name).rule), rule) << name;
  }
}

TEST(DispositionRules, NoReleaseSelectedMeansNoFolderOfOne) {
  World world;
  world.release = "";
  EXPECT_STREQ(DispositionRuleTitle(Decide(world, "1.8.19/boards.txt").rule), "no rule");
  EXPECT_STREQ(DispositionRuleTitle(Decide(world, "cores/quirlo/Udp.h").rule),
               "core, for the oldest releases removed");
}

TEST(DispositionRules, AnAliasAsksForItsTargetAndThenForItsPlace) {
  World world;
  Decide(world, "arm/copy --> arm/target");
  EXPECT_EQ(world.asked, (std::vector<std::string>{"arm/target below 7", "TOOL_SUBDIR"}));
}

TEST(DispositionRules, AnAliasWithoutATargetFailsWithWordsAndAsksForNoPlace) {
  World world;
  const Disposition answer = Decide(world, "arm/copy --> arm/nowhere");
  EXPECT_EQ(answer.action, kFail);
  EXPECT_STREQ(answer.error, "internal file reference error!!");
  EXPECT_EQ(world.asked, std::vector<std::string>{"arm/nowhere below 7"});
}

TEST(DispositionRules, AnOverlongAliasFailsWithoutWordsAndAsksNothing) {
  for (const std::size_t length : {511U, 512U}) {
    World world;
    const std::string left = "arm/" + std::string(length - 4, 'x');
    const Disposition answer = Decide(world, left + " --> arm/target");
    EXPECT_EQ(answer.action, length == 511 ? kWriteFile : kFail);
    EXPECT_EQ(answer.error, nullptr);
    EXPECT_EQ(world.asked.empty(), length == 512);
  }
}

TEST(DispositionRules, ALibraryIsAskedAboutBeforeItsPlace) {
  World world;
  Decide(world, "libraries/A/b/c.h");
  EXPECT_EQ(world.asked, (std::vector<std::string>{"library A", "LIBRARY_SUBDIR"}));
}

TEST(DispositionRules, AnUnselectedLibraryIsNotAskedForAPlace) {
  World world;
  world.unselected = {"A"};
  Decide(world, "libraries/A/b/c.h");
  EXPECT_EQ(world.asked, std::vector<std::string>{"library A"});
}

TEST(DispositionRules, ALibrarysNameMayHave255Characters) {
  World world;
  const std::string longest(255, 'x');
  EXPECT_EQ(Decide(world, "libraries/" + longest + "/a.h").action, kWriteFile);
  EXPECT_EQ(world.asked.front(), "library " + longest);
}

// The mark counts with exactly its size, whatever the last byte is, and only below cores/.
TEST(DispositionRules, TheMarkRemovesOnlyAsAWholeAndOnlyBelowCores) {
  const struct {
    const char* name;
    const char* content;
    DispositionAction action;
  } cases[] = {
      {"cores/a/b.c", "// this file no longer used!", kRemove},
      {"cores/a/b.c", "// this file no longer used", kWriteFile},
      {"cores/a/b.c", "// this file no longer used\r\n", kWriteFile},
      {"cores/a/b.c", "// this file no longer Used\n", kWriteFile},
      {"cores/b.c", kMark, kRemove},
      {"cores/keywords.txt", kMark, kRemove},
      {"libraries/A/b.c", kMark, kWriteFile},
      {"1.8.19/libraries/A/b.c", kMark, kWriteFile},
  };
  for (const auto& [name, content, action] : cases) {
    EXPECT_EQ(Decide(World(), name, content).action, action) << name << " " << content;
  }
}

TEST(DispositionRules, TheThreeHeadersAreRemovedForTheTwoOldestReleases) {
  for (const char* header :
       {"cores/quirlo/Udp.h", "cores/quirlo/Server.h", "cores/quirlo/Client.h"})
    for (const char* release : {"0022", "0023", "0021", "1.8.19"}) {
      World world;
      world.release = release;
      const std::string text = release;
      EXPECT_EQ(Decide(world, header).action,
                text == "0022" || text == "0023" ? kRemove : kWriteFile)
          << header << " " << release;
    }
}

TEST(DispositionRules, APlaceIsCutTo519Characters) {
  World world;
  const Disposition answer = Decide(world, "cores/" + std::string(600, 'x') + "/a.h");
  EXPECT_EQ(answer.place, "cores/" + std::string(513, 'x'));
  EXPECT_EQ(FileOf(answer), "a.h");
}

}  // namespace
