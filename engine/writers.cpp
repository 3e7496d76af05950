#include "engine/writers.h"

#include <zip.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "engine/install_error.h"
#include "platform/files.h"
#include "platform/text.h"
#include "store/embedded_file_store.h"

OpenArchiveState OpenArchive;

namespace {

constexpr std::size_t kPathSize = 260;
constexpr std::size_t kArchiveNameSize = 256;

// Ensures base + subfolder, then each level of `name` down to its last '/'.
int EnsureFolders(const char* base, const char* subfolder, const char* name) {
  char path[kPathSize];
  const std::size_t length = FormatBounded(path, sizeof path, "%s%s", base, subfolder);
  int result = EnsureDirectory(path, base);
  if (result < 0) return result;
  if (length > kPathSize - 1) {  // no room for a level, nor for the file
    SetInstallError("Could not create directory \"%s\"!", path);
    return -1;
  }
  const std::size_t room = kPathSize - 1 - length;
  for (const char* slash = std::strchr(name, '/'); slash != nullptr;
       slash = std::strchr(slash + 1, '/')) {
    const std::size_t count = std::min(room, static_cast<std::size_t>(slash - name) + 1);
    std::memcpy(path + length, name, count);
    path[length + count] = '\0';
    result = EnsureDirectory(path, base);
    if (result != 0) return result;
  }
  return 0;
}

// Writes the whole entry in one call. The stream is closed on every path.
int WriteAndClose(std::FILE* file, const PayloadEntry& entry, const char* subfolder,
                  const char* name) {
  if (std::fwrite(entry.data, 1, entry.size, file) < entry.size) {
    SetInstallError("Error while writing to file \"%s%s\".", subfolder, name);
    std::fclose(file);
    return -1;
  }
  if (std::fflush(file) != 0) {
    SetInstallError("Error after writing to file \"%s%s\".", subfolder, name);
    std::fclose(file);
    return -1;
  }
  if (std::fclose(file) != 0) {
    SetInstallError("Error closing file \"%s%s\".", subfolder, name);
    return -1;
  }
  return 1;
}

// Makes `path` the open archive, closing another one first.
bool SelectArchive(const char* path) {
  if (OpenArchive.handle != nullptr && std::strcmp(OpenArchive.path, path) == 0) return true;
  if (!CloseOpenArchive()) return false;
  char library_path[kLibraryPathSize];
  int error = 0;
  zip_t* handle = nullptr;
  if (LibraryPath(path, library_path, sizeof library_path)) {
    handle = zip_open(library_path, 0, &error);
  }
  if (handle == nullptr) {
    SetInstallError("Unable to open file \"%s\".", path);
    return false;
  }
  OpenArchive.handle = handle;
  FormatBounded(OpenArchive.path, sizeof OpenArchive.path, "%s", path);
  return true;
}

// Drops a source that no archive took over, and the archive with it.
void AbandonSource(zip_source_t* source) {
  zip_source_free(source);
  CloseOpenArchive();  // a failure of its own is overwritten by the caller's words
}

}  // namespace

int WriteEntryToFile(const char* base, const char* subfolder, const char* name,
                     std::uint32_t index) {
  // Every plain write commits an open archive first: the table keeps an archive's entries
  // together, so what follows them shows that the archive is complete.
  if (!CloseOpenArchive()) return -1;
  const int result = EnsureFolders(base, subfolder, name);
  if (result < 0) return result;

  char path[kPathSize];
  FormatBounded(path, sizeof path, "%s%s%s", base, subfolder, name);
  std::FILE* file = OpenFile(path, "wb");
  if (file == nullptr) {
    SetInstallError("Unable to write file \"%s%s\".", subfolder, name);
    return -1;
  }
  return WriteAndClose(file, EntryAt(index), subfolder, name);
}

int WriteEntryToArchive(const char* base, const char* object, std::uint32_t index,
                        const char* archive) {
  // `archive` usually lies in the shared buffer of LookupLocation, so it is secured first.
  char archive_name[kArchiveNameSize];
  FormatBounded(archive_name, sizeof archive_name, "%s", archive);
  char path[kPathSize];
  FormatBounded(path, sizeof path, "%s%s", base, archive_name);
  if (!SelectArchive(path)) return -1;

  zip_t* handle = OpenArchive.handle;
  const PayloadEntry entry = EntryAt(index);
  zip_source_t* source = zip_source_buffer(handle, entry.data, entry.size, 0);
  if (source == nullptr) {
    CloseOpenArchive();
    SetInstallError("Error decompression allocating buffer.");
    return -1;
  }
  const zip_int64_t position = zip_name_locate(handle, object, 0);
  if (position >= 0) {
    if (zip_replace(handle, static_cast<zip_uint64_t>(position), source) >= 0) return 1;
    AbandonSource(source);
    SetInstallError("Unable to write \"%s\", replace %s object \"%s\".", archive_name, "replacing",
                    object);
    return -1;
  }
  if (zip_add(handle, object, source) >= 0) return 1;
  AbandonSource(source);
  SetInstallError("Unable to write \"%s\", add %s object \"%s\".", archive_name, "adding", object);
  return -1;
}

bool CloseOpenArchive() {
  zip_t* handle = OpenArchive.handle;
  if (handle == nullptr) return true;
  // The library puts a file of its own in the archive's place. On file systems that share blocks it
  // is one that nobody else may read, and everywhere it belongs to the user who runs this.
  const FileAccess access = AccessOf(OpenArchive.path);
  const bool closed = zip_close(handle) >= 0;
  RestoreAccess(OpenArchive.path, access);
  if (closed) {
    OpenArchive.handle = nullptr;
    return true;
  }
  SetInstallError("Unable to write changes to \"%s\"", OpenArchive.path);
  // A failed close leaves the handle open: undone, it closes without touching the file.
  zip_unchange_all(handle);
  zip_close(handle);
  OpenArchive.handle = nullptr;
  return false;
}

int EnsureDirectory(const char* path, const char* base) {
  if (DirectoryExists(path)) return 0;
  if (!DirectoryExists(base)) {
    SetInstallError("Directory \"%s\" does not exist!", base);
    return -1;
  }
  return MakeDirectoryChain(path, base);
}

int MakeDirectoryChain(const char* path, const char* base) {
  const char* rest = AfterPrefix(path, base);
  if (rest == nullptr) {
    SetInstallError("Trying to create directory \"%s\", but not within \"%s\"", path, base);
    return -1;
  }
  for (const char* slash = std::strchr(rest, '/'); slash != nullptr;
       slash = std::strchr(slash + 1, '/')) {
    char level[kPathSize];
    const std::size_t count =
        std::min(static_cast<std::size_t>(slash - path) + 1, sizeof level - 1);
    std::memcpy(level, path, count);
    level[count] = '\0';
    if (DirectoryExists(level)) continue;
    if (!MakeDirectory(level)) {
      SetInstallError("Unable to create directory \"%s\".", level);
      return -1;
    }
    if (!DirectoryExists(level)) return -1;
  }
  if (DirectoryExists(path)) return 0;
  SetInstallError("Could not create directory \"%s\"!", path);
  return -1;
}
