#include "tests/support/held_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <system_error>

HeldFile::HeldFile(const std::string& path) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  file_ = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  // The system tells the holder of a lease by a signal that somebody waits.
  signal(SIGIO, SIG_IGN);
  if (file_ < 0 || fcntl(file_, F_SETLEASE, F_WRLCK) != 0) {
    throw std::system_error(errno, std::generic_category(), path);
  }
}

void HeldFile::Release() {
  if (file_ >= 0) close(file_);
  file_ = -1;
}
