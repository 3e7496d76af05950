#include "tests/support/small_disk.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace {

// What is mounted from here on is seen by this process and its children alone.
bool KeepMountsToOurselves() {
  return unshare(CLONE_NEWNS) == 0 &&
         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// The least that mkfs.xfs takes; a file of holes.
constexpr const char* kSharingDiskSize = "300M";

}  // namespace

ScopedSmallDisk::ScopedSmallDisk(const std::string& path, std::size_t bytes)
    : path_(path),
      mounted_(KeepMountsToOurselves() &&
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

ScopedSharingDisk::ScopedSharingDisk(const std::string& folder)
    : path_(folder + "/disk"), mounted_(false) {
  std::filesystem::create_directory(path_);
  if (geteuid() != 0 || !KeepMountsToOurselves()) return;
  const std::string image = "'" + folder + "/image'";
  const std::string command = std::string("truncate -s ") + kSharingDiskSize + " " + image +
                              " && mkfs.xfs -q -m reflink=1 " + image +
                              " && mount -t xfs -o loop " + image + " '" + path_ + "'";
  mounted_ = std::system(("{ " + command + "; } >/dev/null 2>&1").c_str()) == 0;
}

// The loop device goes with its mount.
ScopedSharingDisk::~ScopedSharingDisk() {
  if (mounted_) umount2(path_.c_str(), 0);
}
