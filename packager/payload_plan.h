// What a tree becomes: its entries in table order, with the aliases made. Everything that is
// refused is refused here, before a single byte is written.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "packager/payload_tree.h"

struct PlannedEntry {
  std::string name;
  std::uint64_t size;  // 0 for an alias
  std::string source;  // the file's path within the tree; an alias's is its left side
};

struct PayloadPlan {
  PayloadTree tree;
  std::vector<PlannedEntry> entries;  // in table order
  std::uint64_t content_size;         // the sum of the sizes, below 4 GiB
};

// Throws Refusal for a tree that no installer could serve; docs/store_format.md has the rules.
PayloadPlan PlanPayload(const std::filesystem::path& root);

// Names and sizes of the plan's entries, as the tables have them.
std::vector<PayloadFile> TableEntries(const PayloadPlan& plan);
