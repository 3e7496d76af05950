#include "engine/command_line_install.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "engine/writers.h"
#include "platform/text.h"
#include "store/host_selection.h"
#include "tests/engine/engine_test.h"
#include "tests/support/arduino_host.h"
#include "tests/support/jars.h"

namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

class CommandLineInstall : public EngineTest {
 protected:
  // Makes `entries` the payload and the host folder, with a backslash behind it, the chosen one.
  void Choose(std::vector<TestEntry> entries) {
    Load(std::move(entries));
    std::string folder = host();
    folder.back() = '\\';
    FormatBounded(HostFolder, sizeof HostFolder, "%s", folder.c_str());
  }

  // Runs the install and expects exactly this on the error stream, and nothing on the other.
  void ExpectRun(int status, const std::string& error) const {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int result = RunCommandLineInstall();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), error);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(result, status);
  }
};

TEST_F(CommandLineInstall, SuccessIsSilentAndPutsEverythingInPlace) {
  MakeArduino1819(*this / "");
  WriteFile(*this / "hardware/quirlo/avr/cores/quirlo4/libc.c", "from an earlier version");
  const ::Files before = Files();
  Choose(SmallPayload1819());
  ExpectRun(0, "");
  EXPECT_EQ(OpenArchive.handle, nullptr);

  ::Files expected = before;
  expected.erase("hardware/quirlo/avr/cores/quirlo4/libc.c");
  expected.merge(::Files{{"hardware/tools/quirlo_reboot.exe", "reboots"},
                         {"tools/Q4Security/tool/Q4Security.jar", "plugin"},
                         {"hardware/tools/arm/bin/arm-none-eabi-c++.exe", "compiles"},
                         {"hardware/tools/arm/bin/arm-none-eabi-g++.exe", "compiles"},
                         {"hardware/quirlo/avr/libraries/Servo/Servo.h", "servo"},
                         {"examples/readme.md", "read me"},
                         {"examples/Quirlo/Blink.ino", "blink"},
                         {"hardware/quirlo/avr/keywords.txt", "keywords"},
                         {"hardware/quirlo/avr/cores/quirlo3/serial4.c", "serial"},
                         {"hardware/quirlo/avr/libraries/OneWire/OneWire.cpp", "one wire"},
                         {"hardware/quirlo/avr/libraries/Ping/Ping.h", "ping"},
                         {"hardware/tools/arm/arm-none-eabi/lib/libarm_cortexM4l_math.a", "math"},
                         {"hardware/quirlo/avr/boards.txt", "boards"},
                         {"hardware/quirlo/avr/platform.txt", "platform"},
                         {"lib/quirloduino.txt", "1.60-beta5"}});
  ::Files after = Files();
  for (const char* jar : {"lib/pde.jar", "lib/arduino-core.jar"}) {
    EXPECT_NE(after[jar], before.at(jar));
    after.erase(jar);
    expected.erase(jar);
  }
  EXPECT_EQ(after, expected);
}

TEST_F(CommandLineInstall, ArchivesHoldTheirNewClassesAndTheOldOnes) {
  MakeArduino1819(*this / "");
  JarMembers ide = ReadJar(*this / "lib/pde.jar");
  JarMembers core = ReadJar(*this / "lib/arduino-core.jar");
  Choose(SmallPayload1819());
  ExpectRun(0, "");
  ide["processing/app/Added.class"] = "our Added";
  ide["processing/app/Base.class"] = "our Base";
  core["cc/arduino/Compiler.class"] = "our Compiler";
  EXPECT_EQ(ReadJar(*this / "lib/pde.jar"), ide);
  EXPECT_EQ(ReadJar(*this / "lib/arduino-core.jar"), core);
}

TEST_F(CommandLineInstall, PreferencesAndOldLibrariesStay) {
  MakeArduino1819(*this / "");
  const char* const old[] = {"Adafruit_GFX/a.h", "Adafruit_CC3000/a.h", "Adafruit_RA8875/a.h",
                             "openGLCD/a.h",     "ST7565/a.h",          "SD/utility/a.h"};
  for (const char* file : old) WriteFile(*this / (kLibraries + std::string(file)), "old");
  WriteFile(*this / "portable/preferences.txt", "board=uno\n");
  const TempDir data;
  const ScopedEnvironment environment("XDG_DATA_HOME", data.path());
  WriteFile(data / "Arduino15/preferences.txt", "board=uno\n");

  Choose(SmallPayload1819());
  HostVersionNumber = 10819;
  ExpectRun(0, "");
  for (const char* file : old) {
    EXPECT_EQ(ReadFile(*this / (kLibraries + std::string(file))), "old");
  }
  EXPECT_EQ(ReadFile(*this / "portable/preferences.txt"), "board=uno\n");
  EXPECT_EQ(ReadFile(data / "Arduino15/preferences.txt"), "board=uno\n");
}

TEST_F(CommandLineInstall, EveryLibraryIsInstalled) {
  Choose({{"libraries/A/a.h", "a"}, {"libraries/B/b.h", "b"}});
  ExpectRun(0, "");
  EXPECT_EQ(Files(), (::Files{{std::string(kLibraries) + "A/a.h", "a"},
                              {std::string(kLibraries) + "B/b.h", "b"}}));
}

TEST_F(CommandLineInstall, FailureLeavesTheEntriesBeforeIt) {
  Choose({{"examples/0.ino", "zero"},
          {"examples/1.ino", "one"},
          {"examples/2.ino", "two"},
          {"examples/3.ino", "three"}});
  fs::create_directories(*this / "examples/2.ino");
  ExpectRun(1, "Error: Unable to write file \"examples/2.ino\".\n");
  EXPECT_EQ(Files(), (::Files{{"examples/0.ino", "zero"}, {"examples/1.ino", "one"}}));
}

TEST_F(CommandLineInstall, FailureOfTheFirstEntryLeavesNothing) {
  Choose({{"arm/a --> arm/missing", ""}, {"examples/1.ino", "one"}});
  ExpectRun(1, "Error: internal file reference error!!\n");
  EXPECT_TRUE(Files().empty());
}

TEST_F(CommandLineInstall, SilentFailureEndsTheRunWithoutWords) {
  Choose({{"examples/0.ino", "zero"}, {"cores/stray.c", ""}, {"examples/2.ino", "two"}});
  ExpectRun(1, "Error: \n");
  EXPECT_EQ(Files(), (::Files{{"examples/0.ino", "zero"}}));
}

TEST_F(CommandLineInstall, FailureWithAnArchiveOpenLeavesItUncommitted) {
  WriteJar(*this / "lib/pde.jar", {{"kept", "kept"}});
  const ::Files before = Files();
  Choose({{"1.8.19/WINDOWS/pde.jar/A.class", "ours"}, {"cores/stray.c", ""}});
  ExpectRun(1, "Error: \n");
  EXPECT_EQ(Files(), before);
}

TEST_F(CommandLineInstall, FailedCommitInsideAPlainWriteEndsTheRun) {
  WriteJar(*this / "lib/pde.jar", {{"kept", "kept"}});
  const ::Files before = ReadTree(host());
  Choose({{"1.8.19/WINDOWS/pde.jar/A.class", "ours"}, {"examples/a.ino", "plain"}});
  const ScopedReadOnlyFolder folder(*this / "lib");
  const ScopedOrdinaryUser user;
  ExpectRun(1,
            "Error: Unable to write changes to \"" + std::string(HostFolder) + "lib/pde.jar\"\n");
  EXPECT_EQ(ReadTree(host()), before);
}

// By design: the table ends in a plain file, so nothing closes an archive behind the last entry.
TEST_F(CommandLineInstall, ObjectsAtTheVeryEndStayUncommitted) {
  WriteJar(*this / "lib/pde.jar", {{"kept", "kept"}});
  const ::Files before = Files();
  Choose({{"1.8.19/WINDOWS/pde.jar/A.class", "ours"}});
  ExpectRun(0, "");
  EXPECT_NE(OpenArchive.handle, nullptr);
  EXPECT_EQ(Files(), before);
}

TEST_F(CommandLineInstall, EmptyPayloadOfTheReleaseSucceeds) {
  Choose({});
  ExpectRun(0, "");
  EXPECT_TRUE(Files().empty());
}

TEST_F(CommandLineInstall, SecondRunGivesTheSameTree) {
  MakeArduino1819(*this / "");
  Choose(SmallPayload1819());
  ExpectRun(0, "");
  ::Files first = Files();
  const JarMembers ide = ReadJar(*this / "lib/pde.jar");
  ExpectRun(0, "");
  ::Files second = Files();
  for (const char* jar : {"lib/pde.jar", "lib/arduino-core.jar"}) {
    first.erase(jar);  // a rewritten archive carries new times
    second.erase(jar);
  }
  EXPECT_EQ(second, first);
  EXPECT_EQ(ReadJar(*this / "lib/pde.jar"), ide);
}

}  // namespace
