#include <cstdlib>

#include "tests/faults/fault_layer.h"
#include "tests/faults/fault_run.h"

ScopedFaultLayer::ScopedFaultLayer(const FaultPlan& plan) : root_(plan.root) {
  for (const std::string& setting : FaultEnvironment(plan, dir_ / "report")) {
    const std::size_t equals = setting.find('=');
    const std::string name = setting.substr(0, equals);
    if (name != "LD_PRELOAD") setenv(name.c_str(), setting.substr(equals + 1).c_str(), 1);
  }
  ArmFaultLayer();
}

ScopedFaultLayer::~ScopedFaultLayer() {
  if (armed_) DisarmFaultLayer();
}

FaultReport ScopedFaultLayer::Report() {
  DisarmFaultLayer();
  armed_ = false;
  return ReadFaultReport(dir_ / "report", root_);
}
