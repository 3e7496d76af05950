// The process killed at random moments of an install: what was written stays and is sound, and a
// run again leaves what an undisturbed install leaves.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <set>
#include <string>
#include <thread>

#include "tests/faults/tried_install.h"
#include "tests/support/harden.h"

namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr int kKilled = 128 + SIGKILL;

// What the archive library's files were left with.
class Leftovers {
 public:
  void Count(const std::vector<std::string>& temporaries) {
    if (!temporaries.empty()) ++ends_;
    files_ += static_cast<long>(temporaries.size());
  }
  std::string Text() const {
    return HardenNumber(files_) + " temporary files left by " + HardenNumber(ends_) + " of them";
  }

 private:
  long ends_ = 0;
  long files_ = 0;
};

// A run of the program that is killed after that time, unless it has ended before.
bool RunAndKill(const TriedInstall& install, microseconds moment) {
  const std::string program = install.program();
  const std::string argument = install.host().argument();
  const pid_t child = fork();
  if (child == 0) {
    unsetenv("DISPLAY");
    execl(program.c_str(), program.c_str(), argument.c_str(), nullptr);
    _exit(127);
  }
  std::this_thread::sleep_for(moment);
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status);
}

// Each file as before, complete, or the beginning of its content; each archive old or new.
std::string CompareAnyEnd(const TriedInstall& install, const Files& after) {
  std::map<std::string, std::set<bool>> archives;  // which of them are new
  int begun = 0;
  for (const auto& [path, content] : after) {
    const auto old = install.before().find(path);
    const auto complete = install.complete().find(path);
    const bool is_old = old != install.before().end() && old->second == content;
    if (complete == install.complete().end()) {
      if (!is_old) return path + " should not be there";
      continue;
    }
    const bool is_new = complete->second == content;
    const std::size_t member = path.find("!/");
    if (member != std::string::npos && is_old != is_new) {
      archives[path.substr(0, member)].insert(is_new);
    }
    if (is_old || is_new) continue;
    if (member != std::string::npos || !complete->second.starts_with(content) || ++begun > 1) {
      return path + " is neither the old nor the new one, nor the one file under way";
    }
  }
  for (const auto& [archive, news] : archives) {
    if (news.size() > 1) return archive + " is half old and half new";
  }
  for (const auto& [path, content] : install.before()) {
    if (install.complete().contains(path) && !after.contains(path)) return path + " is missing";
  }
  return install.host().CompareBeside();
}

TEST(HardenKill, AtARandomOperationLeavesWhatWasFinishedAndARunAgainCompletes) {
  const TriedInstall install(SAMPLE_PROGRAM, FaultHost::Kind::kWithOlderPackage);
  std::mt19937 random(HardenSeed("kills by operation"));
  std::uniform_int_distribution<long> any(1, install.operations());
  Leftovers leftovers;
  const int kills = HardenCount(200, 8);
  for (int i = 0; i < kills; ++i) {
    const long n = any(random);
    const Operation& met = install.trace().At(n);
    SCOPED_TRACE("killed at operation " + std::to_string(n) + ", " + met.name + " " + met.path);
    install.host().Reset();
    const FaultRun run = install.Run({.at = n, .action = "kill"});
    EXPECT_EQ(run.result.status, kKilled);
    EXPECT_EQ(run.result.output + run.result.error, "");
    Files after = install.host().Read();
    leftovers.Count(TakeTemporaries(&after));
    EXPECT_EQ(install.trace().CompareEnd(n, install.before(), install.complete(), after), "");
    EXPECT_EQ(install.host().CompareBeside(), "");
    EXPECT_EQ(install.Repeat(), "");
  }
  HardenReport("kills: at " + std::to_string(kills) + " random operations of " +
               HardenNumber(install.operations()) + ", " + leftovers.Text() + ", " +
               (testing::Test::HasFailure() ? "with" : "0") + " differences");
}

// The commit of an archive is where most temporary files come from.
TEST(HardenKill, WithinTheCommitOfAnArchiveLeavesAtMostOneTemporaryAndTheOldArchive) {
  const TriedInstall install(PROGRAM, FaultHost::Kind::kFresh);
  Leftovers leftovers;
  long kills = 0;
  const long stride = HardenStride(41);
  for (long n = 1; n <= install.operations(); ++n) {
    const std::string& path = install.trace().At(n).path;
    if (!path.ends_with(".XXXXXX") || (n % stride != 0)) continue;
    SCOPED_TRACE("killed at operation " + std::to_string(n) + ", " + install.trace().At(n).name);
    ++kills;
    install.host().Reset();
    EXPECT_EQ(install.Run({.at = n, .action = "kill"}).result.status, kKilled);
    Files after = install.host().Read();
    const std::vector<std::string> temporaries = TakeTemporaries(&after);
    EXPECT_LE(temporaries.size(), 1U);
    leftovers.Count(temporaries);
    EXPECT_EQ(install.trace().CompareEnd(n, install.before(), install.complete(), after), "");
    EXPECT_EQ(install.Repeat(), "");
  }
  EXPECT_GT(kills, 0);
  HardenReport("kills: at " + std::to_string(kills) + " operations on temporary archives, " +
               leftovers.Text() + ", " + (testing::Test::HasFailure() ? "with" : "0") +
               " differences");
}

TEST(HardenKill, AtARandomMomentLeavesSoundFilesAndARunAgainCompletes) {
  const TriedInstall install(SAMPLE_PROGRAM, FaultHost::Kind::kWithOlderPackage);
  std::mt19937 random(HardenSeed("kills by the clock"));
  // How long an undisturbed run takes, the longest of a few.
  microseconds longest(0);
  for (int i = 0; i < 3; ++i) {
    install.host().Reset();
    const auto begin = steady_clock::now();
    ASSERT_EQ(RunProgram(install.program(), {install.host().argument()}).status, 0);
    longest =
        std::max(longest, std::chrono::duration_cast<microseconds>(steady_clock::now() - begin));
  }
  std::uniform_int_distribution<long> any(0, longest.count());
  Leftovers leftovers;
  int killed = 0;
  const int kills = HardenCount(200, 8);
  for (int i = 0; i < kills; ++i) {
    const microseconds moment(any(random));
    SCOPED_TRACE("killed after " + std::to_string(moment.count()) + " microseconds");
    install.host().Reset();
    if (RunAndKill(install, moment)) ++killed;
    Files after = install.host().Read();
    leftovers.Count(TakeTemporaries(&after));
    EXPECT_EQ(CompareAnyEnd(install, after), "");
    EXPECT_EQ(install.Repeat(), "");
  }
  EXPECT_GT(killed, 0);
  HardenReport("kills: at " + std::to_string(kills) + " random moments, " + std::to_string(killed) +
               " of them before the end, " + leftovers.Text() + ", " +
               (testing::Test::HasFailure() ? "with" : "0") + " differences");
}

}  // namespace
