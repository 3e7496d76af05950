#include "tests/windows/planted_libraries.h"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

// Not on Windows' list of libraries that come from its own folder alone. (Nor are version.dll and
// shcore.dll, but Wine's own SETUPAPI and SHELL32 import them before any code of the program runs.)
const std::vector<std::string> kLate = {
    "bcrypt.dll",  "cabinet.dll", "cfgmgr32.dll", "crypt32.dll", "cryptbase.dll", "cryptsp.dll",
    "devobj.dll",  "devrtl.dll",  "drvstore.dll", "dwmapi.dll",  "msimg32.dll",   "newdev.dll",
    "spfileq.dll", "spinf.dll",   "uxtheme.dll",  "wintrust.dll"};
const std::vector<std::string> kOthers = {"comctl32.dll", "netapi32.dll", "profapi.dll",
                                          "propsys.dll",  "secur32.dll",  "userenv.dll",
                                          "winmm.dll",    "winspool.drv"};

}  // namespace

const std::vector<std::string>& PlantedLibraries() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all = kLate;
    all.insert(all.end(), kOthers.begin(), kOthers.end());
    return all;
  }();
  return names;
}

bool IsLoadedLate(const std::string& name) {
  return std::find(kLate.begin(), kLate.end(), name) != kLate.end();
}

void PlantLibraries(const std::string& folder) {
  for (const std::string& name : PlantedLibraries()) {
    fs::copy(RECORDING_LIBRARY, folder + "/" + name);
  }
}

std::string PreferPlantedLibraries() {
  std::string names;
  for (const std::string& name : PlantedLibraries()) {
    names += (names.empty() ? "" : ",") + fs::path(name).stem().string();
  }
  return names + "=n,b";
}

std::string LoadedPlantedLibraries(const std::string& folder) {
  std::string loaded;
  for (const std::string& name : PlantedLibraries()) {
    if (fs::exists(folder + "/" + name + ".loaded")) loaded += name + " ";
  }
  return loaded;
}
