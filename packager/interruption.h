// How the author's tools end when somebody stops them: not at once, but at the next step of their
// work, as after a failure, so that what they had begun is removed.
#pragma once

#include <stdexcept>

class Interruption : public std::runtime_error {
 public:
  explicit Interruption(int signal) : std::runtime_error("interrupted"), signal_(signal) {}
  // The exit status by which a shell tells a program that this signal ended.
  int status() const { return 128 + signal_; }

 private:
  int signal_;
};

// From now on SIGINT, SIGTERM and SIGHUP are noted, except those that the caller's caller had made
// ignored. A second one ends the process at once.
void NoteInterruptions();

// Throws Interruption if one was noted. Long work calls it at every step.
void StopIfInterrupted();
