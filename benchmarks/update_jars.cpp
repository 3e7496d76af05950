// The jar update alone: installs a release of a payload that holds little beside classes.
//   update_jars PACKED RELEASE FOLDER/
#include <cstdio>

#include "benchmarks/packed_store.h"
#include "engine/file_disposition.h"
#include "engine/install_error.h"
#include "engine/writers.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  if (!LoadPackedStore(argv[1])) return 1;
  SelectRelease(argv[2]);
  bool good = true;
  for (std::uint32_t i = 0; good && i < Store.entry_count; ++i) {
    good = DisposeEntry(argv[3], i) >= 0;
  }
  if (good && CloseOpenArchive()) return 0;
  std::fprintf(stderr, "update_jars: %s\n", InstallErrorText());
  return 1;
}
