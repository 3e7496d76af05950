#include "engine/command_line_install.h"

#include <cstdint>
#include <cstdio>

#include "engine/file_disposition.h"
#include "engine/install_error.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"

int RunCommandLineInstall() {
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    if (DisposeEntry(HostFolder, i) < 0) {
      std::fprintf(stderr, "Error: %s\n", InstallErrorText());
      return 1;
    }
  }
  return 0;
}
