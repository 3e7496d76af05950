#include "platform/files.h"

// dirent.h is mingw-w64's, over the system's FindFirstFile.
#include <direct.h>
#include <dirent.h>
#include <windows.h>

#include <cerrno>
#include <cstring>

#include "platform/text.h"
#include "platform/windows_text.h"

namespace {

// The path for the system's UTF-16 calls, which take both separators, and several in a row.
class SystemPath {
 public:
  explicit SystemPath(const char* path) : converted_(WideFromUtf8(path, text_, kWidePathSize)) {
    if (!converted_) errno = ENOENT;
  }
  const wchar_t* get() const { return converted_ ? text_ : nullptr; }

 private:
  wchar_t text_[kWidePathSize];
  bool converted_;
};

// The modes are a few ASCII letters.
bool WideMode(const char* mode, wchar_t* wide, std::size_t size) {
  return WideFromUtf8(mode, wide, size);
}

constexpr std::size_t kLongestMode = 16;
constexpr std::size_t kBytesOfAUnit = 3;  // of UTF-8, for one unit of UTF-16, at most

}  // namespace

struct DirectoryHandle {
  _WDIR* listing;
  char path[kLibraryPathSize];
  char name[(MAX_PATH + 1) * kBytesOfAUnit];
};

namespace {

class ListedPath {
 public:
  ListedPath(const DirectoryHandle* directory, const char* name)
      : fits_(FormatBounded(text_, sizeof text_, "%s/%s", directory->path, name) < sizeof text_) {
    if (!fits_) errno = ENOENT;
  }
  const char* get() const { return fits_ ? text_ : nullptr; }

 private:
  char text_[kLibraryPathSize];
  bool fits_;
};

}  // namespace

bool CanBeGiven(const char*) {
  return true;
}

bool LibraryPath(const char* path, char* buffer, std::size_t size) {
  const std::size_t length = std::strlen(path);
  if (length >= size) return false;
  std::memcpy(buffer, path, length + 1);
  return true;
}

// The runtime refuses folders by itself, with EACCES.
std::FILE* OpenFile(const char* path, const char* mode) {
  const SystemPath system_path(path);
  wchar_t wide_mode[kLongestMode];
  if (system_path.get() == nullptr || !WideMode(mode, wide_mode, kLongestMode)) return nullptr;
  return _wfopen(system_path.get(), wide_mode);
}

// Answers what opendir answers, which asks the system this before anything else, without opendir's
// allocation. An install asks for each level of each path.
bool DirectoryExists(const char* path) {
  const SystemPath system_path(path);
  if (system_path.get() == nullptr) return false;
  const DWORD attributes = GetFileAttributesW(system_path.get());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

DirectoryHandle* OpenDirectory(const char* path) {
  const SystemPath system_path(path);
  if (system_path.get() == nullptr) return nullptr;
  _WDIR* listing = _wopendir(system_path.get());
  if (listing == nullptr) return nullptr;
  auto* directory = new DirectoryHandle{listing, {}, {}};
  // Whatever fits as UTF-16 has room here.
  FormatBounded(directory->path, sizeof directory->path, "%s", path);
  return directory;
}

const char* NextDirectoryEntry(DirectoryHandle* directory) {
  // The handle's buffer holds every name that the system can give.
  const _wdirent* entry = _wreaddir(directory->listing);
  if (entry == nullptr) return nullptr;
  return Utf8FromWide(entry->d_name, directory->name, sizeof directory->name) ? directory->name
                                                                              : nullptr;
}

void CloseDirectory(DirectoryHandle* directory) {
  _wclosedir(directory->listing);
  delete directory;
}

// A name that the system lists holds no separator of either kind, so the path is like any other.
bool StatListed(const DirectoryHandle* directory, const char* name, PathStatus* status) {
  const ListedPath path(directory, name);
  return path.get() != nullptr && StatPath(path.get(), status);
}

DirectoryHandle* OpenListedDirectory(const DirectoryHandle* directory, const char* name) {
  const ListedPath path(directory, name);
  return path.get() == nullptr ? nullptr : OpenDirectory(path.get());
}

bool RemoveListedFile(const DirectoryHandle* directory, const char* name) {
  const ListedPath path(directory, name);
  return path.get() != nullptr && RemoveFile(path.get());
}

bool RemoveListedDirectory(const DirectoryHandle* directory, const char* name) {
  const ListedPath path(directory, name);
  return path.get() != nullptr && RemoveEmptyDirectory(path.get());
}

bool MakeDirectory(const char* path) {
  const SystemPath system_path(path);
  return system_path.get() != nullptr && _wmkdir(system_path.get()) == 0;
}

bool RemoveFile(const char* path) {
  const SystemPath system_path(path);
  return system_path.get() != nullptr && _wunlink(system_path.get()) == 0;
}

bool RemoveEmptyDirectory(const char* path) {
  const SystemPath system_path(path);
  return system_path.get() != nullptr && _wrmdir(system_path.get()) == 0;
}

// The runtime's own stat looks at a link instead of its target, and its 64-bit form refuses a
// trailing separator. Opened for no access at all, so that a file which another program keeps to
// itself can be looked at.
bool StatPath(const char* path, PathStatus* status) {
  const SystemPath system_path(path);
  if (system_path.get() == nullptr) return false;
  HANDLE handle =
      CreateFileW(system_path.get(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    errno = ENOENT;
    return false;
  }
  BY_HANDLE_FILE_INFORMATION found;
  const BOOL answered = GetFileInformationByHandle(handle, &found);
  CloseHandle(handle);
  if (answered == FALSE) {
    errno = EACCES;
    return false;
  }
  status->size = (static_cast<std::uint64_t>(found.nFileSizeHigh) << 32) | found.nFileSizeLow;
  status->is_directory = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return true;
}

FileAccess AccessOf(const char*) {
  return {};
}

void RestoreAccess(const char*, const FileAccess&) {}
