// The files that one run of `pack` makes, which appear all together or not at all. They are written
// under temporary names and renamed at the end; those of an earlier run are removed at the start,
// so that nothing stale passes for the result of a run that was refused.
#pragma once

#include <filesystem>
#include <vector>

class OutputSet {
 public:
  // Removes earlier files of these paths. Creates nothing yet. Throws Refusal when one can't be
  // removed.
  explicit OutputSet(std::vector<std::filesystem::path> paths);
  // Unless Commit succeeded, removes everything that was written under these paths.
  ~OutputSet();
  OutputSet(const OutputSet&) = delete;
  OutputSet& operator=(const OutputSet&) = delete;

  // One more path of the set, with the same effect.
  void Add(const std::filesystem::path& path);

  // Creates the folders in which the files are to stand.
  void MakeFolders();

  // The name under which the file of `path`, one of the set, is to be written.
  static std::filesystem::path TemporaryName(const std::filesystem::path& path);

  // Gives every file its own name. Throws Refusal on the first that can't be renamed.
  void Commit();

 private:
  void RemoveAll() noexcept;
  void RemoveEarlier();

  std::vector<std::filesystem::path> paths_;
  bool committed_ = false;
};
