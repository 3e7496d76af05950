#include "benchmarks/timed_run.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>

namespace {

constexpr std::size_t kPage = 4096;
constexpr int kNotStarted = 127;

// The child's side of the fork: only system calls, and no return.
[[noreturn]] void Become(char* const* words, const char* folder, const char* output,
                         const char* log) {
  if (chdir(folder) != 0) _exit(kNotStarted);
  const int input = open("/dev/null", O_RDONLY);
  const int errors = open(log, O_WRONLY | O_CREAT | O_APPEND, 0666);
  const int to = *output == '\0' ? errors : open(output, O_WRONLY | O_CREAT | O_TRUNC, 0666);
  if (dup2(input, 0) == 0 && dup2(to, 1) == 1 && dup2(errors, 2) == 2) {
    execvp(words[0], words);
  }
  _exit(kNotStarted);
}

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

TimedRun RunTimed(const std::vector<std::string>& words, const std::filesystem::path& folder,
                  const std::string& stdout_file, const std::filesystem::path& log) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);

  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) Become(arguments.data(), folder.c_str(), stdout_file.c_str(), log.c_str());
  if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
  int status = 0;
  rusage used{};
  while (wait4(child, &status, 0, &used) < 0) {
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "wait4");
  }
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  return {elapsed.count(), Seconds(used.ru_utime), Seconds(used.ru_stime), used.ru_maxrss,
          WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status)};
}

int RunInShell(const std::string& command, const std::filesystem::path& folder,
               const std::filesystem::path& log) {
  return RunTimed({"sh", "-c", command}, folder, "", log).status;
}

void TouchMemory(std::size_t bytes) {
  void* block = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (block == MAP_FAILED) throw std::system_error(errno, std::generic_category(), "mmap");
  for (std::size_t i = 0; i < bytes; i += kPage) static_cast<volatile char*>(block)[i] = 1;
  munmap(block, bytes);
}
