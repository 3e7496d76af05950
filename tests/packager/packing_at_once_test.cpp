// What happens beside a run of pack while it lasts: another run, a change of the tree, its end.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <thread>

#include "tests/packager/payload_fixture.h"

namespace fs = std::filesystem;

namespace {

// Enough that packing it at the highest level takes about a second, in which a test can halt it.
std::string SlowToPack() {
  std::string text;
  std::uint32_t state = 1;
  while (text.size() < (std::size_t{1} << 20)) {
    state = state * 1664525 + 1013904223;
    text += std::to_string(state >> 20);
  }
  return text;
}

class PackingAtOnce : public PayloadTest {
 protected:
  PackingAtOnce() { Write("libraries/Servo/slow.bin", SlowToPack()); }

  std::vector<std::string> SlowPack() const {
    return {"pack", tree(), "--output", output(), "--level", "22", "--threads", "1"};
  }

  // Starts a run of the tree and halts it when it has planned and writes the frame.
  pid_t Start() const {
    const std::vector<std::string> words = SlowPack();
    std::vector<const char*> arguments = {PACK_PROGRAM};
    for (const std::string& word : words) arguments.push_back(word.c_str());
    arguments.push_back(nullptr);
    const std::string errors = dir_ / "errors";
    const pid_t process = fork();
    if (process == 0) {
      if (std::freopen(errors.c_str(), "w", stderr) != nullptr) {
        execv(PACK_PROGRAM, const_cast<char**>(arguments.data()));
      }
      _exit(127);
    }
    while (!fs::exists(output() + "/payload.zst.part") && waitpid(process, nullptr, WNOHANG) == 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    kill(process, SIGSTOP);
    EXPECT_TRUE(fs::exists(output() + "/payload.zst.part")) << ReadFile(errors);
    return process;
  }
  // Lets it go on to its end.
  ProgramResult Finish(pid_t process) const {
    kill(process, SIGCONT);
    const int status = StatusOf(process);
    return {status, "", ReadFile(dir_ / "errors")};
  }
  static int StatusOf(pid_t process) {
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  }
  void ExpectChangeIsSeen(const std::string& name, const std::function<void()>& change) const {
    const pid_t process = Start();
    change();
    const ProgramResult result = Finish(process);
    EXPECT_EQ(result.error,
              "quirloduino-pack: " + name + ": changed while the tree was being packed\n");
    EXPECT_EQ(result.status, 2);
    EXPECT_FALSE(fs::exists(output()));
  }
};

TEST_F(PackingAtOnce, SecondRunIntoTheFolderIsRefusedAndTheFirstIsWhole) {
  const TempDir other;
  WriteTree(other.path(), SoundPayload());
  const pid_t first = Start();
  const ProgramResult second =
      RunPack({"pack", other.path(), "--output", output(), "--level", "1"});
  EXPECT_EQ(second.error,
            "quirloduino-pack: " + output() + ": another run is packing into this folder\n");
  EXPECT_EQ(second.status, 2);
  EXPECT_EQ(Finish(first).status, 0);
  EXPECT_EQ(RunPack({"verify", output(), "--tree", tree()}).status, 0);
}

TEST_F(PackingAtOnce, OfRunsThatBeginTogetherOneWinsWhole) {
  const TempDir trees;
  const int kRuns = 4;
  for (int i = 0; i < kRuns; ++i) {
    const std::string other = trees / std::to_string(i);
    WriteTree(other, SoundPayload());
    WriteFile(other + "/quirlo.exe", "tool " + std::to_string(i));
  }
  for (int round = 0; round < 5; ++round) {
    std::vector<std::future<ProgramResult>> runs;
    for (int i = 0; i < kRuns; ++i) {
      runs.push_back(std::async(std::launch::async, [this, &trees, i] {
        return RunPack({"pack", trees / std::to_string(i), "--output", output(), "--level", "1"});
      }));
    }
    int winner_found = 0;
    for (int i = 0; i < kRuns; ++i) {
      const ProgramResult result = runs[static_cast<std::size_t>(i)].get();
      if (result.status == 0) {
        EXPECT_EQ(result.error, "");
        const std::string other = trees / std::to_string(i);
        winner_found += RunPack({"verify", output(), "--tree", other}).status == 0 ? 1 : 0;
      } else {
        EXPECT_EQ(result.error,
                  "quirloduino-pack: " + output() + ": another run is packing into this folder\n");
        EXPECT_EQ(result.status, 2);
      }
    }
    // The last of those that won is what stands there.
    EXPECT_EQ(winner_found, 1) << round;
    EXPECT_EQ(ReadTree(output()).size(), 3U) << round;
  }
}

TEST_F(PackingAtOnce, ChangeOfEqualLengthIsSeen) {
  ExpectChangeIsSeen("quirlo.exe", [this] { Write("quirlo.exe", "TOOL"); });
}

TEST_F(PackingAtOnce, ChangeThatKeepsTheTimeIsSeen) {
  const auto before = fs::last_write_time(In("quirlo.exe"));
  ExpectChangeIsSeen("quirlo.exe", [this, before] {
    Write("quirlo.exe", "TOOL");
    fs::last_write_time(In("quirlo.exe"), before);
  });
}

TEST_F(PackingAtOnce, FileThatComesOrGoesIsSeen) {
  ExpectChangeIsSeen("libraries/Servo/new.h", [this] { Write("libraries/Servo/new.h", ""); });
  ExpectChangeIsSeen("libraries/Servo/new.h", [this] { Remove("libraries/Servo/new.h"); });
}

TEST_F(PackingAtOnce, FolderThatComesIsSeen) {
  ExpectChangeIsSeen(tree(), [this] { fs::create_directory(In("libraries/empty")); });
}

TEST_F(PackingAtOnce, InterruptedRunLeavesNothingAndSaysSo) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const pid_t process = Start();
    kill(process, signal);
    const ProgramResult result = Finish(process);
    EXPECT_EQ(result.status, 128 + signal);
    EXPECT_EQ(result.error, "quirloduino-pack: interrupted\n");
    EXPECT_FALSE(fs::exists(output()));
  }
}

TEST_F(PackingAtOnce, IgnoredHangUpStaysIgnored) {
  const auto before = signal(SIGHUP, SIG_IGN);
  const pid_t process = Start();
  signal(SIGHUP, before);
  kill(process, SIGHUP);
  EXPECT_EQ(Finish(process).status, 0);
}

TEST_F(PackingAtOnce, NextRunAfterAKilledOneIsAsEver) {
  const pid_t process = Start();
  kill(process, SIGKILL);
  EXPECT_EQ(Finish(process).status, 1000 + SIGKILL);
  EXPECT_FALSE(fs::exists(output() + "/payload.zst"));
  ExpectPacked();
  EXPECT_EQ(ReadTree(output()).size(), 3U);
  EXPECT_EQ(RunPack({"verify", output(), "--tree", tree()}).status, 0);
}

}  // namespace
