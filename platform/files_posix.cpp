#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>

#include "platform/files.h"

static_assert(kLibraryPathSize == PATH_MAX);

namespace {

// The path as this system reads it. A backslash always separates, so a file with one in its name
// can't be reached; on Windows no such name exists.
class SystemPath {
 public:
  explicit SystemPath(const char* path) : fits_(LibraryPath(path, text_, sizeof text_)) {
    if (!fits_) errno = ENAMETOOLONG;
  }
  const char* get() const { return fits_ ? text_ : nullptr; }

 private:
  char text_[kLibraryPathSize];
  bool fits_;
};

bool Succeeds(int result) {
  return result == 0;
}

}  // namespace

struct DirectoryHandle {};  // only ever a DIR behind a cast

bool LibraryPath(const char* path, char* buffer, std::size_t size) {
  const std::size_t length = std::strlen(path);
  if (length >= size) return false;
  for (std::size_t i = 0; i <= length; ++i) buffer[i] = path[i] == '\\' ? '/' : path[i];
  return true;
}

std::FILE* OpenFile(const char* path, const char* mode) {
  const SystemPath system_path(path);
  if (system_path.get() == nullptr) return nullptr;
  std::FILE* file = std::fopen(system_path.get(), mode);
  if (file == nullptr) {
    if (errno == EISDIR) errno = EACCES;  // one reason for a folder, whatever the mode
    return nullptr;
  }
  struct stat status;
  if (fstat(fileno(file), &status) != 0 || !S_ISDIR(status.st_mode)) return file;
  // Mode "r" opens a folder here, and only the first read would fail; Windows refuses it at once.
  std::fclose(file);
  errno = EACCES;
  return nullptr;
}

bool DirectoryExists(const char* path) {
  const SystemPath system_path(path);
  if (system_path.get() == nullptr) return false;
  // Answers what opendir answers, which opens with these flags, without its allocation.
  const int descriptor = open(system_path.get(), O_RDONLY | O_NONBLOCK | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return false;
  close(descriptor);
  return true;
}

DirectoryHandle* OpenDirectory(const char* path) {
  const SystemPath system_path(path);
  if (system_path.get() == nullptr) return nullptr;
  return reinterpret_cast<DirectoryHandle*>(opendir(system_path.get()));
}

const char* NextDirectoryEntry(DirectoryHandle* directory) {
  const dirent* entry = readdir(reinterpret_cast<DIR*>(directory));
  return entry == nullptr ? nullptr : entry->d_name;
}

void CloseDirectory(DirectoryHandle* directory) {
  closedir(reinterpret_cast<DIR*>(directory));
}

bool MakeDirectory(const char* path) {
  const SystemPath system_path(path);
  return system_path.get() != nullptr && Succeeds(mkdir(system_path.get(), 0777));
}

bool RemoveFile(const char* path) {
  const SystemPath system_path(path);
  return system_path.get() != nullptr && Succeeds(unlink(system_path.get()));
}

bool RemoveEmptyDirectory(const char* path) {
  const SystemPath system_path(path);
  return system_path.get() != nullptr && Succeeds(rmdir(system_path.get()));
}

bool StatPath(const char* path, PathStatus* status) {
  const SystemPath system_path(path);
  struct stat found;
  if (system_path.get() == nullptr || stat(system_path.get(), &found) != 0) return false;
  status->size = static_cast<std::uint64_t>(found.st_size);
  status->is_directory = S_ISDIR(found.st_mode);
  return true;
}
