// A packed payload read back and held against its tables, the rules and its tree. Trusts nothing:
// what is verified may have been made elsewhere, or damaged since.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
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

// Expands `frame` by `table`. Throws Refusal, in words about `name`, unless they agree: the sizes
// sum to the content's size, which the frame declares, yields and proves by its checksum.
PackedPayload ExpandPayload(const std::string& name, PayloadTable table, std::string_view frame);

// The bytes of one entry, within `packed.content`.
std::string_view BytesOf(const PackedPayload& packed, std::size_t index);

// Reads and expands. Throws Refusal unless the three files agree with one another.
PackedPayload ReadPackedPayload(const PackedFiles& files);

// All rules for names, order, aliases, releases and control files.
void CheckPackedPayload(const PackedPayload& packed);

// The same entries with the same bytes as the plan made from a tree.
void CompareWithTree(const PackedPayload& packed, const PayloadPlan& plan);
