// One process under the clock.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

struct TimedRun {
  double seconds;
  double user;
  double system;
  long peak_kilobytes;
  int status;  // the exit status, or 128 and the signal's number
};

// Runs `words` in `folder` and waits for it. Output goes to `stdout_file`, which is emptied, or to
// the end of `log` when that is empty; errors go to the end of `log`. Throws std::system_error when
// no process can be made.
TimedRun RunTimed(const std::vector<std::string>& words, const std::filesystem::path& folder,
                  const std::string& stdout_file, const std::filesystem::path& log);

// The same for a shell's command, without the figures. Returns the status.
int RunInShell(const std::string& command, const std::filesystem::path& folder,
               const std::filesystem::path& log);

// Takes memory from the system and gives it back: on a virtual machine whose host has taken idle
// memory away, the next to touch it would pay for its return.
void TouchMemory(std::size_t bytes);
