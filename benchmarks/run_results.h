// The record of timed runs: one line for each, in a file of its own for each measure, so that a
// bench that was interrupted goes on where it stopped and the page can be written from the files
// alone. Lines are tab-separated and begin with a head line. Failures throw std::runtime_error.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

struct Run {
  std::string contestant;
  std::string key;            // what the figures depend on; a run with another key is out of date
  int round = 0;              // 0 is the warm-up round, which never counts
  double seconds = 0;         // from before the start of the process until it was waited for
  double user = 0;            // processor seconds, of all its processes that ended
  double system = 0;          //
  long peak_kilobytes = 0;    // largest resident set of any one of them
  std::uint64_t bytes = 0;    // of what was made, or worked on; 0 when that's of no interest
  std::uint64_t entries = 0;  // likewise
  std::string outcome;        // "ok", or what went wrong; then the figures mean nothing
};

inline constexpr char kOk[] = "ok";

// The runs in a file, in its order; none when there is no such file.
std::vector<Run> ReadRuns(const std::filesystem::path& path);

// Replaces the file.
void WriteRuns(const std::filesystem::path& path, const std::vector<Run>& runs);

// Adds one line, and the head line to a new file. It is on its way to the disk on return.
void AppendRun(const std::filesystem::path& path, const Run& run);
