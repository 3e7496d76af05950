// Runs a built program and tells all that it did.
#pragma once

#include <string>
#include <vector>

struct ProgramResult {
  int status;          // exit status; 128 + the signal when one ended it
  std::string output;  // the whole standard output stream
  std::string error;   // the whole standard error stream
};

struct ProgramOptions {
  bool ordinary_user = false;            // without root's rights, where the test has them
  std::string directory;                 // working directory; empty for the test's own
  std::vector<std::string> environment;  // NAME=value, added to the test's own
  std::vector<std::string> without;      // names taken out of the environment
};

// Runs `program` with `arguments` and waits for its end, at most 60 seconds (then status 142, of
// the alarm); under another program ten times that.
ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const ProgramOptions& options = {});
