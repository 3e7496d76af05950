#include "packager/output_set.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "packager/refusal.h"

namespace fs = std::filesystem;

OutputSet::OutputSet(std::vector<fs::path> paths) {
  for (const fs::path& path : paths) TakeFolderOf(path);
  paths_ = std::move(paths);
  RemoveEarlier();
}

OutputSet::~OutputSet() {
  if (committed_) return;
  RemoveAll();
  for (auto folder = made_.rbegin(); folder != made_.rend(); ++folder) {
    std::error_code ignored;
    fs::remove(*folder, ignored);
  }
}

void OutputSet::Add(const fs::path& path) {
  TakeFolderOf(path);
  paths_.push_back(path);
  RemoveEarlier();
}

void OutputSet::TakeFolderOf(const fs::path& path) {
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  MakeFolder(folder);
  // By its one true name, since a folder that this run holds already can't be locked again.
  locks_.try_emplace(fs::canonical(folder), folder);
}

void OutputSet::MakeFolder(const fs::path& folder) {
  std::error_code error;
  if (fs::is_directory(folder, error)) return;
  if (fs::exists(folder, error))
    throw Refusal(folder.string(), WithReason("can't be created", ENOTDIR));
  if (folder.has_parent_path() && folder.parent_path() != folder) MakeFolder(folder.parent_path());
  if (fs::create_directory(folder, error)) made_.push_back(folder);
  if (error) throw Refusal(folder.string(), WithReason("can't be created", error.value()));
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
