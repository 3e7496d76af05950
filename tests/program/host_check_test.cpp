// quirloduino-pack check on a folder into which the program itself has installed its payload.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/arduino_host.h"
#include "tests/support/jars.h"
#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

class HostCheck : public testing::Test {
 protected:
  HostCheck() {
    MakeArduino1819(host());
    WriteFile(host() + "/hardware/quirlo/avr/cores/quirlo4/libc.c", "of an earlier version");
  }

  std::string host() const { return home_ / "arduino, the 1.8.19"; }

  // As a user does.
  void Install() const {
    ProgramOptions options;
    options.environment = {"HOME=" + home_.path()};
    const ProgramResult result = RunProgram(PROGRAM, {"--dir=" + host()}, options);
    ASSERT_EQ(result.status, 0) << result.error;
  }

  ProgramResult Check(const std::string& payload, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"check", payload, "--host", host()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunProgram(PACK_PROGRAM, arguments);
  }

  void ExpectChecked(const std::string& lines, const std::vector<std::string>& more = {},
                     int status = 3) const {
    const ProgramResult result = Check(PAYLOAD, more);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output, lines);
    EXPECT_EQ(result.status, status);
  }

  std::string LastLine(const std::string& counts, const std::string& verdict) const {
    return host() + ": Arduino 1.8.19 with 1.60-beta5: " + counts + ": " + verdict + "\n";
  }

  TempDir home_;
};

const char kCounts[] = "15 files, 3 members of archives, 1 removal";

TEST_F(HostCheck, AllIsAsInstalledByTreeAndByInstaller) {
  Install();
  const auto before = ReadTree(home_.path());
  for (const std::string payload : {PAYLOAD, PROGRAM}) {
    const ProgramResult result = Check(payload);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output, LastLine(kCounts, "all as installed"));
    EXPECT_EQ(result.status, 0);
  }
  EXPECT_EQ(ReadTree(home_.path()), before);
}

TEST_F(HostCheck, TellsEachThingThatIsNotAsInstalled) {
  Install();
  fs::remove(host() + "/hardware/tools/quirlo.exe");
  WriteFile(host() + "/hardware/quirlo/avr/boards.txt", "edited");
  WriteFile(host() + "/hardware/quirlo/avr/cores/quirlo4/libc.c", "came back");
  WriteFile(host() + "/lib/quirloduino.txt", "1.59");
  JarMembers members = ReadJar(host() + "/lib/pde.jar");
  members["processing/app/EditorTab.class"] = "somebody's";
  members.erase("processing/app/EditorTab$18.class");
  WriteJar(host() + "/lib/pde.jar", members);
  fs::remove_all(host() + "/hardware/quirlo/avr/libraries/OneWire");
  fs::create_directories(host() + "/hardware/quirlo/avr/libraries/openGLCD");
  ExpectChecked(
      "missing: hardware/tools/quirlo.exe (virus scanners interfere with such files)\n"
      "missing: lib/pde.jar: processing/app/EditorTab$18.class (virus scanners interfere with such "
      "files)\n"
      "differs: lib/pde.jar: processing/app/EditorTab.class (has 10 bytes, not 21; virus scanners "
      "interfere with such files)\n"
      "retired: hardware/quirlo/avr/cores/quirlo4/libc.c (an install removes it)\n"
      "missing: hardware/quirlo/avr/libraries/OneWire/OneWire.cpp\n"
      "differs: hardware/quirlo/avr/boards.txt (has 6 bytes, not 18)\n"
      "marker: lib/quirloduino.txt (says 1.59, not 1.60-beta5)\n"
      "note: nothing of the library OneWire is there; if its user left it out, give --without "
      "OneWire\n"
      "note: hardware/quirlo/avr/libraries/openGLCD is of an earlier version; the wizard removes "
      "it, a silent install doesn't\n" +
      LastLine(kCounts, "7 things are not as installed"));
}

TEST_F(HostCheck, ALibraryThatItsUserDidNotTakeIsNotMissed) {
  Install();
  fs::remove_all(host() + "/hardware/quirlo/avr/libraries/OneWire");
  ExpectChecked(LastLine("14 files, 3 members of archives, 1 removal", "all as installed"),
                {"--without", "OneWire"}, 0);
  ExpectChecked(LastLine("13 files, 3 members of archives, 1 removal", "all as installed"),
                {"--without", "OneWire", "--without", "Empty"}, 0);
}

TEST_F(HostCheck, SpeaksJson) {
  Install();
  fs::remove(host() + "/hardware/tools/quirlo.exe");
  ExpectChecked("{\n  \"host\": \"" + host() +
                    R"(",
  "release": "1.8.19",
  "as_installed": false,
  "marker": {
    "wanted": "1.60-beta5",
    "found": "1.60-beta5"
  },
  "looked_at": {
    "files": 15,
    "members": 3,
    "removals": 1
  },
  "findings": [
    {
      "kind": "missing",
      "path": "hardware/tools/quirlo.exe",
      "antivirus": true
    }
  ],
  "absent_libraries": [],
  "old_libraries": []
}
)",
                {"--json"});
}

TEST_F(HostCheck, AFolderThatIsNotRecognisedNeedsTheRelease) {
  Install();
  fs::remove(host() + "/arduino.exe");
  const ProgramResult result = Check(PAYLOAD);
  EXPECT_EQ(result.error, "quirloduino-pack: " + host() +
                              ": is none of the payload's releases (1.8.19: file: "
                              "\"arduino.exe\" missing; 1.8.9: version: \"lib/version.txt\" "
                              "wrong version: 1.8.19)\n");
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.status, 2);
  ExpectChecked(LastLine(kCounts, "all as installed"), {"--release", "1.8.19"}, 0);
  EXPECT_EQ(Check(PAYLOAD, {"--release", "1.8.9"}).status, 3);
}

TEST_F(HostCheck, RefusesWhatItCannotCheck) {
  const struct {
    std::vector<std::string> arguments;
    int status;
    std::string error;
  } cases[] = {
      {{"check", PAYLOAD, "--host", home_ / "nothing"},
       2,
       (home_ / "nothing") + ": no such folder"},
      {{"check", PAYLOAD, "--host", home_ / "nothing", "--release", "1.8.19"},
       2,
       (home_ / "nothing") + ": no such folder"},
      {{"check", PAYLOAD, "--host", host(), "--without", "Onewire"},
       2,
       "Onewire: the payload has no such library"},
      {{"check", PAYLOAD, "--host", host(), "--release", "1.8.5"},
       2,
       "1.8.5: the payload has no such release"},
      {{"check", PAYLOAD}, 1, "--host is required"},
  };
  for (const auto& [arguments, status, error] : cases) {
    const ProgramResult result = RunProgram(PACK_PROGRAM, arguments);
    EXPECT_EQ(result.error, "quirloduino-pack: " + error + "\n");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, status);
  }
}

TEST_F(HostCheck, AFolderWithoutAnInstallMissesAll) {
  const ProgramResult result = Check(PAYLOAD);
  EXPECT_EQ(result.status, 3);
  EXPECT_NE(result.output.find("\nmarker: lib/quirloduino.txt (is missing)\n"), std::string::npos)
      << result.output;
  EXPECT_NE(result.output.find("\nmissing: lib/pde.jar: processing/app/EditorTab$18.class ("),
            std::string::npos)
      << result.output;
}

}  // namespace
