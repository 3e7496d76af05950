// A program, or a stretch of this process, behind the fault layer, and what the layer tells of it.
#pragma once

#include <string>
#include <vector>

#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"

// What the layer is to do; see fault_layer.h. Paths are whole.
struct FaultPlan {
  std::string root = {};
  long at = 0;
  std::string on = {};
  std::string action = "fail";
  int error = 0;
  std::string from = {};
  std::string instead = {};
};

struct Operation {
  std::string name;  // as the layer names it
  std::string path;  // below the plan's root
};

struct FaultReport {
  std::vector<Operation> operations;  // in the order of the run
  long met = 0;                       // number of the operation that the plan met, from 1; or 0
  std::vector<std::string> open;      // paths of handles that were still open
  std::vector<std::string> outside;   // "name path" of changes outside the root
};

// The settings that put the layer into a program, for ProgramOptions::environment.
std::vector<std::string> FaultEnvironment(const FaultPlan& plan, const std::string& report);

// Reads what the layer has written; throws when there is no report.
FaultReport ReadFaultReport(const std::string& path, const std::string& root);

struct FaultRun {
  ProgramResult result;
  FaultReport report;  // empty when the process was killed
};

// Runs the program with no display and its home at the plan's root.
FaultRun RunWithFault(const std::string& program, const std::vector<std::string>& arguments,
                      const FaultPlan& plan);

// Arms the layer that this executable links for the life of the object.
class ScopedFaultLayer {
 public:
  explicit ScopedFaultLayer(const FaultPlan& plan);
  ~ScopedFaultLayer();
  ScopedFaultLayer(const ScopedFaultLayer&) = delete;
  ScopedFaultLayer& operator=(const ScopedFaultLayer&) = delete;

  // Ends the counting and tells; once.
  FaultReport Report();

 private:
  TempDir dir_;
  std::string root_;
  bool armed_ = true;
};
