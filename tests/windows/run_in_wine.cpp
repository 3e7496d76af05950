#include "tests/windows/run_in_wine.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"

std::string WineOverrides;

namespace {

constexpr int kLauncherFailed = 125;

void Redirect(const std::string& path, int descriptor) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  if (file < 0 || dup2(file, descriptor) < 0) _exit(kLauncherFailed);
  close(file);
}

[[noreturn]] void Exec(std::vector<std::string> words, const ProgramOptions& options,
                       const std::string& output, const std::string& error) {
  Redirect(output, STDOUT_FILENO);
  Redirect(error, STDERR_FILENO);
  if (!options.directory.empty() && chdir(options.directory.c_str()) != 0) _exit(kLauncherFailed);
  for (const std::string& name : options.without) unsetenv(name.c_str());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execv(WINE_LAUNCHER, pointers.data());
  _exit(kLauncherFailed);
}

ProgramResult Launch(std::vector<std::string> words, const ProgramOptions& options) {
  const TempDir streams;
  words.insert(words.begin(), WINE_LAUNCHER);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork failed");
  if (child == 0) Exec(words, options, streams / "out", streams / "err");
  int status = 0;
  if (waitpid(child, &status, 0) != child) throw std::runtime_error("waitpid failed");
  const int result = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  ProgramResult all{result, ReadFile(streams / "out"), ReadFile(streams / "err")};
  if (result == kLauncherFailed) throw std::runtime_error("Wine was not started: " + all.error);
  return all;
}

// A copy of the template, which goes away at the end of the process.
class Prefix {
 public:
  explicit Prefix(bool ordinary_user) {
    std::vector<std::string> words = {"--new-prefix", path()};
    if (ordinary_user) words.insert(words.begin(), "--ordinary");
    if (Launch(words, {}).status != 0) throw std::runtime_error("no Wine prefix");
  }
  ~Prefix() { Launch({"--prefix", path(), "--stop"}, {}); }
  Prefix(const Prefix&) = delete;
  Prefix& operator=(const Prefix&) = delete;
  std::string path() const { return folder_ / "prefix"; }

 private:
  TempDir folder_;
};

// CR LF as LF; a line that ends in a lone LF is marked, and so equals no expected one.
std::string PlainLines(const std::string& text) {
  std::string plain;
  for (const char c : text) {
    const bool ended = !plain.empty() && plain.back() == '\r';
    if (c == '\n' && ended) plain.pop_back();
    if (c == '\n' && !ended) plain += "<no carriage return>";
    plain += c;
  }
  return plain;
}

// Whether a folder that the program is given lies on a file system of its own.
bool MountedApart(const std::string& argument) {
  struct stat folder;
  struct stat others;
  const std::string path = argument.substr(argument.find('=') + 1);
  return stat(path.c_str(), &folder) == 0 && stat("/tmp", &others) == 0 &&
         folder.st_dev != others.st_dev;
}

}  // namespace

std::string WinePrefix(bool ordinary_user) {
  if (ordinary_user) {
    static const Prefix nobody(true);
    return nobody.path();
  }
  static const Prefix root(false);
  return root.path();
}

void StopWine(bool ordinary_user) {
  Launch({"--prefix", WinePrefix(ordinary_user), "--stop"}, {});
}

// The server reads it when it starts.
void SetScreenDpi(int dpi) {
  RunProgram("reg", {"add", "HKCU\\Control Panel\\Desktop", "/v", "LogPixels", "/t", "REG_DWORD",
                     "/d", std::to_string(dpi), "/f"});
  StopWine();
}

// The environment of the options is Linux's and is left out: Wine has its own.
ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const ProgramOptions& options) {
  std::vector<std::string> words = {"--prefix", WinePrefix(options.ordinary_user)};
  if (options.ordinary_user) words.push_back("--ordinary");
  if (std::any_of(arguments.begin(), arguments.end(), MountedApart)) {
    StopWine(options.ordinary_user);
  }
  if (!WineOverrides.empty()) words.insert(words.end(), {"--override", WineOverrides});
  words.push_back(program);
  words.insert(words.end(), arguments.begin(), arguments.end());
  const ProgramResult result = Launch(words, options);
  return {result.status, PlainLines(result.output), PlainLines(result.error)};
}
