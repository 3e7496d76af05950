// What the program changes on the disk, seen at its calls: this executable's own definitions of the
// system's functions stand before the library's, for the program and for the archive library alike.
#pragma once

#include <string>
#include <vector>

// Lists every path that is opened for writing, made, removed, renamed or given another mode from
// here to the end of the object, with its folder resolved to where it really is. One at a time.
class ScopedWatch {
 public:
  ScopedWatch();
  ~ScopedWatch();
  ScopedWatch(const ScopedWatch&) = delete;
  ScopedWatch& operator=(const ScopedWatch&) = delete;

  const std::vector<std::string>& changed() const { return changed_; }

 private:
  std::vector<std::string> changed_;
};
