// What one measure runs. A plan is a text of one directive a line, each contestant a block:
//
//   contestant NAME        begins a block
//   key TEXT               what its figures depend on (measure_runs --resume)
//   prepare COMMAND        for the shell, before the clock starts; the target folder is new
//   run WORD WORD...       what is timed: executed as it stands, without a shell
//   stdout FILE            where its output goes instead of to the log
//   expect N               its exit status, when that isn't 0
//   check COMMAND          for the shell, afterwards; fails when the work isn't the same work
//   artefact FILE          its size is recorded as the run's bytes
//   bytes N, entries N     recorded as they stand
//   rounds N               it takes part in no more than these (all of them)
//
// All of them run in the target folder. Empty lines and lines that begin with "#" mean nothing.
#pragma once

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

struct Contestant {
  std::string name;
  std::string key;
  std::string prepare;
  std::vector<std::string> run;
  std::string stdout_file;
  int expected_status = 0;
  std::string check;
  std::string artefact;
  std::uint64_t bytes = 0;
  std::uint64_t entries = 0;
  int rounds = std::numeric_limits<int>::max();
};

// Throws std::runtime_error at a line that means nothing, and when a block has nothing to run.
std::vector<Contestant> ReadPlan(const std::filesystem::path& path);
