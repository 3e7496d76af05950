#include "tests/faults/tried_install.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

TriedInstall::TriedInstall(std::string program, FaultHost::Kind kind)
    : program_(std::move(program)), host_(kind), before_(host_.Read()) {
  const FaultRun run = Run({});
  EXPECT_EQ(run.result.status, 0) << run.result.error;
  EXPECT_EQ(run.report.open, std::vector<std::string>{"host/"});
  EXPECT_EQ(run.report.outside, std::vector<std::string>());
  complete_ = host_.Read();
  EXPECT_NE(Difference(before_, complete_), "");
  trace_.emplace(run.report.operations, "host", host_.text(), true);
  const ProgramResult refused = RunProgram(program_, {"--dir=" + host_.root()});
  supported_ = refused.error.substr(refused.error.find('\n') + 1);
  host_.Reset();
}

FaultRun TriedInstall::Run(FaultPlan plan) const {
  plan.root = host_.root();
  return RunWithFault(program_, {host_.argument()}, plan);
}

std::string TriedInstall::Repeat() const {
  const ProgramResult again = RunProgram(program_, {host_.argument()});
  if (again.status != 0 || !(again.error + again.output).empty()) {
    return "a run again ends with " + std::to_string(again.status) + ": " + again.error;
  }
  Files after = host_.Read();
  TakeTemporaries(&after);
  const std::string difference = Difference(complete_, after);
  if (!difference.empty()) return "after a run again, " + difference;
  return host_.CompareBeside();
}
