#include "packager/payload_limits.h"

#include <algorithm>
#include <numeric>
#include <string_view>

#include "packager/install_forecast.h"
#include "store/host_selection.h"

namespace {

constexpr int kCountWidth = 8;
constexpr int kBytesWidth = 12;

// All paths of the installer are put together in buffers of the size of the host folder's own. What
// has no room in them is cut without a word.
constexpr std::size_t kLongestPath = kFolderSize - 1;

std::string PaddedLeft(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

}  // namespace

LongestPlace FindLongestPlace(const PayloadView& payload) {
  LongestPlace longest;
  for (const std::string& release : ReleasesOf(payload)) {
    const InstallForecast forecast(payload, release);
    for (std::size_t i = 0; i < payload.entries.size(); ++i) {
      std::string path = LandingPath(forecast.At(i));
      if (path.size() > longest.path.size()) longest = {std::move(path), payload.entries[i].name};
    }
  }
  return longest;
}

std::size_t LongestHostFolder(std::size_t place_size) {
  constexpr std::size_t kSeparator = 1;
  return kLongestPath - std::min(place_size + kSeparator, kLongestPath);
}

std::vector<GroupWeight> WeighGroups(const PayloadView& payload) {
  std::vector<GroupWeight> weights;
  for (const PayloadFile& entry : payload.entries) {
    const PayloadGroup group = GroupOf(entry.name);
    if (weights.empty() || weights.back().group != group) weights.push_back({group, 0, 0});
    ++weights.back().entries;
    weights.back().bytes += entry.size;
  }
  return weights;
}

std::string LimitsText(const PayloadView& payload, std::uint64_t frame_length) {
  const LongestPlace longest = FindLongestPlace(payload);
  const std::uint64_t content =
      std::accumulate(payload.entries.begin(), payload.entries.end(), std::uint64_t{0},
                      [](std::uint64_t sum, const PayloadFile& entry) { return sum + entry.size; });
  std::string text = "longest path below the host folder: " + std::to_string(longest.path.size()) +
                     " bytes, of " + longest.entry + "\n";
  text += "a host folder's path may have " +
          std::to_string(LongestHostFolder(longest.path.size())) + " bytes before names are cut\n";
  text += "an installer takes " + std::to_string(content + frame_length) +
          " bytes of memory: " + std::to_string(content) + " of content, " +
          std::to_string(frame_length) + " packed\n";
  for (const GroupWeight& weight : WeighGroups(payload)) {
    text += PaddedLeft(std::to_string(weight.entries), kCountWidth) +
            (weight.entries == 1 ? " entry   " : " entries ") +
            PaddedLeft(std::to_string(weight.bytes), kBytesWidth) + " bytes  " +
            std::string(GroupTitle(weight.group)) + "\n";
  }
  return text;
}
