// The host folder taken away or replaced while an install runs.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/faults/tried_install.h"
#include "tests/support/arduino_host.h"
#include "tests/support/harden.h"

namespace fs = std::filesystem;

namespace {

// Each file as before, complete, or the beginning of its content.
std::string CompareParts(const TriedInstall& install, Files files) {
  TakeTemporaries(&files);
  for (const auto& [path, content] : files) {
    const auto old = install.before().find(path);
    if (old != install.before().end() && old->second == content) continue;
    const auto complete = install.complete().find(path);
    if (complete == install.complete().end()) return path + " should not be there";
    if (!complete->second.starts_with(content)) return path + " holds something else";
  }
  return "";
}

// The words that a run may end with when its folder is not what it was.
bool IsOfAnotherFolder(const std::string& error, const std::string& host) {
  for (const std::string& words :
       {"Unable to access directory: " + host + "\n",
        "Directory \"" + host + "\" is not a supported Arduino\n",
        "Error: Directory \"" + host + "\" does not exist!\n",
        "Error: Unable to create directory \"" + host,
        "Error: Could not create directory \"" + host, std::string("Error: \n"),
        std::string("Error: Unable to write file \""), std::string("Error: Unable to delete \""),
        "Error: Unable to open file \"" + host, "Error: Unable to write changes to \"" + host}) {
    if (error.starts_with(words)) return true;
  }
  return false;
}

class HardenHostSwap : public testing::Test {
 protected:
  // What a kind of replacement puts in the host's place, made anew below the test's folder at
  // "instead" before each run; nothing for a host that is just taken away.
  template <typename Make, typename Check>
  void SwapAtEachOperation(const std::string& name, Make make, Check check) {
    const std::string instead = install_.host().root() + "/instead";
    const long stride = HardenStride(67);
    long runs = 0;
    long failed = 0;
    for (long n = 1; n <= install_.operations(); n += stride) {
      const Operation& met = install_.trace().At(n);
      SCOPED_TRACE(name + " ahead of operation " + std::to_string(n) + ", " + met.name + " " +
                   met.path);
      install_.host().Reset();
      make(instead);
      FaultPlan plan = {.at = n, .action = "swap", .from = install_.host().host()};
      if (fs::exists(fs::symlink_status(instead))) plan.instead = instead;
      const FaultRun run = install_.Run(plan);
      ++runs;
      EXPECT_EQ(run.result.output, "");
      if (run.result.status != 0) {
        ++failed;
        EXPECT_EQ(run.result.status, 1);
        EXPECT_TRUE(IsOfAnotherFolder(run.result.error, install_.host().text()))
            << run.result.error;
      } else {
        EXPECT_EQ(run.result.error, "");
      }
      EXPECT_LE(run.report.open.size(), 1U) << run.report.open.back();
      EXPECT_EQ(run.report.outside, std::vector<std::string>());
      EXPECT_EQ(CompareParts(install_, ReadInstall(install_.host().host() + ".away")), "");
      check(n);
      if (testing::Test::HasFailure()) return;
    }
    EXPECT_GT(failed, 0);
    HardenReport("host folder " + name + ": " + HardenNumber(runs) + " runs, " +
                 HardenNumber(failed) + " failed, 0 differences");
  }

  TriedInstall install_{PROGRAM, FaultHost::Kind::kWithOlderPackage};
};

TEST_F(HardenHostSwap, TakenAwayIsNotMadeAnew) {
  SwapAtEachOperation(
      "taken away", [](const std::string&) {},
      [&](long) { EXPECT_FALSE(fs::exists(install_.host().host())); });
}

// The rest of the payload goes into the new folder, which is the one that was named; archives that
// it doesn't hold are not made.
TEST_F(HardenHostSwap, ReplacedByAnEmptyFolderGetsOnlyTheRest) {
  SwapAtEachOperation(
      "replaced by an empty one", [](const std::string& path) { fs::create_directory(path); },
      [&](long) {
        const Files files = ReadInstall(install_.host().host());
        EXPECT_FALSE(files.contains("lib/pde.jar"));
        EXPECT_FALSE(files.contains("lib/arduino-core.jar"));
        for (const auto& [path, content] : files) {
          ASSERT_TRUE(install_.complete().contains(path)) << path;
          EXPECT_EQ(content, install_.complete().at(path)) << path;
        }
      });
}

// A run again over the replacement completes it.
TEST_F(HardenHostSwap, ReplacedByAnotherArduinoIsCompletedByARunAgain) {
  const TriedInstall fresh(PROGRAM, FaultHost::Kind::kFresh);
  SwapAtEachOperation(
      "replaced by another Arduino", [](const std::string& path) { MakeArduino1819(path); },
      [&](long) {
        EXPECT_EQ(CompareParts(fresh, ReadInstall(install_.host().host())), "");
        const ProgramResult again = RunProgram(PROGRAM, {install_.host().argument()});
        EXPECT_EQ(again.status, 0) << again.error;
        Files after = ReadInstall(install_.host().host());
        TakeTemporaries(&after);
        EXPECT_EQ(Difference(fresh.complete(), after), "");
      });
}

TEST_F(HardenHostSwap, ReplacedByAFileEndsTheRunAndLeavesTheFile) {
  SwapAtEachOperation(
      "replaced by a file", [](const std::string& path) { WriteFile(path, "no folder"); },
      [&](long) { EXPECT_EQ(ReadFile(install_.host().host()), "no folder"); });
}

}  // namespace
