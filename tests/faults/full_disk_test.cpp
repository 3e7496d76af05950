// A disk that is full, at every step of an install, and one that can't be written at all.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/faults/fault_host.h"
#include "tests/faults/install_trace.h"
#include "tests/support/arduino_host.h"
#include "tests/support/harden.h"
#include "tests/support/run_program.h"
#include "tests/support/small_disk.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kStep = 65536;
constexpr std::size_t kDiskSize = 8 << 20;

// The tree that an undisturbed install leaves.
Files CompleteInstall(const std::string& program) {
  const TempDir dir;
  MakeArduino1819(dir / "host");
  EXPECT_EQ(RunProgram(program, {"--dir=" + (dir / "host")}).status, 0);
  return ReadInstall(dir / "host");
}

// Each file as before, complete or, one of them, the beginning of its content; each archive old or
// new. Empty folders don't count.
std::string Compare(const Files& before, const Files& complete, const Files& after) {
  Files expected = before;
  bool begun = false;
  for (const auto& [path, content] : after) {
    const auto found = complete.find(path);
    if (found == complete.end()) return path + " should not be there";
    const std::size_t member = path.find("!/");
    if (member != std::string::npos) {
      // All members of an archive are those of the new one as soon as one is.
      const std::string jar = path.substr(0, member + 2);
      const bool is_new = before.contains(path) ? before.at(path) != content : true;
      if (!is_new) continue;
      for (const auto& [other, bytes] : complete) {
        if (other.starts_with(jar)) expected[other] = bytes;
      }
    } else if (found->second == content) {
      expected[path] = content;
    } else if (!before.contains(path) || before.at(path) != content) {
      if (begun || !found->second.starts_with(content)) return path + " is not what was written";
      expected[path] = content;
      begun = true;
    }
  }
  return Difference(expected, after);
}

class HardenFullDisk : public testing::Test {
 protected:
  // From no free step of the disk to as many as the install needs.
  void FillAtEachStep(const std::string& name, const std::string& program, std::size_t step,
                      long stride) {
    const Files complete = CompleteInstall(program);
    long failures = 0;
    long steps = 0;
    for (std::size_t free = 0;; free += step * static_cast<std::size_t>(stride)) {
      ASSERT_LT(free, kDiskSize / 2) << "no room is ever enough";
      SCOPED_TRACE(std::to_string(free) + " bytes free");
      const TempDir disk;
      const ScopedSmallDisk mounted(disk.path(), kDiskSize);
      if (!mounted.ok()) GTEST_SKIP() << "this machine doesn't let the test mount a file system";
      MakeArduino1819(disk / "host");
      const Files before = ReadInstall(disk / "host");
      WriteFile(disk / "ballast", std::string(fs::space(disk / "host").available - free, 'b'));
      const ProgramResult result = RunProgram(program, {"--dir=" + (disk / "host")});
      ++steps;
      EXPECT_EQ(result.output, "");
      const Files after = ReadInstall(disk / "host");
      if (result.status == 0) {
        EXPECT_EQ(Difference(complete, after), "");
        break;
      }
      ++failures;
      EXPECT_EQ(result.status, 1);
      EXPECT_TRUE(IsOfAFullDisk(result.error, disk / "host\\")) << result.error;
      EXPECT_EQ(Compare(before, complete, after), "");
      const auto marker = after.find("lib/quirloduino.txt");
      EXPECT_TRUE(marker == after.end() || marker->second.empty())
          << "the marker stands though the run failed";
      fs::remove(disk / "ballast");
      const ProgramResult again = RunProgram(program, {"--dir=" + (disk / "host")});
      EXPECT_EQ(again.status, 0) << again.error << "after " << result.error;
      EXPECT_EQ(Difference(complete, ReadInstall(disk / "host")), "");
    }
    EXPECT_GT(failures, 1);
    HardenReport("full disk: " + name + ", " + HardenNumber(steps) + " steps of " +
                 std::to_string(step / 1024) + " kB, " + HardenNumber(failures) + " failed, " +
                 (HasFailure() ? "with" : "0") + " differences");
  }

  static bool IsOfAFullDisk(const std::string& error, const std::string& host) {
    for (const std::string& words : {"Error: Unable to create directory \"" + host,
                                     "Error: Unable to write changes to \"" + host + "lib/",
                                     std::string("Error: Unable to write file \""),
                                     std::string("Error: Error while writing to file \""),
                                     std::string("Error: Error after writing to file \"")}) {
      if (error.starts_with(words) && error.ends_with("\n")) return true;
    }
    return false;
  }
};

TEST_F(HardenFullDisk, EveryPageEndsWithAnErrorAndSoundJars) {
  FillAtEachStep("small payload", PROGRAM, kPage, HardenStride(7));
}

TEST_F(HardenFullDisk, EverySixtyFourKilobytesOfTheSampleEndWithAnErrorAndSoundJars) {
  FillAtEachStep("sample", SAMPLE_PROGRAM, kStep, HardenStride(3));
}

TEST_F(HardenFullDisk, OneThatCannotBeWrittenIsNamedAndStaysAsItWas) {
  const TempDir disk;
  ScopedSmallDisk mounted(disk.path(), kDiskSize);
  if (!mounted.ok()) GTEST_SKIP() << "this machine doesn't let the test mount a file system";
  MakeArduino1819(disk / "host");
  const Files before = ReadInstall(disk / "host");
  ASSERT_TRUE(mounted.SetReadOnly(true));
  const std::string argument = "--dir=" + (disk / "host");
  const ProgramResult result = RunProgram(PROGRAM, {argument});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.error,
            "Error: Unable to create directory \"" + (disk / "host\\hardware/") + "\".\n");
  EXPECT_EQ(Difference(before, ReadInstall(disk / "host")), "");

  ASSERT_TRUE(mounted.SetReadOnly(false));
  EXPECT_EQ(RunProgram(PROGRAM, {argument}).status, 0);
  const Files complete = ReadInstall(disk / "host");
  ASSERT_TRUE(mounted.SetReadOnly(true));
  const ProgramResult over = RunProgram(PROGRAM, {argument});
  EXPECT_EQ(over.status, 1);
  EXPECT_EQ(over.error, "Error: Unable to write file \"hardware/tools/quirlo.exe\".\n");
  EXPECT_EQ(Difference(complete, ReadInstall(disk / "host")), "");
}

}  // namespace
