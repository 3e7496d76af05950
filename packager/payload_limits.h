// What a payload asks of those who install it: how long its paths are, how much memory its
// installer takes, what its groups weigh.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "packager/payload_order.h"
#include "packager/payload_view.h"

// The place that takes the most bytes below the host folder, in any release; of several the first.
struct LongestPlace {
  std::string path;  // below the host folder
  std::string entry;
};

struct GroupWeight {
  PayloadGroup group;
  std::size_t entries;
  std::uint64_t bytes;  // of content
};

LongestPlace FindLongestPlace(const PayloadView& payload);

// The bytes that a host folder's path may have, without a separator at its end, before the
// installer cuts the names of something whose path below it has `place_size`; 0 when no folder will
// do.
std::size_t LongestHostFolder(std::size_t place_size);

// In table order; groups without an entry are left out.
std::vector<GroupWeight> WeighGroups(const PayloadView& payload);

// All of it as lines, each with a line end. `frame_length` is the packed size in bytes.
std::string LimitsText(const PayloadView& payload, std::uint64_t frame_length);
