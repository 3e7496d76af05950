// MakeDirectoryChain over any path: whatever it is told, no folder comes to be outside the base. A
// result of 0 means that the folder is there; what was made are levels of the path itself; a
// refusal that makes nothing has its words. The input's first byte says whether the path begins
// with the base, the rest is the path behind it.
//
// The rule compares texts and resolves nothing, so ".." is no case of it: the packager refuses a
// payload that holds it in a name or a location.
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "engine/install_error.h"
#include "engine/writers.h"
#include "platform/files.h"
#include "tests/fuzz/fuzz_support.h"

namespace fs = std::filesystem;

namespace {

// Where the base stands, so that what is made beside it is found.
constexpr char kAbove[] = "/0/1/2";

std::vector<std::string> FoldersBelow(const std::string& path) {
  std::vector<std::string> folders;
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    Require(entry.is_directory(), "nothing but folders is made");
    folders.push_back(entry.path());
  }
  std::sort(folders.begin(), folders.end());
  return folders;
}

bool HoldsParent(const std::string& path) {
  std::string text = "/" + path + "/";
  std::replace(text.begin(), text.end(), '\\', '/');
  return text.find("/../") != std::string::npos;
}

// The folders in a path that begins with the base, as the system resolves them. One that is longer
// than the 259 characters of a level is made as far as they reach.
std::vector<std::string> LevelsOf(const std::string& path, const std::string& base) {
  std::string text = path.substr(0, 259);
  std::replace(text.begin(), text.end(), '\\', '/');
  std::vector<std::string> levels;
  for (std::size_t end = base.size(); end <= text.size(); ++end) {
    if (end < text.size() && text[end] != '/') continue;
    std::string level = fs::path(text.substr(0, end)).lexically_normal();
    if (level.ends_with('/')) level.pop_back();
    levels.push_back(level);
  }
  return levels;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return -1;
  const std::string rest = AllOf(data + 1, size - 1).c_str();
  if (HoldsParent(rest)) return -1;
  const std::string outer = WorkFolder() + "/outer";
  const std::string base = outer + kAbove + "/base/";
  fs::create_directories(base);
  const std::vector<std::string> before = FoldersBelow(outer);
  const bool within = data[0] != '!';
  const std::string path = within ? base + rest : outer + "/" + rest;
  ResetInstallError();

  const int result = MakeDirectoryChain(path.c_str(), base.c_str());

  Require(result == 0 || result == -1, "the result is 0 or -1");
  Require(result == -1 || DirectoryExists(path.c_str()), "a folder that is reported is there");
  Require(result == 0 || InstallErrorText()[0] != '\0', "a refusal has its words");
  Require(LowestFreeDescriptor() < 16, "no folder stays open");
  const std::vector<std::string> levels = LevelsOf(path, base);
  for (const std::string& folder : FoldersBelow(outer)) {
    if (std::binary_search(before.begin(), before.end(), folder)) continue;
    Require(folder.starts_with(base), "no folder is made outside the base");
    Require(std::find(levels.begin(), levels.end(), folder) != levels.end(),
            "no folder is made but the levels of the path");
  }
  fs::remove_all(outer);
  return 0;
}
