#include "packager/output_set.h"

#include <system_error>
#include <utility>

#include "packager/refusal.h"

namespace fs = std::filesystem;

OutputSet::OutputSet(std::vector<fs::path> paths) : paths_(std::move(paths)) {
  RemoveEarlier();
}

OutputSet::~OutputSet() {
  if (!committed_) RemoveAll();
}

void OutputSet::Add(const fs::path& path) {
  paths_.push_back(path);
  RemoveEarlier();
}

void OutputSet::MakeFolders() {
  for (const fs::path& path : paths_) {
    std::error_code error;
    const fs::path folder = path.parent_path();
    if (!folder.empty()) fs::create_directories(folder, error);
    if (error) throw Refusal(folder.string(), WithReason("can't be created", error.value()));
  }
}

fs::path OutputSet::TemporaryName(const fs::path& path) {
  fs::path name = path;
  name += ".part";
  return name;
}

void OutputSet::Commit() {
  for (const fs::path& path : paths_) {
    std::error_code error;
    fs::rename(TemporaryName(path), path, error);
    if (error) throw Refusal(path.string(), WithReason("can't be written", error.value()));
  }
  committed_ = true;
}

void OutputSet::RemoveAll() noexcept {
  for (const fs::path& path : paths_) {
    std::error_code ignored;  // what can't be removed now can't be helped
    fs::remove(path, ignored);
    fs::remove(TemporaryName(path), ignored);
  }
}

// All of them, even when one resists: what is left must not look like a result.
void OutputSet::RemoveEarlier() {
  RemoveAll();
  for (const fs::path& path : paths_) {
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(path, ignored))) {
      throw Refusal(path.string(), "can't be removed, though it is out of date");
    }
  }
}
