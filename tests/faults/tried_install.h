// A program and a host to try it on: what the undisturbed install does and leaves, and the repeated
// install that must mend whatever a disturbance has left.
#pragma once

#include <optional>
#include <string>

#include "tests/faults/fault_host.h"
#include "tests/faults/fault_run.h"
#include "tests/faults/install_trace.h"

class TriedInstall {
 public:
  // Runs the install once, undisturbed, and checks that it leaves no handle open but that of the
  // named folder, which is meant. The host is as before afterwards.
  TriedInstall(std::string program, FaultHost::Kind kind);

  const std::string& program() const { return program_; }
  const FaultHost& host() const { return host_; }
  const Files& before() const { return before_; }
  const Files& complete() const { return complete_; }
  const InstallTrace& trace() const { return *trace_; }
  long operations() const { return static_cast<long>(trace_->size()); }

  // Behind the words of a refusal: the line that names the releases.
  const std::string& supported() const { return supported_; }

  // Runs the install behind the layer. The plan's root is filled in.
  FaultRun Run(FaultPlan plan) const;

  // Runs it again, undisturbed. Empty when it succeeds without a word and leaves what the first
  // undisturbed one left, temporary files apart; otherwise what differs.
  std::string Repeat() const;

 private:
  std::string program_;
  FaultHost host_;
  Files before_;
  Files complete_;
  std::optional<InstallTrace> trace_;
  std::string supported_;
};
