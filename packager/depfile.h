// The dependency file by which a build tool learns when to pack anew: in Makefile syntax, all
// outputs on all files and folders of the tree. A folder changes when a file comes or goes.
//
// Which names such a file can hold is a matter of dispute: make, Ninja and CMake, which rewrites
// the file on its way to Ninja, each have characters that they can't read or don't escape again.
// "$" is among them, and class files are full of it. So a path with any character beyond those that
// all agree upon is named by a symbolic link with a plain name: its time and its presence are those
// of the file it leads to.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "packager/payload_tree.h"

struct Depfile {
  std::string text;
  // What the links that the text mentions lead to; link i is named i and lies in the link folder.
  std::vector<std::filesystem::path> linked;
};

// Every path in the text is absolute. `link_folder` is where the links will lie.
Depfile MakeDepfile(const std::vector<std::filesystem::path>& targets, const PayloadTree& tree,
                    const std::filesystem::path& link_folder);

// A path as a dependency file has it: a dollar sign doubled, a blank or number sign behind a
// backslash, and backslashes directly before such a blank or number sign doubled, since only there
// do they escape anything.
std::string EscapeForDepfile(const std::string& path);

// The links on the disk. They go with the dependency file: an earlier run's are removed at the
// start, and this run's unless it is committed.
class LinkFolder {
 public:
  explicit LinkFolder(std::filesystem::path folder);
  ~LinkFolder();
  LinkFolder(const LinkFolder&) = delete;
  LinkFolder& operator=(const LinkFolder&) = delete;

  // Makes the links, and their folder if there are any. Throws Refusal when one can't be made.
  void Make(const std::vector<std::filesystem::path>& linked);
  void Commit() { committed_ = true; }

 private:
  // Removes links alone: whatever else somebody put there stays.
  void RemoveLinks() noexcept;

  std::filesystem::path folder_;
  bool committed_ = false;
};
