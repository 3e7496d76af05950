#include "tests/faults/fault_run.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace {

constexpr char kMet[] = "! ";

std::string Below(const std::string& path, const std::string& root) {
  return path.size() > root.size() ? path.substr(root.size() + 1) : "";
}

Operation ParseOperation(const std::string& line, const std::string& root) {
  const std::size_t blank = line.find(' ');
  return {line.substr(0, blank), Below(line.substr(blank + 1), root)};
}

std::vector<std::string> Settings(const FaultPlan& plan, const std::string& report) {
  return {"FAULT_LAYER_ROOT=" + plan.root,
          "FAULT_LAYER_AT=" + std::to_string(plan.at),
          "FAULT_LAYER_ON=" + plan.on,
          "FAULT_LAYER_ACTION=" + plan.action,
          "FAULT_LAYER_ERROR=" + std::to_string(plan.error),
          "FAULT_LAYER_FROM=" + plan.from,
          "FAULT_LAYER_INSTEAD=" + plan.instead,
          "FAULT_LAYER_REPORT=" + report};
}

}  // namespace

std::vector<std::string> FaultEnvironment(const FaultPlan& plan, const std::string& report) {
  std::vector<std::string> environment = Settings(plan, report);
  environment.emplace_back("LD_PRELOAD=" FAULT_LAYER_PRELOAD);
  return environment;
}

FaultReport ReadFaultReport(const std::string& path, const std::string& root) {
  std::istringstream lines(ReadFile(path));
  FaultReport report;
  for (std::string line; std::getline(lines, line);) {
    const bool met = line.starts_with(kMet);
    if (met) line.erase(0, sizeof kMet - 1);
    const std::string path_part = line.substr(line.find(' ') + 1);
    if (line.starts_with("left ")) {
      report.open.push_back(Below(path_part, root));
    } else if (line.starts_with("outside ")) {
      report.outside.push_back(path_part);
    } else {
      report.operations.push_back(ParseOperation(line, root));
      if (met) report.met = static_cast<long>(report.operations.size());
    }
  }
  return report;
}

FaultRun RunWithFault(const std::string& program, const std::vector<std::string>& arguments,
                      const FaultPlan& plan) {
  const TempDir dir;
  const std::string report = dir / "report";
  ProgramOptions options;
  options.environment = FaultEnvironment(plan, report);
  options.environment.push_back("HOME=" + plan.root);
  options.without = {"DISPLAY"};
  FaultRun run = {RunProgram(program, arguments, options), {}};
  if (std::filesystem::exists(report)) run.report = ReadFaultReport(report, plan.root);
  return run;
}
