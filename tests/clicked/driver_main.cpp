// The wizard on a simulated machine. DRIVER_SCENARIO names the machine (driver/machine_scenarios.h)
// and DRIVER_FOLDER its temporary folder, with the separator at its end.
#include <cstdlib>
#include <string>

#include "store/embedded_file_store.h"
#include "tests/driver/machine_scenarios.h"
#include "wizard/program_start.h"

namespace {

std::string ContentOf(const char* name) {
  const int index = FindEntryByName(name);
  if (index < 0) return "";
  const PayloadEntry entry = EntryAt(static_cast<std::uint32_t>(index));
  return {reinterpret_cast<const char*>(entry.data), entry.size};
}

}  // namespace

int main(int argc, char** argv) {
  const char* scenario = std::getenv("DRIVER_SCENARIO");
  const char* folder = std::getenv("DRIVER_FOLDER");
  // The machine is told of the payload's driver before the program starts and expands it again.
  if (scenario == nullptr || folder == nullptr || !LoadEmbeddedFiles()) return 2;
  if (!SetUpScenario(scenario, folder, ContentOf("cdcacm.inf"))) return 2;
  return StartProgram(argc, argv);
}
