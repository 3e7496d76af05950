#include "tests/support/small_disk.h"

#include <sched.h>
#include <sys/mount.h>

ScopedSmallDisk::ScopedSmallDisk(const std::string& path, std::size_t bytes)
    : path_(path),
      mounted_(unshare(CLONE_NEWNS) == 0 &&
               mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount("none", path.c_str(), "tmpfs", 0,
                     ("mode=777,size=" + std::to_string(bytes)).c_str()) == 0) {}

ScopedSmallDisk::~ScopedSmallDisk() {
  if (mounted_) umount2(path_.c_str(), MNT_DETACH);
}

bool ScopedSmallDisk::SetReadOnly(bool read_only) const {
  unsigned long flags = MS_REMOUNT;
  if (read_only) flags |= MS_RDONLY;
  return mount("none", path_.c_str(), "tmpfs", flags, nullptr) == 0;
}
