// Whole installs by the Windows program: against the native one, in folders of every script, beside
// planted libraries, and into jars that another program holds.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <thread>

#include "tests/program/case_host.h"
#include "tests/support/arduino_host.h"
#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"
#include "tests/windows/planted_libraries.h"
#include "tests/windows/run_in_wine.h"
#include "tests/windows/without_utf8.h"

namespace fs = std::filesystem;

namespace {

using Files = std::map<std::string, std::string>;
using Clock = std::chrono::steady_clock;

long long MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

void ExpectSameFiles(const Files& expected, const Files& found) {
  for (const auto& [path, content] : expected) {
    const auto other = found.find(path);
    EXPECT_TRUE(other != found.end() && other->second == content) << path;
  }
  EXPECT_EQ(expected.size(), found.size());
}

// Z:\tmp\x for /tmp/x.
std::string WindowsPath(std::string path) {
  for (char& c : path) c = c == '/' ? '\\' : c;
  return "Z:" + path;
}

Files InstallNatively(const std::string& program) {
  const TempDir dir;
  MakeArduino1819(dir / "host");
  EXPECT_EQ(std::system((program + " --dir=" + (dir / "host")).c_str()), 0);
  return ReadHost(dir / "host");
}

TEST(Install, OfTheSampleEqualsTheNativeOneFileForFile) {
  const TempDir dir;  // nothing stands beside the program but the host
  fs::copy(INSTALLER, dir / "quirloduino.exe");
  MakeArduino1819(dir / "host");
  RunProgram(dir / "quirloduino.exe", {"--dir="});  // Wine's own start isn't ours
  auto start = Clock::now();
  EXPECT_EQ(RunProgram(dir / "quirloduino.exe", {"--dir="}).status, 1);
  const long long start_up = MillisecondsSince(start);
  start = Clock::now();
  const ProgramResult result =
      RunProgram(dir / "quirloduino.exe", {"--dir=" + WindowsPath(dir / "host")});
  std::printf("[ MEASURED ] under Wine: start-up %lld ms, whole silent install %lld ms\n", start_up,
              MillisecondsSince(start));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output + result.error, "");
  ExpectSameFiles(InstallNatively(NATIVE_INSTALLER), ReadHost(dir / "host"));
}

// What the small program makes of a folder with a plain name.
const Files& PlainInstall() {
  static const Files files = [] {
    const TempDir dir;
    MakeArduino1819(dir / "host");
    EXPECT_EQ(RunProgram(PROGRAM, {"--dir=" + (dir / "host")}).status, 0);
    return ReadHost(dir / "host");
  }();
  return files;
}

struct NameCase {
  const char* situation;
  const char* folder;
  bool utf8;
};

class FolderName : public testing::TestWithParam<NameCase> {
 protected:
  std::string Program() {
    if (GetParam().utf8) return PROGRAM;
    return WithoutUtf8(PROGRAM, dir_ / "program.exe");
  }
  TempDir dir_;
};

TEST_P(FolderName, IsInstalledInto) {
  const TempDir dir;
  const std::string host = dir / GetParam().folder + "/arduino-1.8.19";
  MakeArduino1819(host);
  const ProgramResult result = RunProgram(Program(), {"--dir=" + WindowsPath(host)});
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.status, 0);
  ExpectSameFiles(PlainInstall(), ReadHost(host));
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), {}), 1) << "a folder was made beside";
}

TEST_P(FolderName, IsShownAsItStands) {
  const ProgramResult result =
      RunProgram(Program(), {std::string("--dir=Z:\\none\\") + GetParam().folder});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.error,
            std::string("Unable to access directory: Z:\\none\\") + GetParam().folder + "\\\n");
}

const NameCase kNames[] = {
    {"WesternInUtf8", "\xC3\xA9 \xC3\xBC \xC3\x9F", true},
    {"WesternInTheSystemsCodePage", "\xC3\xA9 \xC3\xBC \xC3\x9F", false},
    {"JapaneseInUtf8", "\xE3\x83\xA6\xE3\x83\xBC\xE3\x82\xB6\xE3\x83\xBC", true},
    {"JapaneseInTheSystemsCodePage", "\xE3\x83\xA6\xE3\x83\xBC\xE3\x82\xB6\xE3\x83\xBC", false},
    {"EmojiInTheSystemsCodePage", "\xF0\x9F\x99\x82", false},
    {"BlanksAndPercent", "a  b %PATH% & (c)", true},
};

INSTANTIATE_TEST_SUITE_P(All, FolderName, testing::ValuesIn(kNames),
                         [](const auto& test) { return std::string(test.param.situation); });

TEST(Install, FormsOfThePathAllReachTheFolder) {
  for (const char* form : {"Z:%s", "Z:%s\\", "Z:%s/", "Z:%s//", "%s\\"}) {
    const TempDir dir;
    MakeArduino1819(dir / "host");
    std::string path = form;
    path.replace(path.find("%s"), 2, dir / "host");
    EXPECT_EQ(RunProgram(PROGRAM, {"--dir=" + path}).status, 0) << form;
    EXPECT_TRUE(fs::exists(dir / "host/lib/quirloduino.txt")) << form;
  }
}

TEST(Install, NoLibraryBesideTheProgramIsLoaded) {
  const TempDir dir;
  fs::copy(PROGRAM, dir / "program.exe");
  PlantLibraries(dir.path());
  MakeArduino1819(dir / "host");
  WineOverrides = PreferPlantedLibraries();
  ProgramOptions options;
  options.directory = dir.path();
  EXPECT_EQ(RunProgram(dir / "program.exe", {"--dir=" + (dir / "host")}, options).status, 0);
  WineOverrides.clear();
  EXPECT_EQ(LoadedPlantedLibraries(dir.path()), "");
}

TEST(Install, DamagedPayloadEndsTheProgramWithoutAWord) {
  const TempDir dir;
  std::string bytes = ReadFile(PROGRAM);
  const std::size_t frame = bytes.find("\x28\xB5\x2F\xFD");  // how a Zstandard frame begins
  ASSERT_NE(frame, std::string::npos);
  bytes[frame + 100] = static_cast<char>(bytes[frame + 100] ^ 1);
  WriteFile(dir / "program.exe", bytes);
  fs::permissions(dir / "program.exe", fs::perms::all);
  MakeArduino1819(dir / "host");
  const Files before = ReadHost(dir / "host");
  const ProgramResult result = RunProgram(dir / "program.exe", {"--dir=" + (dir / "host")});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output + result.error, "");
  ExpectSameFiles(before, ReadHost(dir / "host"));
}

class LongPath : public testing::TestWithParam<std::size_t> {};

// Folders whose files' paths reach and pass the bound at which the program cuts them. (None is cut
// behind a dot: Windows drops one at a name's end.)
TEST_P(LongPath, EndsAsOnThisMachine) {
  const TempDir dir;
  std::string host = dir.path();
  while (host.size() + 1 < GetParam()) {
    host += "/" + std::string(std::min<std::size_t>(GetParam() - host.size() - 1, 60), 'x');
  }
  if (host.size() < GetParam()) host += "x";
  MakeArduino1819(host);
  const int native_status =
      std::system((NATIVE_PROGRAM " --dir=" + host + " 2>" + (dir / "error")).c_str());
  const std::string native_error = ReadFile(dir / "error");
  const Files native_files = ReadHost(host);
  fs::remove_all(host);
  MakeArduino1819(host);
  const ProgramResult result = RunProgram(PROGRAM, {"--dir=" + host});
  EXPECT_EQ(result.status, WEXITSTATUS(native_status));
  EXPECT_EQ(result.error, native_error);
  ExpectSameFiles(native_files, ReadHost(host));
}

INSTANTIATE_TEST_SUITE_P(Of, LongPath, testing::Values(180, 200, 215, 224, 235, 247, 248),
                         testing::PrintToStringParamName());

// A jar that another program has open, for the life of the object.
class HeldFile {
 public:
  HeldFile(const std::string& path, const std::string& others_may) : marker_(dir_ / "held") {
    thread_ = std::thread([this, path, others_may] {
      RunProgram(HOLD_FILE, {path, others_may, marker_});
    });
    for (int i = 0; i < 1000 && !fs::exists(marker_); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  }
  ~HeldFile() {
    fs::remove(marker_);
    thread_.join();
  }
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

 private:
  TempDir dir_;
  std::string marker_;
  std::thread thread_;
};

TEST(HeldJar, ThatMayNotBeReadIsNoArduino) {
  const TempDir dir;
  MakeArduino1819(dir / "host");
  const Files before = ReadTree(dir / "host");
  {
    const HeldFile held(dir / "host/lib/pde.jar", "nothing");
    EXPECT_EQ(RunProgram(PROGRAM, {"--dir=" + (dir / "host")}).status, 1);
  }
  ExpectSameFiles(before, ReadTree(dir / "host"));
}

TEST(HeldJar, ThatMayBeReadStaysAsItWasAndEndsTheInstall) {
  const TempDir dir;
  MakeArduino1819(dir / "host");
  const std::string before = ReadFile(dir / "host/lib/arduino-core.jar");
  {
    const HeldFile held(dir / "host/lib/arduino-core.jar", "read");
    const ProgramResult result = RunProgram(PROGRAM, {"--dir=" + (dir / "host")});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "Error: Unable to write changes to \"" +
                                (dir / "host\\lib/arduino-core.jar") + "\"\n");
  }
  EXPECT_TRUE(ReadFile(dir / "host/lib/arduino-core.jar") == before);
  std::size_t in_lib = 0;
  for (const auto& entry : fs::directory_iterator(dir / "host/lib")) {
    in_lib += entry.path().filename().string().starts_with("arduino-core.jar");
  }
  EXPECT_EQ(in_lib, 1U) << "a temporary file was left";
  EXPECT_FALSE(fs::exists(dir / "host/lib/quirloduino.txt"));
  EXPECT_EQ(RunProgram(PROGRAM, {"--dir=" + (dir / "host")}).status, 0) << "not repeatable";
}

}  // namespace
