#include "tests/windows/planted_libraries.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

// Not on Windows' list of libraries that come from its own folder alone. (version.dll isn't either,
// but Wine's own USER32 imports it before any code of the program runs.)
const char* const kNames[] = {"comctl32.dll", "newdev.dll",   "cfgmgr32.dll", "winspool.drv",
                              "msimg32.dll",  "dwmapi.dll",   "uxtheme.dll",  "profapi.dll",
                              "propsys.dll",  "netapi32.dll", "winmm.dll",    "cryptbase.dll",
                              "devobj.dll",   "secur32.dll"};

}  // namespace

void PlantLibraries(const std::string& folder) {
  for (const char* name : kNames) fs::copy(RECORDING_LIBRARY, folder + "/" + name);
}

std::string PreferPlantedLibraries() {
  std::string names;
  for (const char* name : kNames) {
    names += (names.empty() ? "" : ",") + fs::path(name).stem().string();
  }
  return names + "=n,b";
}

std::string LoadedPlantedLibraries(const std::string& folder) {
  std::string loaded;
  for (const char* name : kNames) {
    if (fs::exists(folder + "/" + name + ".loaded")) loaded += std::string(name) + " ";
  }
  return loaded;
}
