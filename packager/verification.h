// A packed payload read back and held against its tables, the rules and its tree. Trusts nothing:
// what is verified may have been made elsewhere, or damaged since.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "packager/payload_plan.h"
#include "packager/table_files.h"

struct PackedFiles {
  std::filesystem::path frame;
  std::filesystem::path table;
  std::filesystem::path table_source;
};

struct PackedPayload {
  PayloadTable table;
  std::string content;                  // of all entries, end to end
  std::vector<std::uint64_t> position;  // where each entry's bytes begin in it
};

// Reads and expands. Throws Refusal unless the three files agree with one another.
PackedPayload ReadPackedPayload(const PackedFiles& files);

// All rules for names, order, aliases, releases and control files.
void CheckPackedPayload(const PackedPayload& packed);

// The same entries with the same bytes as the plan made from a tree.
void CompareWithTree(const PackedPayload& packed, const PayloadPlan& plan);
