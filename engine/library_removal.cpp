#include "engine/library_removal.h"

#include <cstring>

#include "platform/files.h"
#include "platform/text.h"
#include "store/location_keys.h"
#include "store/payload_format.h"

namespace {

constexpr std::size_t kPathSize = 260;
constexpr std::size_t kLongPathSize = 520;

// The last names a subfolder only: an SD folder stays, with its other content.
constexpr const char* kOldLibraries[] = {"Adafruit_GFX", "Adafruit_CC3000", "Adafruit_RA8875",
                                         "openGLCD",     "ST7565",          "SD/utility"};

bool IsSelfOrParent(const char* name) {
  return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

void RemovePath(const char* path) {
  PathStatus status;
  if (StatPath(path, &status) && status.is_directory) {
    RemoveTree(path);
    RemoveEmptyDirectory(path);
  } else {
    RemoveFile(path);  // also what can't be looked at
  }
}

}  // namespace

void RemoveOldLibraries(const char* dir) {
  if (dir == nullptr) return;
  char base[kPathSize];
  FormatBounded(base, sizeof base, "%s", dir);
  const std::size_t length = std::strlen(base);
  if (length == 0) return;
  if (base[length - 1] == '/' || base[length - 1] == '\\') base[length - 1] = '\0';

  for (const char* library : kOldLibraries) {
    const char* libraries = LookupLocation(kLibraryKey);
    if (libraries == nullptr) return;
    char path[kLongPathSize];
    FormatBounded(path, sizeof path, "%s/%s%s", base, libraries, library);
    if (RemoveTree(path) == 1) RemoveEmptyDirectory(path);
  }
}

int RemoveTree(const char* path) {
  // A path without room for one character of an entry's name would be cut to the folder itself or
  // to one above it. Windows can't open such a folder, so it is not opened anywhere.
  const std::size_t length = std::strlen(path);
  if (length + 2 >= kPathSize) return 0;
  DirectoryHandle* directory = OpenDirectory(path);
  if (directory == nullptr) return 0;
  while (const char* name = NextDirectoryEntry(directory)) {
    if (IsSelfOrParent(name)) continue;
    char entry[kPathSize];
    FormatBounded(entry, sizeof entry, "%s/%s", path, name);
    RemovePath(entry);
  }
  CloseDirectory(directory);
  return 1;
}
