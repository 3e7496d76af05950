#include "tests/support/run_program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "tests/support/run_under.h"
#include "tests/support/temp_dir.h"

namespace {

constexpr unsigned kSecondsAllowed = 60;
constexpr unsigned kSecondsAllowedUnder = 600;

void Redirect(const std::string& path, int descriptor) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  if (file < 0 || dup2(file, descriptor) < 0) _exit(126);
  close(file);
}

[[noreturn]] void Exec(const std::string& program, const std::vector<std::string>& arguments,
                       const ProgramOptions& options, const std::string& output,
                       const std::string& error) {
  Redirect(output, STDOUT_FILENO);
  Redirect(error, STDERR_FILENO);
  if (!options.directory.empty() && chdir(options.directory.c_str()) != 0) _exit(126);
  for (const std::string& name : options.without) unsetenv(name.c_str());
  for (const std::string& setting : options.environment) {
    const std::size_t equals = setting.find('=');
    setenv(setting.substr(0, equals).c_str(), setting.substr(equals + 1).c_str(), 1);
  }
  const std::vector<std::string> under = RunUnder();
  // Opened with all rights: the folder that was built in may be closed to an ordinary user.
  const int file = open(program.c_str(), under.empty() ? O_PATH | O_CLOEXEC : O_PATH);
  if (options.ordinary_user && geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) {
    _exit(126);
  }
  std::vector<std::string> words = under;
  const bool by_descriptor = !under.empty() && options.ordinary_user;
  words.push_back(by_descriptor ? "/proc/self/fd/" + std::to_string(file) : program);
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> vector;
  for (std::string& word : words) vector.push_back(word.data());
  vector.push_back(nullptr);
  alarm(under.empty() ? kSecondsAllowed : kSecondsAllowedUnder);
  if (under.empty()) fexecve(file, vector.data(), environ);
  execvp(vector[0], vector.data());
  _exit(127);
}

}  // namespace

ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const ProgramOptions& options) {
  const TempDir streams;
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork failed");
  if (child == 0) Exec(program, arguments, options, streams / "out", streams / "err");
  int status = 0;
  if (waitpid(child, &status, 0) != child) throw std::runtime_error("waitpid failed");
  const int result = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return {result, ReadFile(streams / "out"), ReadFile(streams / "err")};
}
