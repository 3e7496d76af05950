// The two forms of the tables: payload.tbl, which people and `verify` read, and payload_tables.cpp,
// which the installer is linked with. Both are plain functions of the table, so the same table
// always gives the same bytes. The grammar of payload.tbl stands in docs/store_format.md.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "packager/payload_tree.h"

struct PayloadTable {
  std::uint64_t frame_length;        // bytes of payload.zst
  std::uint64_t content_size;        // bytes it expands to: the sum of the sizes
  std::vector<PayloadFile> entries;  // in index order
};

std::string TableText(const PayloadTable& table);

// The reverse of TableText, just as strict: throws Refusal, in words about `name`, for anything
// that TableText would not have written.
PayloadTable ParseTableText(const std::string& name, std::string_view text);

// A translation unit that defines Store of store/embedded_file_store.h around the frame, which it
// expects under the name quirloduino_payload_frame.
std::string TableSource(const PayloadTable& table);
