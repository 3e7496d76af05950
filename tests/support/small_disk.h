// File systems of their own: one that fills up, one that shares blocks between files.
#pragma once

#include <cstddef>
#include <string>

// Mounts a file system of its own of `bytes` on the existing folder `path`, for the life of the
// object. It is seen by this process and its children alone, so nothing of it outlives them.
// Mounting needs root's rights: where the machine doesn't let the test have it, ok() is false.
class ScopedSmallDisk {
 public:
  ScopedSmallDisk(const std::string& path, std::size_t bytes);
  ~ScopedSmallDisk();
  ScopedSmallDisk(const ScopedSmallDisk&) = delete;
  ScopedSmallDisk& operator=(const ScopedSmallDisk&) = delete;

  bool ok() const { return mounted_; }

  // Takes the right to change anything on it from everybody, root among them, or gives it back.
  // False when the system refuses, as while a file is open for writing.
  bool SetReadOnly(bool read_only) const;

 private:
  std::string path_;
  bool mounted_;
};

// The same of a file system on which two files can share blocks (XFS), made in `folder`, a folder
// of another file system, and mounted on its new subfolder "disk". Takes 0.2 s.
class ScopedSharingDisk {
 public:
  explicit ScopedSharingDisk(const std::string& folder);
  ~ScopedSharingDisk();
  ScopedSharingDisk(const ScopedSharingDisk&) = delete;
  ScopedSharingDisk& operator=(const ScopedSharingDisk&) = delete;

  bool ok() const { return mounted_; }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  bool mounted_;
};
