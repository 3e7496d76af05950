// Runs the contestants of one measure in turn, round by round, each on a fresh file system, and
// records every run. Round 0 warms up. A contestant that fails or whose work differs is recorded
// as such and not run again. Must be root, in a mount namespace of its own (scripts/bench).
#include <sys/mount.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <set>
#include <string>
#include <system_error>

#include "benchmarks/measure_plan.h"
#include "benchmarks/run_results.h"
#include "benchmarks/timed_run.h"

namespace fs = std::filesystem;

namespace {

struct Options {
  fs::path plan;
  fs::path results;
  fs::path target;
  fs::path log;
  std::string file_system = "tmpfs";
  int rounds = 5;
  std::size_t touched_gibibytes = 2;
  bool warm_up = true;
  bool resume = false;
};

// A new file system at the target folder, for as long as the object lives. One that has just
// removed thousands of files is slow to make new ones, so no two runs share one.
class FreshTarget {
 public:
  explicit FreshTarget(const Options& options) : target_(options.target) {
    fs::create_directories(target_);
    if (options.file_system == "ext4") {
      MountImage(options);
    } else if (mount("tmpfs", target_.c_str(), "tmpfs", 0, "size=80%") != 0) {
      throw std::system_error(errno, std::generic_category(), "mount");
    }
  }
  ~FreshTarget() { umount2(target_.c_str(), MNT_DETACH); }
  FreshTarget(const FreshTarget&) = delete;
  FreshTarget& operator=(const FreshTarget&) = delete;

 private:
  void MountImage(const Options& options) {
    const std::string image = options.target.string() + ".ext4";
    const std::string command = "rm -f '" + image + "' && truncate -s 6G '" + image +
                                "' && mkfs.ext4 -q -F '" + image + "' && mount -o loop '" + image +
                                "' '" + target_.string() + "' && rmdir '" + target_.string() +
                                "/lost+found'";
    if (RunInShell(command, "/", options.log) != 0) throw std::runtime_error("no ext4 image");
  }

  fs::path target_;
};

std::string Judge(const Contestant& contestant, int status, const Options& options) {
  if (status != contestant.expected_status) {
    return "failed with status " + std::to_string(status);
  }
  if (!contestant.check.empty() && RunInShell(contestant.check, options.target, options.log) != 0) {
    return "its result differs";
  }
  return kOk;
}

Run RunOnce(const Contestant& contestant, int round, const Options& options) {
  Run run;
  run.contestant = contestant.name;
  run.key = contestant.key;
  run.round = round;
  const FreshTarget target(options);
  if (!contestant.prepare.empty() &&
      RunInShell(contestant.prepare, options.target, options.log) != 0) {
    run.outcome = "could not be prepared";
    return run;
  }
  TouchMemory(options.touched_gibibytes << 30);
  const TimedRun timed =
      RunTimed(contestant.run, options.target, contestant.stdout_file, options.log);
  run.seconds = timed.seconds;
  run.user = timed.user;
  run.system = timed.system;
  run.peak_kilobytes = timed.peak_kilobytes;
  run.bytes = contestant.bytes;
  run.entries = contestant.entries;
  if (!contestant.artefact.empty()) {
    std::error_code none;  // without an artefact the check fails
    const auto size = fs::file_size(options.target / contestant.artefact, none);
    if (!none) run.bytes = size;
  }
  run.outcome = Judge(contestant, timed.status, options);  // may take the artefact away
  return run;
}

// What is kept of an earlier bench: the runs that went well and have today's key.
std::vector<Run> StillValid(const std::vector<Run>& runs, const std::vector<Contestant>& plan) {
  std::vector<Run> valid;
  for (const Run& run : runs) {
    for (const Contestant& contestant : plan) {
      if (run.contestant == contestant.name && run.key == contestant.key && run.outcome == kOk) {
        valid.push_back(run);
      }
    }
  }
  return valid;
}

bool IsDone(const std::vector<Run>& runs, const std::string& contestant, int round) {
  for (const Run& run : runs) {
    if (run.contestant == contestant && run.round == round) return true;
  }
  return false;
}

void RunAll(const Options& options) {
  const std::vector<Contestant> plan = ReadPlan(options.plan);
  std::vector<Run> done;
  if (options.resume) done = StillValid(ReadRuns(options.results), plan);
  WriteRuns(options.results, done);
  std::set<std::string> out;
  for (int round = options.warm_up ? 0 : 1; round <= options.rounds; ++round) {
    for (const Contestant& contestant : plan) {
      if (round > contestant.rounds || out.count(contestant.name) != 0) continue;
      if (IsDone(done, contestant.name, round)) continue;
      const Run run = RunOnce(contestant, round, options);
      AppendRun(options.results, run);
      if (run.outcome != kOk) out.insert(contestant.name);
      std::printf("  round %d: %-28s %9.3f s  %s\n", round, run.contestant.c_str(), run.seconds,
                  run.outcome == kOk ? "" : run.outcome.c_str());
      std::fflush(stdout);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Runs the contestants of one measure in turn.", "measure_runs"};
  Options options;
  app.add_option("PLAN", options.plan)->required();
  app.add_option("--results", options.results, "The record to write")->required();
  app.add_option("--target", options.target, "Where the fresh file systems are mounted")
      ->required();
  app.add_option("--log", options.log, "What the commands say")->required();
  app.add_option("--rounds", options.rounds, "Rounds that count");
  app.add_option("--touch", options.touched_gibibytes,
                 "GiB of memory to touch before each run: as much as a run takes, files and all");
  app.add_option("--file-system", options.file_system)->check(CLI::IsMember({"tmpfs", "ext4"}));
  app.add_flag("!--no-warm-up", options.warm_up, "Without a round before those that count");
  app.add_flag("--resume", options.resume, "Keep the runs of the record whose key still holds");
  CLI11_PARSE(app, argc, argv);
  try {
    RunAll(options);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "measure_runs: %s\n", error.what());
    return 1;
  }
  return 0;
}
