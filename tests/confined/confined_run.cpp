// Runs a program that may use its files and nothing else, and lists which files those are.
//
//     confined_run LOG silent|wizard PROGRAM [ARGUMENT...]
//
// A seccomp filter stops the program at every call that would start a process or a program, open a
// connection or reach another process: it is killed there, and LOG says at what. `wizard` lets it
// connect to sockets of this machine, as a program with a window must, and lists them. Calls that
// name a file go through and are listed. Each line of LOG is a word and a path:
//
//     read PATH        opened for reading
//     write PATH       opened for writing, or created
//     change PATH      made, removed, renamed or given other rights; two lines for a renaming
//     connect ADDRESS  "unix:" and the socket's path, an abstract one's behind "@"
//     forbidden CALL   the last line: what the program was killed for
//
// The exit status is the program's, 128 + the signal when one ended it, or 125 when it could not be
// run so.
#include <elf.h>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int kCouldNotRun = 125;
// The program is started through this descriptor, which closes as it starts: no second program can
// be.
constexpr unsigned kProgramDescriptor = 200;

enum class Kind { kForbidden, kConnect, kSocket, kOpen, kChange };

constexpr int kNone = -1;

// A call that is looked at, and which of its arguments are a folder's descriptor and a path.
struct Call {
  long number;
  const char* name;
  Kind kind;
  int folder = kNone;
  int path = kNone;
  int second_folder = kNone;
  int second_path = kNone;
};

constexpr Call kCalls[] = {
    {SYS_fork, "fork", Kind::kForbidden},
    {SYS_vfork, "vfork", Kind::kForbidden},
    {SYS_clone, "clone", Kind::kForbidden},
    {SYS_clone3, "clone3", Kind::kForbidden},
    {SYS_execve, "execve", Kind::kForbidden},
    {SYS_bind, "bind", Kind::kForbidden},
    {SYS_listen, "listen", Kind::kForbidden},
    {SYS_accept, "accept", Kind::kForbidden},
    {SYS_accept4, "accept4", Kind::kForbidden},
    {SYS_socketpair, "socketpair", Kind::kForbidden},
    {SYS_ptrace, "ptrace", Kind::kForbidden},
    {SYS_process_vm_readv, "process_vm_readv", Kind::kForbidden},
    {SYS_process_vm_writev, "process_vm_writev", Kind::kForbidden},
    {SYS_io_uring_setup, "io_uring_setup", Kind::kForbidden},
    {SYS_bpf, "bpf", Kind::kForbidden},
    {SYS_open_by_handle_at, "open_by_handle_at", Kind::kForbidden},
    {SYS_mount, "mount", Kind::kForbidden},
    {SYS_chroot, "chroot", Kind::kForbidden},
    {SYS_setuid, "setuid", Kind::kForbidden},
    {SYS_setresuid, "setresuid", Kind::kForbidden},
    {SYS_link, "link", Kind::kForbidden},
    {SYS_linkat, "linkat", Kind::kForbidden},
    {SYS_symlink, "symlink", Kind::kForbidden},
    {SYS_symlinkat, "symlinkat", Kind::kForbidden},
    {SYS_mknod, "mknod", Kind::kForbidden},
    {SYS_mknodat, "mknodat", Kind::kForbidden},
    {SYS_socket, "socket", Kind::kSocket},
    {SYS_connect, "connect", Kind::kConnect},
    {SYS_open, "open", Kind::kOpen, kNone, 0},
    {SYS_openat, "openat", Kind::kOpen, 0, 1},
    {SYS_openat2, "openat2", Kind::kForbidden},
    {SYS_creat, "creat", Kind::kChange, kNone, 0},
    {SYS_truncate, "truncate", Kind::kChange, kNone, 0},
    {SYS_mkdir, "mkdir", Kind::kChange, kNone, 0},
    {SYS_mkdirat, "mkdirat", Kind::kChange, 0, 1},
    {SYS_rmdir, "rmdir", Kind::kChange, kNone, 0},
    {SYS_unlink, "unlink", Kind::kChange, kNone, 0},
    {SYS_unlinkat, "unlinkat", Kind::kChange, 0, 1},
    {SYS_rename, "rename", Kind::kChange, kNone, 0, kNone, 1},
    {SYS_renameat, "renameat", Kind::kChange, 0, 1, 2, 3},
    {SYS_renameat2, "renameat2", Kind::kChange, 0, 1, 2, 3},
    {SYS_chmod, "chmod", Kind::kChange, kNone, 0},
    {SYS_fchmodat, "fchmodat", Kind::kChange, 0, 1},
    {SYS_chown, "chown", Kind::kChange, kNone, 0},
    {SYS_lchown, "lchown", Kind::kChange, kNone, 0},
    {SYS_fchownat, "fchownat", Kind::kChange, 0, 1},
};

sock_filter Load(std::size_t offset) {
  return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
}

sock_filter Return(std::uint32_t result) {
  return BPF_STMT(BPF_RET | BPF_K, result);
}

// Goes on with the next instruction when the loaded word is `value`, else passes over `count`.
sock_filter UnlessPass(std::uint32_t value, std::uint8_t count) {
  return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, count);
}

// Every call of the table stops for the tracer, which gets its index.
std::vector<sock_filter> MakeFilter() {
  const std::size_t first_argument = offsetof(seccomp_data, args);  // its low half
  std::vector<sock_filter> filter = {
      Load(offsetof(seccomp_data, arch)), UnlessPass(AUDIT_ARCH_X86_64, 1),
      BPF_JUMP(BPF_JMP | BPF_JA, 1, 0, 0), Return(SECCOMP_RET_KILL_PROCESS),
      Load(offsetof(seccomp_data, nr)),
      // The same calls by their numbers of the shorter pointers.
      BPF_JUMP(BPF_JMP | BPF_JGE | BPF_K, 0x40000000, 0, 1), Return(SECCOMP_RET_KILL_PROCESS),
      UnlessPass(SYS_execveat, 4), Load(first_argument), UnlessPass(kProgramDescriptor, 1),
      Return(SECCOMP_RET_ALLOW), Return(SECCOMP_RET_KILL_PROCESS)};
  for (std::size_t i = 0; i < std::size(kCalls); ++i) {
    filter.push_back(UnlessPass(static_cast<std::uint32_t>(kCalls[i].number), 1));
    filter.push_back(Return(SECCOMP_RET_TRACE | static_cast<std::uint32_t>(i)));
  }
  filter.push_back(Return(SECCOMP_RET_ALLOW));
  return filter;
}

[[noreturn]] void RunProgram(char** arguments) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int file = open(arguments[0], O_PATH | O_CLOEXEC);
  if (file < 0 || dup3(file, kProgramDescriptor, O_CLOEXEC) < 0) _exit(kCouldNotRun);
  close(file);
  std::vector<sock_filter> filter = MakeFilter();
  const sock_fprog program = {static_cast<unsigned short>(filter.size()), filter.data()};
  if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(kCouldNotRun);
  raise(SIGSTOP);
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    _exit(kCouldNotRun);
  }
  syscall(SYS_execveat, kProgramDescriptor, "", arguments, environ, AT_EMPTY_PATH);
  _exit(kCouldNotRun);
}

// Bytes of the program's memory, as many of `size` as there are.
std::string Memory(pid_t process, std::uint64_t address, std::size_t size) {
  std::string bytes(size, '\0');
  std::size_t count = 0;
  while (count < size) {
    // Page by page: what follows may not be there.
    const std::size_t room = std::min(size - count, 4096 - (address + count) % 4096);
    const iovec here = {bytes.data() + count, room};
    const iovec there = {reinterpret_cast<void*>(address + count), room};
    const ssize_t read = process_vm_readv(process, &here, 1, &there, 1, 0);
    if (read <= 0) break;
    count += static_cast<std::size_t>(read);
  }
  bytes.resize(count);
  return bytes;
}

std::string LinkTarget(const std::string& link) {
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlink(link.c_str(), target.data(), target.size());
  return {target.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

class Tracer {
 public:
  Tracer(pid_t process, std::FILE* log, bool is_wizard)
      : process_(process), log_(log), is_wizard_(is_wizard) {}

  int Run() {
    int status = 0;
    if (waitpid(process_, &status, 0) != process_ || !WIFSTOPPED(status)) return kCouldNotRun;
    const long options = PTRACE_O_TRACESECCOMP | PTRACE_O_EXITKILL;
    if (ptrace(PTRACE_SETOPTIONS, process_, nullptr, options) != 0) return kCouldNotRun;
    int signal = 0;
    for (;;) {
      ptrace(PTRACE_CONT, process_, nullptr, signal);
      if (waitpid(process_, &status, __WALL) != process_) return kCouldNotRun;
      if (WIFEXITED(status)) return WEXITSTATUS(status);
      if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
      signal = 0;
      if (status >> 8 == (SIGTRAP | PTRACE_EVENT_SECCOMP << 8)) {
        Look();
      } else if (WSTOPSIG(status) != SIGTRAP) {
        signal = WSTOPSIG(status);
      }
    }
  }

 private:
  void Look() {
    __ptrace_syscall_info info = {};
    ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof info, &info);
    const Call& call = kCalls[info.seccomp.ret_data];
    const auto* arguments = info.seccomp.args;
    switch (call.kind) {
      case Kind::kForbidden:
        Forbid(call.name);
        return;
      case Kind::kSocket:
        if (!is_wizard_ || static_cast<int>(arguments[0]) != AF_UNIX) Forbid(call.name);
        return;
      case Kind::kConnect:
        Connect(call, arguments[1], arguments[2]);
        return;
      case Kind::kOpen: {
        const auto flags = static_cast<int>(arguments[call.path + 1]);
        const bool writes = (flags & O_ACCMODE) != O_RDONLY || (flags & (O_CREAT | O_TRUNC)) != 0;
        Note(writes ? "write" : "read", arguments, call.folder, call.path);
        return;
      }
      case Kind::kChange:
        Note("change", arguments, call.folder, call.path);
        if (call.second_path != kNone) {
          Note("change", arguments, call.second_folder, call.second_path);
        }
    }
  }

  void Forbid(const char* call) {
    std::fprintf(log_, "forbidden %s\n", call);
    std::fflush(log_);
    kill(process_, SIGKILL);
  }

  void Connect(const Call& call, std::uint64_t address, std::uint64_t length) {
    const std::string bytes =
        Memory(process_, address, std::min<std::uint64_t>(length, sizeof(sockaddr_un)));
    sockaddr_un socket = {};
    std::memcpy(&socket, bytes.data(), bytes.size());
    if (!is_wizard_ || socket.sun_family != AF_UNIX) {
      Forbid(call.name);
      return;
    }
    std::string path = bytes.substr(std::min(bytes.size(), offsetof(sockaddr_un, sun_path)));
    if (!path.empty() && path[0] == '\0') path[0] = '@';
    std::fprintf(log_, "connect unix:%s\n", path.c_str());
  }

  void Note(const char* word, const std::uint64_t* arguments, int folder, int path) {
    std::string text = Memory(process_, arguments[path], PATH_MAX).c_str();
    if (!text.starts_with('/')) {
      const std::string process = "/proc/" + std::to_string(process_);
      const int descriptor = folder == kNone ? AT_FDCWD : static_cast<int>(arguments[folder]);
      const std::string base =
          LinkTarget(descriptor == AT_FDCWD ? process + "/cwd"
                                            : process + "/fd/" + std::to_string(descriptor));
      text = base + "/" + text;
    }
    std::fprintf(log_, "%s %s\n", word, text.c_str());
  }

  pid_t process_;
  std::FILE* log_;
  bool is_wizard_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return kCouldNotRun;
  std::FILE* log = std::fopen(argv[1], "we");
  if (log == nullptr) return kCouldNotRun;
  const pid_t process = fork();
  if (process < 0) return kCouldNotRun;
  if (process == 0) RunProgram(argv + 3);
  return Tracer(process, log, std::string(argv[2]) == "wizard").Run();
}
