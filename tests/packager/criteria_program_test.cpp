// quirloduino-criteria as a whole program.
#include <filesystem>

#include "recognition/cksum.h"
#include "tests/packager/payload_fixture.h"
#include "tests/support/jars.h"
#include "tests/support/special_file.h"

namespace fs = std::filesystem;

namespace {

const char* const kPdeMembers[] = {"processing/app/Base.class", "processing/app/Editor.class",
                                   "processing/app/SketchController.class"};
const char* const kCoreMembers[] = {"processing/app/BaseNoGui.class", "cc/arduino/Compiler.class",
                                    "processing/app/debug/TargetPlatform.class"};

class Criteria : public testing::Test {
 protected:
  // An Arduino folder whose members hold texts of their own.
  std::string MakeFolder(const std::string& name, const std::string& version = "1.8.19\n") {
    std::string folder = dir_ / name;
    WriteFile(folder + "/lib/version.txt", version);
    WriteFile(folder + "/arduino.exe", "");
    JarMembers pde;
    for (const char* member : kPdeMembers) pde[member] = name + member;
    JarMembers core;
    for (const char* member : kCoreMembers) core[member] = name + member;
    WriteJar(folder + "/lib/pde.jar", pde);
    WriteJar(folder + "/lib/arduino-core.jar", core);
    return folder;
  }

  static ProgramResult Run(const std::vector<std::string>& arguments) {
    return RunProgram(CRITERIA_PROGRAM, arguments);
  }

  static void ExpectRefused(const std::vector<std::string>& arguments, const std::string& line) {
    const ProgramResult result = Run(arguments);
    EXPECT_EQ(result.error, "quirloduino-criteria: " + line + "\n");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 2);
  }

  // The pair of a member of a folder that MakeFolder made.
  static std::string Pair(const std::string& name, const std::string& member) {
    const std::string text = name + member;
    const std::uint32_t crc = CksumUpdate(0, text.data(), text.size());
    return " " + std::to_string(CksumFinish(crc, text.size())) + " " + std::to_string(text.size());
  }

  TempDir dir_;
};

TEST_F(Criteria, KnownMembersGiveKnownNumbers) {
  const std::string folder = MakeFolder("one");
  JarMembers members;
  for (const char* member : kPdeMembers) members[member] = "hello world\n";
  WriteJar(folder + "/lib/pde.jar", members);
  const std::string output = Run({"1.8.19", folder}).output;
  // The number is the cksum utility's.
  EXPECT_NE(output.find("zipcksum:lib/pde.jar 3733384285 12 processing/app/Base.class\n"),
            std::string::npos)
      << output;
}

TEST_F(Criteria, LinesStandInTheirOrderWithAPairForEachFolder) {
  const std::string one = MakeFolder("one");
  const std::string two = MakeFolder("second", "1.8.19-hourly");
  const ProgramResult result =
      Run({"1.8.19", one, two + "/", "--file", "arduino.exe", "--file", "lib/pde.jar"});
  std::string expected = "version:lib/version.txt\nfile:arduino.exe\nfile:lib/pde.jar\n";
  for (const std::string member : kPdeMembers) {
    expected +=
        "zipcksum:lib/pde.jar" + Pair("one", member) + Pair("second", member) + " " + member + "\n";
  }
  for (const std::string member : kCoreMembers) {
    expected += "zipcksum:lib/arduino-core.jar" + Pair("one", member) + Pair("second", member) +
                " " + member + "\n";
  }
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.output, expected);
  EXPECT_EQ(result.status, 0);
}

TEST_F(Criteria, FilesMayBeNamedBeforeTheFolders) {
  const std::string one = MakeFolder("one");
  EXPECT_EQ(Run({"--file", "arduino.exe", "1.8.19", one, one}).output,
            Run({"1.8.19", one, one, "--file=arduino.exe"}).output);
}

TEST_F(Criteria, FifteenFoldersAreTheMost) {
  const std::string one = MakeFolder("one");
  std::vector<std::string> arguments = {"1.8.19"};
  arguments.insert(arguments.end(), 15, one);
  EXPECT_EQ(Run(arguments).status, 0);
  arguments.push_back(one);
  ExpectRefused(arguments, one + ": a zipcksum line has room for 15 folders and no more");
}

TEST_F(Criteria, MissingFolderIsNamed) {
  ExpectRefused({"1.8.19", dir_ / "none"}, dir_ / "none: no such folder");
}

TEST_F(Criteria, MissingJarIsNamed) {
  const std::string one = MakeFolder("one");
  fs::remove(one + "/lib/arduino-core.jar");
  ExpectRefused({"1.8.19", one}, one + "/lib/arduino-core.jar: can't be opened (No such file)");
}

TEST_F(Criteria, FileThatIsNoJarIsNamed) {
  const std::string one = MakeFolder("one");
  WriteFile(one + "/lib/pde.jar", "not an archive");
  ExpectRefused({"1.8.19", one}, one + "/lib/pde.jar: can't be opened (Not a zip archive)");
}

TEST_F(Criteria, MissingMemberIsNamed) {
  const std::string one = MakeFolder("one");
  JarMembers members = ReadJar(one + "/lib/arduino-core.jar");
  members.erase("cc/arduino/Compiler.class");
  WriteJar(one + "/lib/arduino-core.jar", members);
  ExpectRefused({"1.8.19", one}, one + "/lib/arduino-core.jar: has no cc/arduino/Compiler.class");
}

TEST_F(Criteria, DamagedMemberIsNamed) {
  const std::string one = MakeFolder("one");
  const std::string path = one + "/lib/pde.jar";
  std::string jar = ReadFile(path);
  // The members are stored one behind the other; the first one's data follow its name.
  const std::size_t data = jar.find(kPdeMembers[0]) + std::string(kPdeMembers[0]).size() + 4;
  jar[data] = static_cast<char>(jar[data] ^ 0x55);
  WriteFile(path, jar);
  const ProgramResult result = Run({"1.8.19", one});
  EXPECT_EQ(result.error.find("quirloduino-criteria: " + path +
                              ": processing/app/Base.class can't be read ("),
            0U)
      << result.error;
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.status, 2);
}

TEST_F(Criteria, FolderOfAnotherReleaseIsRefused) {
  const std::string one = MakeFolder("one", "1.8.13\n");
  ExpectRefused({"1.8.19", one}, one +
                                     "/lib/version.txt: says \"1.8.13\", which the installer "
                                     "won't take for 1.8.19");
}

// All that the installer reads as 1.8.19, and nothing else.
TEST_F(Criteria, VersionIsReadAsTheInstallerReadsIt) {
  for (const char* version : {"1.8.19", "\n\n1.8.19\n", " \t1.8.19", "\r\n1.8.19\r\n", "1.\n8. 19",
                              "+1.08.19-beta2", "1.8.19.4"}) {
    EXPECT_EQ(Run({"1.8.19", MakeFolder("one", version)}).error, "") << version;
  }
  EXPECT_EQ(Run({"1.5.0-beta48", MakeFolder("one", "PR-beta1.5-BUILD-48\n")}).error, "");
  const std::string file = MakeFolder("one") + "/lib/version.txt";
  for (const char* version : {"1.8", "1.8 .19", "nightly", "v1.8.19", "PR-beta1.8-BUILD-19"}) {
    ExpectRefused({"1.8.19", MakeFolder("one", version)},
                  file + ": says \"" + version + "\", which the installer won't take for 1.8.19");
  }
  ExpectRefused({"1.8.19", MakeFolder("one", "\n \n1.8.5\n")},
                file + ": says \"1.8.5\", which the installer won't take for 1.8.19");
  ExpectRefused({"1.8.19", MakeFolder("one", "")},
                file + ": says \"\", which the installer won't take for 1.8.19");
}

TEST_F(Criteria, WhatIsNoFileInAFilesPlaceCannotBeOpened) {
  for (const SpecialFile& special : kSpecialFiles) {
    const std::string one = MakeFolder(special.kind);
    special.make(one + "/extra");
    ExpectRefused({"1.8.19", one, "--file", "extra"}, one + "/extra: can't be opened");
    fs::remove(one + "/lib/version.txt");
    special.make(one + "/lib/version.txt");
    ExpectRefused({"1.8.19", one}, one + "/lib/version.txt: can't be opened");
  }
}

TEST_F(Criteria, FolderWithoutAVersionIsRefused) {
  const std::string one = MakeFolder("one");
  fs::remove(one + "/lib/version.txt");
  ExpectRefused({"1.8.19", one}, one + "/lib/version.txt: can't be opened");
}

TEST_F(Criteria, NamedFileMustBeInEveryFolder) {
  const std::string one = MakeFolder("one");
  const std::string two = MakeFolder("two");
  fs::remove(two + "/arduino.exe");
  ExpectRefused({"1.8.19", one, two, "--file", "arduino.exe"},
                two + "/arduino.exe: can't be opened");
}

TEST_F(Criteria, PathThatNoLineCanHoldIsRefused) {
  const std::string one = MakeFolder("one");
  ExpectRefused({"1.8.19", one, "--file", "a\nb"}, "a\\x0Ab: a file: line can't hold this path");
}

TEST_F(Criteria, ReleaseWithoutThreeNumbersIsRefused) {
  ExpectRefused({"1.8", MakeFolder("one")},
                "1.8: a release's name must begin with three numbers, as in 1.8.19");
}

TEST_F(Criteria, FullStreamIsTold) {
  const ProgramResult result = RunProgram(
      "/bin/sh",
      {"-c", "exec \"$@\" >/dev/full", "sh", CRITERIA_PROGRAM, "1.8.19", MakeFolder("one")});
  EXPECT_EQ(result.error,
            "quirloduino-criteria: standard output: can't be written (No space left on device)\n");
  EXPECT_EQ(result.status, 2);
}

TEST_F(Criteria, WrongUsageEndsWithStatus1AndOneLine) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{}, "RELEASE is required"},
      {{"1.8.19"}, "FOLDER is required"},
      {{"1.8.19", "x", "--file"}, "--file: 1 required PATH missing"},
      {{"1.8.19", "x", "--release"}, "The following argument was not expected: --release"},
  };
  for (const auto& [arguments, line] : cases) {
    const ProgramResult result = Run(arguments);
    EXPECT_EQ(result.error, "quirloduino-criteria: " + line + "\n");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 1);
  }
}

TEST_F(Criteria, HelpIsThere) {
  const ProgramResult result = Run({"--help"});
  EXPECT_NE(result.output.find("Usage: quirloduino-criteria [OPTIONS] RELEASE FOLDER..."),
            std::string::npos);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.status, 0);
}

}  // namespace
