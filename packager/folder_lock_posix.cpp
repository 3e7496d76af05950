#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "packager/folder_lock.h"
#include "packager/refusal.h"

FolderLock::FolderLock(const std::filesystem::path& folder)
    : descriptor_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (descriptor_ < 0) throw Refusal(folder.string(), WithReason("can't be opened", errno));
  if (flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    close(descriptor_);
    throw Refusal(folder.string(), "another run is packing into this folder");
  }
}

FolderLock::~FolderLock() {
  close(descriptor_);
}
