// A disk that fills up at every step of an install.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "tests/program/case_host.h"
#include "tests/support/arduino_host.h"
#include "tests/support/run_program.h"
#include "tests/support/small_disk.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPage = 4096;

using Files = std::map<std::string, std::string>;

Files JarOf(const Files& files, const std::string& jar) {
  Files members;
  for (const auto& [path, content] : files) {
    if (path.starts_with(jar)) members[path] = content;
  }
  return members;
}

// The tree that an undisturbed install leaves.
Files CompleteInstall() {
  const TempDir dir;
  MakeArduino1819(dir / "host");
  EXPECT_EQ(RunProgram(PROGRAM, {"--dir=" + (dir / "host")}).status, 0);
  return ReadHost(dir / "host");
}

// Leaves `pages` free pages on the disk.
void FillUpTo(const TempDir& disk, std::size_t pages) {
  const std::size_t free = fs::space(disk / "host").available;
  WriteFile(disk / "ballast", std::string(free - pages * kPage, 'b'));
}

TEST(FullDisk, EveryStepEndsWithAnErrorAndSoundJars) {
  const Files complete = CompleteInstall();
  bool succeeded = false;
  std::size_t failures = 0;
  for (std::size_t pages = 0; pages < 200 && !succeeded; ++pages) {
    SCOPED_TRACE(std::to_string(pages) + " free pages");
    const TempDir disk;
    const ScopedSmallDisk mounted(disk.path(), 4 << 20);
    if (!mounted.ok()) GTEST_SKIP() << "this machine doesn't let the test mount a file system";
    MakeArduino1819(disk / "host");
    const Files before = ReadHost(disk / "host");
    FillUpTo(disk, pages);
    const ProgramResult result = RunProgram(PROGRAM, {"--dir=" + (disk / "host")});
    const Files after = ReadHost(disk / "host");
    EXPECT_EQ(result.output, "");
    succeeded = result.status == 0;
    if (succeeded) {
      EXPECT_TRUE(after == complete);
      continue;
    }
    ++failures;
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.error.starts_with("Error: ")) << result.error;
    EXPECT_EQ(after.count("lib/quirloduino.txt") == 1 && after.at("lib/quirloduino.txt") != "",
              false)
        << "the marker stands though the run failed";
    for (const char* jar : {"lib/pde.jar", "lib/arduino-core.jar"}) {
      const Files members = JarOf(after, jar);
      EXPECT_TRUE(members == JarOf(before, jar) || members == JarOf(complete, jar)) << jar;
    }
    fs::remove(disk / "ballast");
    const ProgramResult again = RunProgram(PROGRAM, {"--dir=" + (disk / "host")});
    EXPECT_EQ(again.status, 0) << again.error << "after " << result.error;
    EXPECT_TRUE(ReadHost(disk / "host") == complete) << "a second run does not repeat it all";
  }
  EXPECT_TRUE(succeeded);
  EXPECT_GT(failures, 10U);
}

}  // namespace
