// A plain file that holds up whoever opens it, for as long as a test wants: the system lets an
// opener wait while another process holds a lease on the file (fcntl's F_SETLEASE). It waits at
// most for /proc/sys/fs/lease-break-time, 45 seconds by default.
#pragma once

#include <string>

class HeldFile {
 public:
  // Makes the file, empty, and the folders that it needs. Throws when that fails.
  explicit HeldFile(const std::string& path);
  ~HeldFile() { Release(); }
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

  // Lets who waits go on.
  void Release();

 private:
  int file_;
};
