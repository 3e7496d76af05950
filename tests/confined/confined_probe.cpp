// Does the one thing that its argument names, for the tests of the confinement itself. Exit status
// 0 when nothing stopped it.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

namespace {

void Exec(const char* program) {
  execl(program, program, static_cast<char*>(nullptr));
}

void ConnectToUnixSocket(const char* path) {
  const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
  connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

void Write(const char* path) {
  std::FILE* file = std::fopen(path, "w");
  if (file != nullptr) std::fclose(file);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string deed = argc > 1 ? argv[1] : "";
  if (deed == "fork") {
    if (fork() == 0) _exit(0);
  } else if (deed == "thread") {
    std::thread([] {}).join();
  } else if (deed == "system") {
    return std::system("true");
  } else if (deed == "exec") {
    Exec("/bin/true");
  } else if (deed == "execveat") {
    syscall(SYS_execveat, 200, "", argv, environ, 0x1000);
  } else if (deed == "internet") {
    socket(AF_INET, SOCK_STREAM, 0);
  } else if (deed == "unix") {
    ConnectToUnixSocket("/nowhere/socket");
  } else if (deed == "write" && argc > 2) {
    Write(argv[2]);
  }
  return 0;
}
