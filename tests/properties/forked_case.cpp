#include "tests/properties/forked_case.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "tests/properties/random_source.h"

namespace {

// A case that works without end is ended by the time that it has used, which a busy machine doesn't
// lengthen. One that waits without end uses none, and is ended by the clock, by far more than any
// load makes of a case.
constexpr rlim_t kProcessorSecondsAllowed = 60;
constexpr unsigned kSecondsAllowed = 600;
constexpr std::size_t kMostFailedCases = 10;

void WriteAll(int pipe, const void* bytes, std::size_t count) {
  const char* position = static_cast<const char*>(bytes);
  while (count > 0) {
    const ssize_t written = write(pipe, position, count);
    if (written <= 0) _exit(3);
    position += written;
    count -= static_cast<std::size_t>(written);
  }
}

std::string ReadAll(int pipe) {
  std::string all;
  char buffer[65536];
  for (ssize_t count = 0; (count = read(pipe, buffer, sizeof buffer)) > 0;) {
    all.append(buffer, static_cast<std::size_t>(count));
  }
  return all;
}

// The report goes through the pipe as the figures' bytes, then the problems, each behind a NUL.
[[noreturn]] void RunChild(int pipe, std::uint64_t seed,
                           const std::function<CaseReport(std::uint64_t)>& one_case) {
  const rlimit allowed = {kProcessorSecondsAllowed, kProcessorSecondsAllowed + 1};
  setrlimit(RLIMIT_CPU, &allowed);
  alarm(kSecondsAllowed);
  CaseReport report;
  try {
    report = one_case(seed);
  } catch (const std::exception& error) {
    report.problems.push_back(std::string("the case itself failed: ") + error.what());
  }
  WriteAll(pipe, report.figures.data(), sizeof report.figures);
  for (const std::string& problem : report.problems) {
    WriteAll(pipe, problem.c_str(), problem.size() + 1);
  }
  _exit(0);
}

CaseReport RunOne(std::uint64_t seed, const std::function<CaseReport(std::uint64_t)>& one_case) {
  int ends[2];
  if (pipe(ends) != 0) return {{"no pipe"}, {}};
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) return {{"no process"}, {}};
  if (child == 0) {
    close(ends[0]);
    RunChild(ends[1], seed, one_case);
  }
  close(ends[1]);
  const std::string all = ReadAll(ends[0]);
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  CaseReport report;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || all.size() < sizeof report.figures) {
    report.problems.push_back("the process ended with wait status " + std::to_string(status));
    return report;
  }
  std::memcpy(report.figures.data(), all.data(), sizeof report.figures);
  for (std::size_t at = sizeof report.figures; at < all.size();) {
    report.problems.emplace_back(all.c_str() + at);
    at += report.problems.back().size() + 1;
  }
  return report;
}

}  // namespace

RunReport RunCases(std::size_t count,
                   const std::function<CaseReport(std::uint64_t seed)>& one_case) {
  // The cases are many and their files small; memory spares the disk.
  if (access("/dev/shm", R_OK | W_OK | X_OK) == 0) setenv("TMPDIR", "/dev/shm", 1);
  RunReport run{FirstSeed(), 0, {}};
  std::size_t failed = 0;
  for (; run.cases < count && failed < kMostFailedCases; ++run.cases) {
    const std::uint64_t seed = run.first_seed + run.cases;
    const CaseReport report = RunOne(seed, one_case);
    for (std::size_t i = 0; i < run.figures.size(); ++i) run.figures[i] += report.figures[i];
    if (!report.problems.empty()) ++failed;
    for (const std::string& problem : report.problems) {
      ADD_FAILURE() << "QUIRLODUINO_SEED=" << seed << ": " << problem;
    }
  }
  return run;
}
