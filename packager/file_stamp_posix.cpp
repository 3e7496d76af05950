#include <sys/stat.h>

#include <cerrno>

#include "packager/file_stamp.h"

namespace {

std::int64_t Nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1000000000 + time.tv_nsec;
}

}  // namespace

FileStamp StampOf(const std::filesystem::path& path, std::error_code* error) {
  struct stat status = {};
  if (lstat(path.c_str(), &status) != 0) {
    error->assign(errno, std::generic_category());
    return {};
  }
  error->clear();
  return {status.st_dev, status.st_ino, status.st_size, Nanoseconds(status.st_mtim),
          Nanoseconds(status.st_ctim)};
}
