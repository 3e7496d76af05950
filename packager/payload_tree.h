// A payload as its author keeps it: a folder whose relative paths are the entry names. Reads names
// and sizes only; follows no link and opens no file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// One file of a tree or one entry of a table: its name and its bytes.
struct PayloadFile {
  std::string name;  // relative, with '/' between the components
  std::uint64_t size;

  bool operator==(const PayloadFile&) const = default;
};

struct PayloadTree {
  std::filesystem::path root;
  std::vector<PayloadFile> files;    // by name, in byte order
  std::vector<std::string> folders;  // relative; by name, the root's own, "", first
};

// The tree below `root`, always in the same order. Throws Refusal when `root` is no folder, when
// something can't be read, and for a link or special file, which no installer could write.
PayloadTree ReadPayloadTree(const std::filesystem::path& root);
