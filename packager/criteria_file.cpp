#include "packager/criteria_file.h"

#include <cstdio>
#include <fstream>
#include <memory>
#include <optional>

#include "packager/jar_file.h"
#include "packager/refusal.h"
#include "packager/release_name.h"
#include "recognition/version_file.h"
#include "store/payload_format.h"

namespace fs = std::filesystem;

namespace {

constexpr char kVersionFile[] = "lib/version.txt";

struct Member {
  const char* jar;
  const char* name;
};

// The classes that the package replaces or relies upon and that differ from build to build.
constexpr Member kMembers[] = {
    {"lib/pde.jar", "processing/app/Base.class"},
    {"lib/pde.jar", "processing/app/Editor.class"},
    {"lib/pde.jar", "processing/app/SketchController.class"},
    {"lib/arduino-core.jar", "processing/app/BaseNoGui.class"},
    {"lib/arduino-core.jar", "cc/arduino/Compiler.class"},
    {"lib/arduino-core.jar", "processing/app/debug/TargetPlatform.class"},
};

// Opening what is no plain file might wait for ever.
bool IsReadableFile(const fs::path& path) {
  std::error_code error;
  return fs::is_regular_file(path, error) && std::ifstream(path).is_open();
}

// The first line that says something, for people.
std::string FirstWords(const fs::path& path) {
  std::ifstream file(path);
  std::string line;
  while (std::getline(file, line) && line.find_first_not_of(" \t\r") == std::string::npos) {
  }
  return line;
}

std::optional<ArduinoVersion> VersionOf(const fs::path& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
      IsReadableFile(path) ? std::fopen(path.c_str(), "r") : nullptr, std::fclose);
  if (file == nullptr) throw Refusal(path.string(), "can't be opened");
  ArduinoVersion version;
  if (ReadVersionFile(file.get(), &version) != VersionFile::kRead) return std::nullopt;
  return version;
}

void CheckVersion(const fs::path& folder, const std::string& release) {
  const fs::path path = folder / kVersionFile;
  const auto [major, minor, patch, beta] = ScanReleaseNumbers(release).value();
  if (VersionOf(path) != ArduinoVersion{major, minor, patch, beta}) {
    throw Refusal(path.string(), "says \"" + Printable(FirstWords(path)) +
                                     "\", which the installer won't take for " + release);
  }
}

void CheckFileArgument(const std::string& file) {
  if (file.empty() || Printable(file) != file) {
    throw Refusal(file, "a file: line can't hold this path");
  }
}

void CheckFolder(const fs::path& folder, const CriteriaRequest& request) {
  std::error_code error;
  if (!fs::is_directory(folder, error)) throw Refusal(folder.string(), "no such folder");
  CheckVersion(folder, request.release);
  for (const std::string& file : request.files) {
    const fs::path path = folder / file;
    if (!IsReadableFile(path)) throw Refusal(path.string(), "can't be opened");
  }
}

std::string MemberLine(const Member& member, const std::vector<fs::path>& folders) {
  std::string line = std::string(kZipcksumKeyword) + member.jar;
  for (const fs::path& folder : folders) {
    const MemberFacts facts = ReadMemberFacts((folder / member.jar).string(), member.name);
    line += " " + std::to_string(facts.checksum) + " " + std::to_string(facts.size);
  }
  return line + " " + member.name + "\n";
}

}  // namespace

std::string CriteriaText(const CriteriaRequest& request) {
  CheckReleaseName(request.release);
  if (request.folders.size() > kMostPairs) {
    throw Refusal(
        request.folders[kMostPairs].string(),
        "a zipcksum line has room for " + std::to_string(kMostPairs) + " folders and no more");
  }
  for (const std::string& file : request.files) CheckFileArgument(file);
  for (const fs::path& folder : request.folders) CheckFolder(folder, request);
  std::string text = std::string(kVersionKeyword) + kVersionFile + "\n";
  for (const std::string& file : request.files) text += kFileKeyword + file + "\n";
  for (const Member& member : kMembers) text += MemberLine(member, request.folders);
  return text;
}
