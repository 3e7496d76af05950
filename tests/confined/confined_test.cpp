// What the installer touches beside its files: nothing. Both modes run where every start of a
// process or program and every connection but the display's ends them, and their files are listed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/clicked/clicked_test.h"
#include "tests/support/arduino_host.h"
#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// The paths of all lines of the log that begin with `word`.
std::vector<std::string> Logged(const std::string& log, const std::string& word) {
  std::vector<std::string> paths;
  std::istringstream lines(ReadFile(log));
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(word + " ")) paths.push_back(line.substr(word.size() + 1));
  }
  return paths;
}

// What a program of this system reads as it starts and asks the time.
constexpr const char* kSystem[] = {"/etc/ld.so.", "/etc/localtime",       "/lib/",      "/lib64/",
                                   "/usr/lib/",   "/usr/share/zoneinfo/", "/proc/self/"};

// The library of the window reads the user's settings for printers as it is loaded.
constexpr char kPrinterSettings[] = "home/.fltk/fltk.org/printers.prefs";

// The same library makes sure that its own settings exist, for all users and for this one, as soon
// as it shows a window; and that of the fonts keeps a cache. None of it is the wizard's doing.
bool IsOfTheWindowLibraries(const std::string& home, const std::string& path) {
  for (const std::string& base : {std::string("/etc/fltk"), home + ".fltk"}) {
    if (path == base || path == base + "/fltk.org" || path == base + "/fltk.org/fltk.prefs") {
      return true;
    }
  }
  return path.starts_with(home + ".cache/fontconfig") || path.starts_with("/var/cache/fontconfig/");
}

// A leak report at the end would start a process of its own.
const std::vector<std::string> kWithoutLeakReport = {"ASAN_OPTIONS=detect_leaks=0"};

class Confined : public testing::Test {
 protected:
  ProgramResult Run(const std::string& mode, const std::string& program,
                    std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {log_, mode, program});
    ProgramOptions options;
    options.environment = kWithoutLeakReport;
    options.environment.push_back("HOME=" + (dir_ / "home"));
    options.directory = dir_ / "program";
    options.without = {"DISPLAY", "XDG_CONFIG_HOME", "XDG_DATA_HOME"};
    return RunProgram(CONFINED_RUN, arguments, options);
  }

  // The program in a folder of its own, among files that it must not look at.
  std::string PlantedProgram() {
    const std::string program = dir_ / "program/quirloduino";
    fs::create_directories(dir_ / "program");
    fs::copy_file(PROGRAM, program);
    for (const char* planted :
         {"libzip.so.4", "libz.so.1", "libfltk.so.1.3", "libc.so.6", "payload.zst", "payload.tbl",
          "quirloduino.txt", "quirloduino.conf", "locations.txt", "directory_criteria.txt"}) {
      WriteFile(dir_ / ("program/" + std::string(planted)), "planted");
    }
    return program;
  }

  // Installs without a window into host/, silently and with success.
  void Install() {
    MakeArduino1819(dir_ / "host");
    WriteFile(dir_ / "home/ArduinoData/preferences.txt", "board=uno\n");
    const ProgramResult result = Run("silent", PlantedProgram(), {"--dir=" + (dir_ / "host")});
    EXPECT_EQ(result.status, 0) << ReadFile(log_);
    EXPECT_EQ(result.output + result.error, "");
    EXPECT_EQ(ReadFile(dir_ / "host/lib/quirloduino.txt"), "1.60-beta5");
  }

  const TempDir dir_;
  const std::string log_ = dir_ / "log";
};

class ConfinedProbe : public Confined {
 protected:
  void SetUp() override { fs::create_directories(dir_ / "program"); }

  void ExpectKilledFor(const std::string& mode, const std::string& deed, const std::string& call) {
    EXPECT_EQ(Run(mode, PROBE, {deed}).status, 128 + 9) << deed;
    EXPECT_THAT(Logged(log_, "forbidden"), ElementsAre(call)) << deed;
  }
};

// First, that the confinement confines.
TEST_F(ConfinedProbe, HarmlessProgramEndsAsItWould) {
  EXPECT_EQ(Run("silent", PROBE, {}).status, 0);
  EXPECT_THAT(Logged(log_, "forbidden"), IsEmpty());
}

TEST_F(ConfinedProbe, NewProcessOrProgramEndsIt) {
  for (const char* mode : {"silent", "wizard"}) {
    ExpectKilledFor(mode, "fork", "clone");
    ExpectKilledFor(mode, "thread", "clone3");
    ExpectKilledFor(mode, "exec", "execve");
    EXPECT_EQ(Run(mode, PROBE, {"system"}).status, 128 + 9);
    EXPECT_EQ(Run(mode, PROBE, {"execveat"}).status,
              0);  // the descriptor is closed: nothing starts
  }
}

TEST_F(ConfinedProbe, ConnectionEndsIt) {
  ExpectKilledFor("silent", "internet", "socket");
  ExpectKilledFor("wizard", "internet", "socket");
  ExpectKilledFor("silent", "unix", "socket");
}

TEST_F(ConfinedProbe, SocketOfThisMachineIsListedInTheWizardsForm) {
  EXPECT_EQ(Run("wizard", PROBE, {"unix"}).status, 0);
  EXPECT_THAT(Logged(log_, "connect"), ElementsAre("unix:/nowhere/socket"));
}

TEST_F(ConfinedProbe, WrittenFileIsListed) {
  EXPECT_EQ(Run("silent", PROBE, {"write", "here"}).status, 0);
  EXPECT_THAT(Logged(log_, "write"), ElementsAre(dir_ / "program/here"));
}

TEST_F(Confined, SilentInstallOpensNoConnectionAndStartsNothing) {
  Install();
  EXPECT_THAT(Logged(log_, "forbidden"), IsEmpty());
  EXPECT_THAT(Logged(log_, "connect"), IsEmpty());
}

TEST_F(Confined, SilentInstallChangesFilesOfTheHostAlone) {
  Install();
  const std::string host = dir_ / "host/";
  EXPECT_THAT(Logged(log_, "write"), AllOf(Not(IsEmpty()), Each(StartsWith(host))));
  EXPECT_THAT(Logged(log_, "change"), AllOf(Not(IsEmpty()), Each(StartsWith(host))));
}

TEST_F(Confined, SilentInstallReadsTheHostTheSystemAndTwoFilesOfTheUser) {
  Install();
  const std::vector<std::string> read = Logged(log_, "read");
  EXPECT_THAT(read, Contains(dir_ / "home/ArduinoData/preferences.txt"));
  for (const std::string& path : read) {
    const bool is_system =
        std::any_of(std::begin(kSystem), std::end(kSystem),
                    [&](const char* folder) { return path.starts_with(folder); });
    EXPECT_TRUE(is_system || path.starts_with(dir_ / "host/") || path == dir_ / kPrinterSettings ||
                path == dir_ / "home/.config/user-dirs.dirs" ||
                path == dir_ / "home/ArduinoData/preferences.txt")
        << path;
  }
}

TEST_F(Confined, SilentInstallLooksAtNothingBesideItself) {
  Install();
  for (const char* word : {"read", "write", "change"}) {
    EXPECT_THAT(Logged(log_, word), Each(Not(StartsWith(dir_ / "program")))) << word;
  }
}

class ConfinedWizard : public ClickedTest {};

// From the first page to the last, with preferences to edit and an old library to remove.
TEST_F(ConfinedWizard, ConnectsToTheDisplayAloneAndStartsNothing) {
  const TempDir dir;
  const std::string log = dir / "log";
  const std::string host = Documents("arduino-1.8.19");
  const std::string preferences = Home(".local/share/Arduino15/preferences.txt");
  MakeArduino1819(host);
  WriteFile(preferences, "board=uno\n");
  WriteFile(host + "/hardware/quirlo/avr/libraries/openGLCD/fonts/Arial14.h", "old");
  {
    const ScopedEnvironment under("QUIRLODUINO_RUN_UNDER", CONFINED_RUN " " + log + " wizard");
    const auto wizard = Start(PROGRAM);
    GoToFolderPage(wizard.get());
    wizard->ClickAndWait(kHelp);
    wizard->TurnTo(" Help");
    wizard->Click(kHelpOk);
    wizard->WaitUntilGone(" Help");
    wizard->TurnTo(" Installer");
    GoToInstallPage(wizard.get());
    InstallToTheEnd(wizard.get());
    EXPECT_EQ(Done(wizard.get()), 0);
  }
  EXPECT_EQ(ReadFile(host + "/lib/quirloduino.txt"), "1.60-beta5");
  EXPECT_FALSE(fs::exists(host + "/hardware/quirlo/avr/libraries/openGLCD"));
  EXPECT_THAT(Logged(log, "forbidden"), IsEmpty());
  const std::vector<std::string> connected = Logged(log, "connect");
  EXPECT_FALSE(connected.empty());
  for (const std::string& address : connected) {
    EXPECT_TRUE(address.starts_with("unix:@/tmp/.X11-unix/X") ||
                address.starts_with("unix:/tmp/.X11-unix/X"))
        << address;
  }
  std::vector<std::string> changed = Logged(log, "change");
  for (const std::string& path : Logged(log, "write")) changed.push_back(path);
  EXPECT_THAT(changed, Contains(preferences));
  for (const std::string& path : changed) {
    EXPECT_TRUE(path.starts_with(host + "/") || path == preferences ||
                IsOfTheWindowLibraries(Home(""), path))
        << path;
  }
}

}  // namespace
