#include "tests/faults/fault_host.h"

#include <cerrno>
#include <exception>
#include <filesystem>

#include "tests/support/arduino_host.h"
#include "tests/support/jars.h"

namespace fs = std::filesystem;

const std::vector<NamedError> kErrors = {{"ENOSPC", ENOSPC}, {"EIO", EIO},       {"EACCES", EACCES},
                                         {"EROFS", EROFS},   {"EMFILE", EMFILE}, {"ENOENT", ENOENT},
                                         {"EINTR", EINTR}};

namespace {

// Names that a wrong cut of the host's path would reach among them.
const Files& Beside() {
  static const Files beside = {{"hos", "a file"},
                               {"hostile/lib/pde.jar", "another folder's"},
                               {"lib/quirloduino.txt", "9.99"},
                               {"hardware/tools/quirlo.exe", "not ours"}};
  return beside;
}

}  // namespace

FaultHost::FaultHost(Kind kind) : kind_(kind) {
  Reset();
}

void FaultHost::Reset() const {
  for (const auto& entry : fs::directory_iterator(dir_.path())) fs::remove_all(entry.path());
  for (const auto& [path, content] : Beside()) WriteFile(dir_ / path, content);
  MakeArduino1819(host());
  if (kind_ == Kind::kFresh) return;
  WriteFile(host() + "/lib/quirloduino.txt", "1.59");
  WriteFile(host() + "/hardware/quirlo/avr/boards.txt", "older boards, longer than the new ones");
  WriteFile(host() + "/hardware/tools/quirlo.exe", "an older tool");
  WriteFile(host() + "/hardware/quirlo/avr/cores/quirlo4/libc.c", "retired");
}

Files FaultHost::Read() const {
  return ReadInstall(host());
}

Files ReadInstall(const std::string& folder) {
  Files files = ReadTree(folder);
  std::erase_if(files, [](const auto& file) { return file.first.ends_with('/'); });
  for (const char* jar : {"lib/pde.jar", "lib/arduino-core.jar"}) {
    if (!files.contains(jar)) continue;
    try {
      for (const auto& [member, content] : ReadJar(folder + "/" + jar)) {
        files[jar + ("!/" + member)] = content;
      }
      files.erase(jar);
    } catch (const std::exception&) {
      // Not sound; it stays in the tree as one file, and so differs from every sound one.
    }
  }
  return files;
}

std::string FaultHost::CompareBeside() const {
  Files found = ReadTree(dir_.path());
  std::erase_if(found, [](const auto& file) {
    return file.first.ends_with('/') || file.first.starts_with("host/");
  });
  return Difference(Beside(), found);
}
