#include "engine/library_removal.h"

#include <cstring>

#include "platform/files.h"
#include "platform/text.h"
#include "store/location_keys.h"
#include "store/payload_format.h"

namespace {

constexpr std::size_t kPathSize = 260;
constexpr std::size_t kLongPathSize = 520;

bool IsSelfOrParent(const char* name) {
  return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

// A path without room for one character of an entry's name would be cut to the folder itself or to
// one above it. Windows can't open such a folder, so it is not opened anywhere.
bool HasRoomForEntries(std::size_t length) {
  return length + 2 < kPathSize;
}

void RemoveSubfolder(const DirectoryHandle* parent, const char* name, std::size_t length);

// Removes all that the opened folder holds, and closes it. `length` is that of the folder's path.
// An entry whose path would pass 259 characters is taken by the beginning of its name that fits.
void RemoveContents(DirectoryHandle* directory, std::size_t length) {
  while (const char* listed = NextDirectoryEntry(directory)) {
    if (IsSelfOrParent(listed)) continue;
    char name[kPathSize];
    FormatBounded(name, kPathSize - 1 - length, "%s", listed);
    PathStatus status;
    if (StatListed(directory, name, &status) && status.is_directory) {
      RemoveSubfolder(directory, name, length + 1 + std::strlen(name));
    } else {
      RemoveListedFile(directory, name);  // also what can't be looked at
    }
  }
  CloseDirectory(directory);
}

void RemoveSubfolder(const DirectoryHandle* parent, const char* name, std::size_t length) {
  DirectoryHandle* directory =
      HasRoomForEntries(length) ? OpenListedDirectory(parent, name) : nullptr;
  if (directory != nullptr) RemoveContents(directory, length);
  RemoveListedDirectory(parent, name);
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
  const std::size_t length = std::strlen(path);
  DirectoryHandle* directory = HasRoomForEntries(length) ? OpenDirectory(path) : nullptr;
  if (directory == nullptr) return 0;
  RemoveContents(directory, length);
  return 1;
}
