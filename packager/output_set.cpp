#include "packager/output_set.h"

#include <system_error>
#include <utility>

#include "packager/refusal.h"

namespace fs = std::filesystem;

OutputSet::OutputSet(std::vector<fs::path> paths) : paths_(std::move(paths)) {
  for (const fs::path& path : paths_) {
    std::error_code error;
    fs::remove(path, error);
    // A path below something that isn't a folder can't hold an earlier file either.
    if (error && error != std::errc::not_a_directory) {
      throw Refusal(path.string(), WithReason("can't be removed", error.value()));
    }
  }
}

OutputSet::~OutputSet() {
  if (!committed_) RemoveAll();
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
