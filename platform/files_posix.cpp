#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <tuple>

#include "platform/files.h"
#include "platform/text.h"

static_assert(kLibraryPathSize == PATH_MAX);

struct DirectoryHandle {
  DIR* listing;
  char path[kLibraryPathSize];  // as this system reads it
};

namespace {

// A path as this system reads it, or none, with errno set, where it doesn't fit.
class SystemPath {
 public:
  // Of a path that was given. A backslash separates, so what has one in its name can't be given.
  explicit SystemPath(const char* path) : fits_(LibraryPath(path, text_, sizeof text_)) {
    if (!fits_) errno = ENAMETOOLONG;
  }
  // Of a name that was listed.
  SystemPath(const DirectoryHandle* directory, const char* name)
      : fits_(FormatBounded(text_, sizeof text_, "%s/%s", directory->path, name) < sizeof text_) {
    if (!fits_) errno = ENAMETOOLONG;
  }
  const char* get() const { return fits_ ? text_ : nullptr; }

 private:
  char text_[kLibraryPathSize];
  bool fits_;
};

constexpr mode_t kPermissions = 07777;
constexpr mode_t kPlainPermissions = 0777;

bool Succeeds(int result) {
  return result == 0;
}

bool Look(const SystemPath& path, PathStatus* status) {
  struct stat found;
  if (path.get() == nullptr || stat(path.get(), &found) != 0) return false;
  status->size = static_cast<std::uint64_t>(found.st_size);
  status->is_directory = S_ISDIR(found.st_mode);
  return true;
}

DirectoryHandle* OpenListing(const SystemPath& path) {
  if (path.get() == nullptr) return nullptr;
  DIR* listing = opendir(path.get());
  if (listing == nullptr) return nullptr;
  auto* directory = new DirectoryHandle{listing, {}};
  FormatBounded(directory->path, sizeof directory->path, "%s", path.get());  // of the same size
  return directory;
}

bool Unlink(const SystemPath& path) {
  return path.get() != nullptr && Succeeds(unlink(path.get()));
}

// A pipe without its other end would hold up the program for ever, and a device may act on being
// opened, so the look comes first. What can't be looked at is left to the opening to judge.
bool MayBeOpened(const char* system_path) {
  struct stat found;
  return stat(system_path, &found) != 0 || S_ISREG(found.st_mode);
}

FileAccess AccessIn(const struct stat& found) {
  return {true,         found.st_dev, found.st_ino, found.st_mode & kPermissions,
          found.st_uid, found.st_gid};
}

bool IsSameFile(const FileAccess& first, const FileAccess& second) {
  return first.device == second.device && first.number == second.number;
}

bool RemoveDirectory(const SystemPath& path) {
  return path.get() != nullptr && Succeeds(rmdir(path.get()));
}

}  // namespace

bool CanBeGiven(const char* path) {
  return std::strchr(path, '\\') == nullptr;
}

bool LibraryPath(const char* path, char* buffer, std::size_t size) {
  const std::size_t length = std::strlen(path);
  if (length >= size) return false;
  for (std::size_t i = 0; i <= length; ++i) buffer[i] = path[i] == '\\' ? '/' : path[i];
  return true;
}

std::FILE* OpenFile(const char* path, const char* mode) {
  const SystemPath system_path(path);
  if (system_path.get() == nullptr) return nullptr;
  if (!MayBeOpened(system_path.get())) {
    errno = EACCES;  // one reason, whatever stands there and whatever the mode
    return nullptr;
  }
  return std::fopen(system_path.get(), mode);
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
  return OpenListing(SystemPath(path));
}

const char* NextDirectoryEntry(DirectoryHandle* directory) {
  const dirent* entry = readdir(directory->listing);
  return entry == nullptr ? nullptr : entry->d_name;
}

void CloseDirectory(DirectoryHandle* directory) {
  closedir(directory->listing);
  delete directory;
}

bool StatListed(const DirectoryHandle* directory, const char* name, PathStatus* status) {
  return Look(SystemPath(directory, name), status);
}

DirectoryHandle* OpenListedDirectory(const DirectoryHandle* directory, const char* name) {
  return OpenListing(SystemPath(directory, name));
}

bool RemoveListedFile(const DirectoryHandle* directory, const char* name) {
  return Unlink(SystemPath(directory, name));
}

bool RemoveListedDirectory(const DirectoryHandle* directory, const char* name) {
  return RemoveDirectory(SystemPath(directory, name));
}

bool MakeDirectory(const char* path) {
  const SystemPath system_path(path);
  return system_path.get() != nullptr && Succeeds(mkdir(system_path.get(), 0777));
}

bool RemoveFile(const char* path) {
  return Unlink(SystemPath(path));
}

bool RemoveEmptyDirectory(const char* path) {
  return RemoveDirectory(SystemPath(path));
}

bool StatPath(const char* path, PathStatus* status) {
  return Look(SystemPath(path), status);
}

FileAccess AccessOf(const char* path) {
  const SystemPath system_path(path);
  struct stat found;
  if (system_path.get() == nullptr || stat(system_path.get(), &found) != 0) return {};
  return AccessIn(found);
}

void RestoreAccess(const char* path, const FileAccess& access) {
  const FileAccess now = AccessOf(path);
  if (!access.known || !now.known || IsSameFile(now, access)) return;
  const mode_t wanted = access.permissions & kPlainPermissions;
  if (now.permissions == wanted && now.owner == access.owner && now.group == access.group) return;

  const SystemPath system_path(path);
  const int file = open(system_path.get(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return;
  struct stat found;
  if (fstat(file, &found) == 0 && S_ISREG(found.st_mode) && found.st_nlink == 1 &&
      IsSameFile(AccessIn(found), now)) {
    // Each by itself: an ordinary user may give a file to a group of theirs, but not to somebody.
    std::ignore = fchown(file, static_cast<uid_t>(-1), access.group);
    std::ignore = fchown(file, access.owner, static_cast<gid_t>(-1));
    std::ignore = fchmod(file, wanted);
  }
  close(file);
}
