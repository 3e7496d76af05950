#include "tests/driver/machine_scenarios.h"

#include <utility>
#include <vector>

#include "tests/driver/sample_infs.h"
#include "tests/driver/simulated_machine.h"

bool SetUpScenario(const std::string& name, const std::string& folder,
                   const std::string& driver_inf) {
  SimulatedMachine machine;
  machine.temporary_folder = folder;
  machine.inf_files = {{"ports.inf", ""}, {"usbser.inf", kOlderSystemInf}};
  machine.SetSearchOrder(0, DwordValue(1));
  machine.copy_deletes_source = false;
  machine.messages[kErrorAccessDenied] = "Access is denied.\r\n";

  const std::vector<std::pair<std::string, std::string>> installed = {{"oem3.inf", driver_inf}};
  if (name == "windows-10") {
    machine.inf_files = {{"usbser.inf", kSystemDriverInf}};
  } else if (name == "installed") {
    machine.inf_files = installed;
  } else if (name == "installed-no-rights") {
    machine.inf_files = installed;
    machine.administrator = false;
  } else if (name == "one-device") {
    machine.inf_files = installed;
    machine.devices = {Device(true, {kHardwareId})};
  } else if (name == "many-devices") {
    machine.inf_files = installed;
    machine.devices = {Device(true, {kHardwareId}), Device(false, {kHardwareId}),
                       Device(false, {"USB\\VID_1&PID_2"}, {kHardwareId}),
                       Device(false, {kHardwareId}), Device(false, {"other"})};
  } else if (name == "refused") {
    machine.Fail("CopyInfFile", kErrorAccessDenied);
  } else if (name == "no-rights") {
    machine.administrator = false;
  } else if (name != "install-due") {
    return false;
  }
  Machine = machine;
  return true;
}
