#include "recognition/identify_arduino.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "store/host_selection.h"
#include "tests/recognition/recognition_test.h"
#include "tests/support/arduino_host.h"

namespace {

// The criteria file of a release that asks for its version alone.
TestEntry VersionOnly(const std::string& release) {
  return {release + "/WINDOWS/directory_criteria.txt", "version:lib/version.txt\n"};
}

std::vector<TestEntry> SixReleases() {
  return {{"quirlo.exe", "tool"},
          VersionOnly("1.8.13"),
          {"1.8.13/WINDOWS/locations.txt", kLocations},
          VersionOnly("1.8.15"),
          VersionOnly("1.8.16"),
          {"1.8.19/WINDOWS/directory_criteria.txt", kCriteria1819},
          VersionOnly("1.8.5"),
          VersionOnly("1.8.9"),
          {"quirloduino.txt", "1.60-beta5"}};
}

class IdentifyArduinoTest : public RecognitionTest {
 protected:
  int Identify() { return IdentifyArduino(Folder().c_str()); }
  void SetVersion(const std::string& text) { WriteFile(dir_ / "lib/version.txt", text); }

  // The log of a folder that is refused with the same words by each of the six releases.
  std::string RefusedByAll(const std::string& words) const {
    std::string log = "Directory: " + Folder() + "\n";
    for (const char* release : {"1.8.13", "1.8.15", "1.8.16", "1.8.19", "1.8.5", "1.8.9"}) {
      log += std::string("  Checking Arduino ") + release + ":\n    version: \"lib/version.txt\" " +
             words + "    Does not match Arduino " + release + "\n";
    }
    return log;
  }
};

TEST_F(IdentifyArduinoTest, LogOfAFolderHolding1819IsComplete) {
  const TestStore store(SixReleases());
  MakeArduino1819(dir_.path());
  EXPECT_EQ(Identify(), 10819);
  EXPECT_STREQ(HostVersion, "1.8.19");
  EXPECT_EQ(HostVersionLength, 6U);
  EXPECT_EQ(
      Log(),
      "Directory: " + Folder() +
          "\n"
          "  Checking Arduino 1.8.13:\n"
          "    version: \"lib/version.txt\"  wrong version: 1.8.19    Does not match Arduino "
          "1.8.13\n"
          "  Checking Arduino 1.8.15:\n"
          "    version: \"lib/version.txt\"  wrong version: 1.8.19    Does not match Arduino "
          "1.8.15\n"
          "  Checking Arduino 1.8.16:\n"
          "    version: \"lib/version.txt\"  wrong version: 1.8.19    Does not match Arduino "
          "1.8.16\n"
          "  Checking Arduino 1.8.19:\n"
          "    version: \"lib/version.txt\"  version matches\n"
          "    file: \"arduino.exe\"  present\n"
          "    file: \"arduino_debug.exe\"  present\n"
          "    file: \"lib/jssc-2.8.0-arduino4.jar\"  present\n"
          "    java: \"lib/pde.jar\" object: \"processing/app/Base.class\" checksum match\n"
          "    java: \"lib/pde.jar\" object: \"processing/app/Editor.class\" checksum match\n"
          "    java: \"lib/pde.jar\" object: \"processing/app/SketchController.class\" checksum "
          "match\n"
          "    java: \"lib/arduino-core.jar\" object: \"processing/app/BaseNoGui.class\" checksum "
          "match\n"
          "    java: \"lib/arduino-core.jar\" object: \"cc/arduino/Compiler.class\" checksum "
          "match\n"
          "    java: \"lib/arduino-core.jar\" object: "
          "\"processing/app/debug/TargetPlatform.class\" checksum match\n"
          "    Found Arduino 1.8.19\n");
}

TEST_F(IdentifyArduinoTest, FolderIsNotChanged) {
  const TestStore store(SixReleases());
  MakeArduino1819(dir_.path());
  const auto before = ReadTree(dir_.path());
  Identify();
  EXPECT_EQ(ReadTree(dir_.path()), before);
}

TEST_F(IdentifyArduinoTest, FolderMayEndInABackslash) {
  const TestStore store(SixReleases());
  MakeArduino1819(dir_.path());
  EXPECT_EQ(IdentifyArduino((dir_.path() + "\\").c_str()), 10819);
  EXPECT_EQ(Log().substr(0, Log().find('\n')), "Directory: " + dir_.path() + "\\");
}

TEST_F(IdentifyArduinoTest, FolderWithoutSeparatorIsNoArduino) {
  const TestStore store(SixReleases());
  MakeArduino1819(dir_.path());
  EXPECT_EQ(IdentifyArduino(dir_.path().c_str()), 0);
}

// As "[All Drives]" leaves it, while the program was started inside an Arduino.
TEST_F(IdentifyArduinoTest, EmptyFolderIsNoneAndTheCurrentFolderIsNotJudgedInItsPlace) {
  const TestStore store(SixReleases());
  MakeArduino1819(dir_.path());
  const ScopedCurrentFolder inside(dir_.path());
  SelectRelease("1.8.19");
  EXPECT_EQ(IdentifyArduino(""), 0);
  EXPECT_STREQ(HostVersion, "");
  EXPECT_EQ(HostVersionLength, 0U);
  EXPECT_EQ(Log(), "Directory: \n  No folder is selected\n");
}

TEST_F(IdentifyArduinoTest, WithoutALogTheResultIsTheSame) {
  LogBuffer = nullptr;
  const TestStore store(SixReleases());
  MakeArduino1819(dir_.path());
  EXPECT_EQ(Identify(), 10819);
  EXPECT_EQ(Log(), "");
}

TEST_F(IdentifyArduinoTest, FolderWithoutVersionFileIsRefusedByEveryRelease) {
  const TestStore store(SixReleases());
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Log(), RefusedByAll(" file missing\n"));
}

TEST_F(IdentifyArduinoTest, NightlyIsNamedInEverySection) {
  const TestStore store(SixReleases());
  SetVersion("nightly\n");
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Log(), RefusedByAll(" Nightly builds are not supported\n"));
}

TEST_F(IdentifyArduinoTest, ForkIsNamedInEverySection) {
  const TestStore store(SixReleases());
  SetVersion("1.7.11\n");
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Log(),
            RefusedByAll(" wrong version: 1.7.11\n    Arduinorg software is not supported\n"));
}

TEST_F(IdentifyArduinoTest, UnsupportedReleaseRunsOnInTheSameLine) {
  const TestStore store(SixReleases());
  SetVersion("1.8.10\n");
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Log(), RefusedByAll(" wrong version: 1.8.10"));
}

TEST_F(IdentifyArduinoTest, OldBetaIsRefusedWithPatchZero) {
  const TestStore store(SixReleases());
  SetVersion("PR-beta1.5-BUILD-48\n");
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Log(), RefusedByAll(" wrong version: 1.5.0"));
}

TEST_F(IdentifyArduinoTest, OldBetaMatchesAReleaseOfTheBetaForm) {
  const TestStore store({VersionOnly("1.5.0"), VersionOnly("1.5.0-beta48"), VersionOnly("1.5.1")});
  SetVersion("PR-beta1.5-BUILD-48\n");
  EXPECT_EQ(Identify(), 10500);
  EXPECT_STREQ(HostVersion, "1.5.0-beta48");
}

TEST_F(IdentifyArduinoTest, EveryReleaseOfTheSixIsFoundByItsVersion) {
  const TestStore store(SixReleases());
  for (const int patch : {5, 9, 13, 15, 16}) {
    SetVersion("1.8." + std::to_string(patch));
    EXPECT_EQ(Identify(), 10800 + patch);
    EXPECT_EQ(HostVersion, "1.8." + std::to_string(patch));
  }
}

TEST_F(IdentifyArduinoTest, NumberIsMadeOfMajorMinorAndPatch) {
  const TestStore store({VersionOnly("0.0.22"), VersionOnly("1.10.0"), VersionOnly("2.3.4")});
  SetVersion("2.3.4");
  EXPECT_EQ(Identify(), 20304);
  SetVersion("1.10.0");
  EXPECT_EQ(Identify(), 11000);
  SetVersion("0.0.22");
  EXPECT_EQ(Identify(), 22);
}

TEST_F(IdentifyArduinoTest, ReleaseWhoseNumberPassesAnIntIsFoundByItsName) {
  const TestStore store({VersionOnly("999999.1.1")});
  SetVersion("999999.1.1");
  Identify();  // the number wraps and says nothing
  EXPECT_STREQ(HostVersion, "999999.1.1");
}

TEST_F(IdentifyArduinoTest, FolderThatFailsClearsTheSelectionOfTheLast) {
  const TestStore store(SixReleases());
  SetVersion("1.8.5");
  ASSERT_EQ(Identify(), 10805);
  SetVersion("1.8.10");
  EXPECT_EQ(Identify(), 0);
  EXPECT_STREQ(HostVersion, "");
  EXPECT_EQ(HostVersionLength, 0U);
}

TEST_F(IdentifyArduinoTest, EveryCallBeginsTheLogAnew) {
  const TestStore store({VersionOnly("1.8.5"), VersionOnly("1.8.9")});
  SetVersion("1.8.5");
  const std::string log = "Directory: " + Folder() +
                          "\n"
                          "  Checking Arduino 1.8.5:\n"
                          "    version: \"lib/version.txt\"  version matches\n"
                          "    Found Arduino 1.8.5\n";
  Identify();
  EXPECT_EQ(Log(), log);
  Identify();
  EXPECT_EQ(Log(), log);
}

TEST_F(IdentifyArduinoTest, FirstInTableOrderWins) {
  const TestStore store({VersionOnly("1.8.9"), VersionOnly("1.8.5-second"),
                         VersionOnly("1.8.5-first"), VersionOnly("1.8.5")});
  SetVersion("1.8.5");
  EXPECT_EQ(Identify(), 10805);
  EXPECT_STREQ(HostVersion, "1.8.5-second");
}

TEST_F(IdentifyArduinoTest, ReleaseIsCutTo63Characters) {
  const std::string release = "1.8.5-" + std::string(80, 'r');
  const TestStore store({VersionOnly("1.8.9"), VersionOnly(release)});
  SetVersion("1.8.5");
  EXPECT_EQ(Identify(), 10805);
  EXPECT_EQ(HostVersion, release.substr(0, 63));
  EXPECT_EQ(HostVersionLength, 63U);
}

TEST_F(IdentifyArduinoTest, EntryThatDoesNotBeginWithThreeNumbersNeverMatches) {
  const TestStore store(
      {{"beta/WINDOWS/directory_criteria.txt", ""}, {"/WINDOWS/directory_criteria.txt", ""}});
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Log(), "Directory: " + Folder() +
                       "\n"
                       "  Checking Arduino beta:\n    Does not match Arduino beta\n"
                       "  Checking Arduino :\n    Does not match Arduino \n");
}

TEST_F(IdentifyArduinoTest, EmptyCriteriaFileAcceptsEveryFolder) {
  const TestStore store({{"quirlo.exe", "tool"}, {"1.8.19/WINDOWS/directory_criteria.txt", ""}});
  EXPECT_EQ(Identify(), 10819);
}

TEST_F(IdentifyArduinoTest, StoreWithoutReleasesFindsNothing) {
  const TestStore store({{"quirlo.exe", "tool"}, {"1.8.19/LINUX/directory_criteria.txt", ""}});
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Log(), "Directory: " + Folder() + "\n");
}

TEST_F(IdentifyArduinoTest, MissingFolderIsNoArduino) {
  const TestStore store(SixReleases());
  EXPECT_EQ(IdentifyArduino((dir_ / "none/").c_str()), 0);
}

// What part of the made host is spoiled, and the last words on it.
struct SpoiledHost {
  const char* situation;
  const char* file;     // below the folder
  const char* content;  // null: removed
  const char* words;
};
void PrintTo(const SpoiledHost& test, std::ostream* stream) {
  *stream << test.situation;
}

class SpoiledHosts : public IdentifyArduinoTest, public testing::WithParamInterface<SpoiledHost> {};

TEST_P(SpoiledHosts, AreRefused) {
  const TestStore store(SixReleases());
  MakeArduino1819(dir_.path());
  if (GetParam().content == nullptr) {
    std::filesystem::remove(dir_ / GetParam().file);
  } else {
    WriteFile(dir_ / GetParam().file, GetParam().content);
  }
  EXPECT_EQ(Identify(), 0);
  EXPECT_NE(Log().find(std::string(GetParam().words) + "\n    Does not match Arduino 1.8.19\n"),
            std::string::npos)
      << Log();
}

const SpoiledHost kSpoiledHosts[] = {
    {"NoExecutable", "arduino.exe", nullptr, "    file: \"arduino.exe\"  missing"},
    {"NoSerialLibrary", "lib/jssc-2.8.0-arduino4.jar", nullptr,
     "    file: \"lib/jssc-2.8.0-arduino4.jar\"  missing"},
    {"NoFirstJar", "lib/pde.jar", nullptr, "    java: \"lib/pde.jar\" missing"},
    {"EmptySecondJar", "lib/arduino-core.jar", "", "    java: \"lib/arduino-core.jar\" missing"},
};

INSTANTIATE_TEST_SUITE_P(All, SpoiledHosts, testing::ValuesIn(kSpoiledHosts),
                         [](const auto& test) { return std::string(test.param.situation); });

}  // namespace
