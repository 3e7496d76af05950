// The files that one run of `pack` makes, which appear all together or not at all. They are written
// under temporary names and renamed at the end; those of an earlier run are removed at the start,
// so that nothing stale passes for the result of a run that was refused. The folders are locked: a
// second run that would write into one of them is refused and touches nothing.
#pragma once

#include <filesystem>
#include <map>
#include <vector>

#include "packager/folder_lock.h"

class OutputSet {
 public:
  // Makes the folders in which the files are to stand, locks them and removes earlier files of
  // these paths. Throws Refusal when a folder can't be made, another run holds it, or a file can't
  // be removed.
  explicit OutputSet(std::vector<std::filesystem::path> paths);
  // Unless Commit succeeded, removes everything that was written under these paths, and the folders
  // that were made for them as far as they are empty.
  ~OutputSet();
  OutputSet(const OutputSet&) = delete;
  OutputSet& operator=(const OutputSet&) = delete;

  // One more path of the set, with the same effect.
  void Add(const std::filesystem::path& path);

  // The name under which the file of `path`, one of the set, is to be written.
  static std::filesystem::path TemporaryName(const std::filesystem::path& path);

  // Gives every file its own name. Throws Refusal on the first that can't be renamed.
  void Commit();

 private:
  void RemoveAll() noexcept;
  void RemoveEarlier();
  void TakeFolderOf(const std::filesystem::path& path);
  void MakeFolder(const std::filesystem::path& folder);

  std::vector<std::filesystem::path> paths_;
  std::vector<std::filesystem::path> made_;            // folders, the outer before the inner
  std::map<std::filesystem::path, FolderLock> locks_;  // by folder
  bool committed_ = false;
};
