// A payload as its author keeps it: a folder whose relative paths are the entry names. Reads names
// and sizes only; follows no link and opens no file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "packager/file_stamp.h"

// One file of a tree or one entry of a table: its name and its bytes.
struct PayloadFile {
  std::string name;  // relative, with '/' between the components
  std::uint64_t size;

  bool operator==(const PayloadFile&) const = default;
};

struct PayloadTree {
  std::filesystem::path root;
  std::vector<PayloadFile> files;                // by name, in byte order
  std::vector<std::string> folders;              // relative; by name, the root's own, "", first
  std::vector<std::string> executables = {};     // files that anybody may execute; as found
  std::map<std::string, FileStamp> stamps = {};  // of the files, by name; for CheckUnchanged
};

// The tree below `root`, always in the same order. Throws Refusal when `root` is no folder, when
// something can't be read, and for a link or special file, which no installer could write.
PayloadTree ReadPayloadTree(const std::filesystem::path& root);

// Throws Refusal unless the tree is still what it was when `tree` was read: the same files and
// folders, and none of the files changed, whether or not its size did.
void CheckUnchanged(const PayloadTree& tree);
