#include "tests/support/temp_dir.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr uid_t kNobody = 65534;

}  // namespace

TempDir::TempDir() {
  std::string pattern = fs::temp_directory_path() / "quirloduino-test-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed: " + pattern);
  path_ = pattern;
  fs::permissions(path_, fs::perms::all);  // also for a test that drops root's rights
}

TempDir::~TempDir() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void WriteFile(const std::string& path, const std::string& content) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  if (!file) throw std::runtime_error("can't write " + path);
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("can't read " + path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::map<std::string, std::string> ReadTree(const std::string& path) {
  std::map<std::string, std::string> tree;
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    const std::string name = entry.path().lexically_relative(path);
    if (entry.is_symlink()) {
      tree[name] = "-> " + fs::read_symlink(entry.path()).string();
    } else if (entry.is_directory()) {
      tree[name + "/"] = "";
    } else {
      tree[name] = ReadFile(entry.path());
    }
  }
  return tree;
}

ScopedEnvironment::ScopedEnvironment(const char* name, const std::string& value) : name_(name) {
  const char* old_value = std::getenv(name);
  was_set_ = old_value != nullptr;
  if (was_set_) old_value_ = old_value;
  setenv(name, value.c_str(), 1);
}

ScopedEnvironment::~ScopedEnvironment() {
  if (was_set_) {
    setenv(name_.c_str(), old_value_.c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
}

ScopedCurrentFolder::ScopedCurrentFolder(const std::string& path) : before_(fs::current_path()) {
  fs::current_path(path);
}

ScopedCurrentFolder::~ScopedCurrentFolder() {
  std::error_code ignored;
  fs::current_path(before_, ignored);
}

ScopedOrdinaryUser::ScopedOrdinaryUser() {
  if (geteuid() != 0) return;
  if (seteuid(kNobody) != 0) throw std::runtime_error("can't drop root's rights");
  dropped_ = true;
}

ScopedOrdinaryUser::~ScopedOrdinaryUser() {
  if (dropped_ && seteuid(0) != 0) std::abort();
}
