// One run at a time in a folder: a lock that lasts as long as the object, and that the system takes
// away from a process that ends in whatever way. It leaves no file behind.
#pragma once

#include <filesystem>

class FolderLock {
 public:
  // Throws Refusal when the folder can't be opened or another run holds its lock. On a file system
  // that knows no locks the lock is had and keeps nobody away.
  explicit FolderLock(const std::filesystem::path& folder);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  int descriptor_;
};
