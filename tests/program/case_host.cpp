#include "tests/program/case_host.h"

#include <filesystem>
#include <stdexcept>

#include "tests/support/arduino_host.h"
#include "tests/support/jars.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLocalHeaderSize = 30;  // of a zip archive's member, before its name

void Damage(const std::string& path, const std::string& how) {
  std::string bytes = ReadFile(path);
  if (how == "truncate") {
    bytes.resize(bytes.size() / 2);
  } else if (how == "empty") {
    bytes.clear();
  } else if (how == "header") {
    bytes[kLocalHeaderSize] ^= 0x20;  // the first letter of the first member's name
  } else if (how == "data") {
    bytes[kLocalHeaderSize + 80] ^= 0x20;  // behind every name that a case's jar begins with
  } else {
    throw std::runtime_error("no such damage: " + how);
  }
  WriteFile(path, bytes);
}

void TakeStep(const CaseStep& step, const std::string& folder) {
  const std::string path = folder + "/" + step.path;
  if (step.word == "write") {
    WriteFile(path, step.argument);
  } else if (step.word == "remove") {
    fs::remove(path);
  } else if (step.word == "folder") {
    fs::create_directories(path);
  } else if (step.word == "damage") {
    Damage(path, step.argument);
  } else {
    fs::permissions(path, static_cast<fs::perms>(std::stoi(step.argument, nullptr, 8)));
  }
}

// A case's program may run without root's rights, and must then own nothing but may write all.
void OpenToAll(const std::string& folder) {
  fs::permissions(folder, fs::perms::all);
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    fs::permissions(entry.path(), fs::perms::all);
  }
}

}  // namespace

void MakeCaseHost(const CaseFile& test_case, const std::string& folder) {
  if (test_case.host == "none") return;
  fs::create_directories(folder);
  if (test_case.host == "arduino-1.8.19") {
    MakeArduino1819(folder);
  } else if (test_case.host != "empty") {
    throw std::runtime_error("no such host: " + test_case.host);
  }
  OpenToAll(folder);
  for (const CaseStep& step : test_case.steps) TakeStep(step, folder);
}

std::map<std::string, std::string> ReadHost(const std::string& folder) {
  std::map<std::string, std::string> files;
  if (!fs::exists(folder)) return files;
  for (const auto& [path, content] : ReadTree(folder)) {
    if (path.ends_with('/')) continue;
    try {
      if (!path.ends_with(".jar") || path.find("jssc") != std::string::npos) throw std::exception();
      for (const auto& [member, bytes] : ReadJar(folder + "/" + path)) {
        files[path + "!/" + member] = bytes;
      }
    } catch (const std::exception&) {
      files[path] = content;  // no archive, or not a sound one
    }
  }
  return files;
}
