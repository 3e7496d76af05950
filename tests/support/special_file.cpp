#include "tests/support/special_file.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

void Check(bool done, const std::string& path) {
  if (!done) throw std::runtime_error("can't make " + path);
}

void MakePipe(const std::string& path) {
  fs::create_directories(fs::path(path).parent_path());
  Check(mkfifo(path.c_str(), 0666) == 0, path);
}

// An address has room for 107 characters, so the socket is made beside its folder and moved there.
void MakeSocket(const std::string& path) {
  fs::create_directories(fs::path(path).parent_path());
  const std::string place = fs::temp_directory_path() / ("socket-" + std::to_string(getpid()));
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  Check(place.size() < sizeof address.sun_path, place);
  std::memcpy(address.sun_path, place.c_str(), place.size());
  const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
  Check(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0, place);
  close(descriptor);
  fs::rename(place, path);
}

void LinkDevice(const std::string& path) {
  fs::create_directories(fs::path(path).parent_path());
  fs::create_symlink("/dev/zero", path);
}

}  // namespace

const SpecialFile kSpecialFiles[3] = {
    {"pipe", MakePipe}, {"socket", MakeSocket}, {"device", LinkDevice}};

bool IsSpecialFile(const std::string& path) {
  return fs::is_other(fs::status(path));
}
