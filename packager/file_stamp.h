// What tells that a file is still the one that it was, without reading it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <system_error>

// The file's identity, its length and the times of its last change. The system sets `changed`, in
// nanoseconds, whenever content or attributes change, and gives nobody a way to set it back.
struct FileStamp {
  std::uint64_t device;
  std::uint64_t inode;
  std::int64_t size;
  std::int64_t modified;
  std::int64_t changed;

  bool operator==(const FileStamp&) const = default;
};

// Of the file itself, not of what a link leads to. Zeros when `error` is set.
FileStamp StampOf(const std::filesystem::path& path, std::error_code* error);
