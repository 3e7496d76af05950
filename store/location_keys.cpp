#include "store/location_keys.h"

#include <cstring>

#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "store/location_value.h"
#include "store/payload_format.h"

namespace {

int FindLocationsFile() {
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    const char* name = Store.names[i];
    // The walk is taken for each file of an install and passes thousands of names, so most go by
    // without a call. The release isn't empty here.
    if (name[0] != HostVersion[0]) continue;
    if (InSelectedRelease(name) &&
        std::strcmp(name + HostVersionLength, kLocationsFileEnding) == 0) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

}  // namespace

const char* LookupLocation(const char* key) {
  static char value[kLocationValueSize];
  if (HostVersionLength == 0 || key == nullptr || key[0] == '\0') return nullptr;
  const int index = FindLocationsFile();
  if (index < 0) return nullptr;
  return FindLocationValue(Store.data[index], Store.sizes[index], key, value) ? value : nullptr;
}
