// A payload's view of entries that stand in the test itself, in any order and under no rule.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "packager/payload_view.h"

inline PayloadView MadeView(const std::vector<std::pair<std::string, std::string>>& entries) {
  PayloadView view;
  for (const auto& [name, content] : entries) view.entries.push_back({name, content.size()});
  view.read = [entries](std::size_t index) { return entries[index].second; };
  return view;
}
