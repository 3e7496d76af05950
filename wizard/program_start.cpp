#include "wizard/program_start.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "engine/command_line_install.h"
#include "platform/files.h"
#include "platform/text.h"
#include "recognition/identify_arduino.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "wizard/wizard_pages.h"

DirectoryHandle* NamedFolder;

namespace {

// Leaves room in HostFolder for the separator and the terminator.
constexpr std::size_t kLongestFolder = 258;

int InstallInto(const char* path) {
  const std::size_t length = std::strlen(path);
  if (length == 0) {
    std::fprintf(stderr, "no Arduino directory\n");
    return 1;
  }
  if (length > kLongestFolder) {
    std::fprintf(stderr, "Arduino directory name too long\n");
    return 1;
  }
  FormatBounded(BrowsedFolder, sizeof BrowsedFolder, "%s", path);
  FormatBounded(HostFolder, sizeof HostFolder, "%s", path);
  // This looks at the terminator, so a backslash is always added, also to a path that ends in one.
  // Settled behaviour: the test must not move to the last character.
  if (HostFolder[length] != '\\') {
    HostFolder[length] = '\\';
    HostFolder[length + 1] = '\0';
  }
  NamedFolder = OpenDirectory(HostFolder);
  if (NamedFolder == nullptr) {
    std::fprintf(stderr, "Unable to access directory: %s\n", HostFolder);
    return 1;
  }
  HostVersionNumber = IdentifyArduino(HostFolder);
  if (HostVersionNumber == 0) {
    std::fprintf(stderr, "Directory \"%s\" is not a supported Arduino\n", HostFolder);
    std::fprintf(stderr, " Arduino versions supported: %s\n", SupportedVersions());
    return 1;
  }
  return RunCommandLineInstall();
}

}  // namespace

int StartProgram(int argc, char** argv) {
  if (!LoadEmbeddedFiles()) std::exit(1);
  for (int i = 1; i < argc; ++i) {
    const char* path = AfterPrefix(argv[i], "--dir=");
    if (path != nullptr) return InstallInto(path);
  }
  return StartWizard(argc, argv);
}
