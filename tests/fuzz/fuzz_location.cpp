// LookupLocation over any locations.txt: a result has at most 255 bytes, stands in the file as it
// is, and is the one that a second reading of the rules, written apart, finds. The input's first
// line is the key, the rest the file.
#include <cstring>
#include <optional>

#include "store/host_selection.h"
#include "store/location_keys.h"
#include "tests/fuzz/fuzz_support.h"

namespace {

constexpr std::size_t kMostValue = 255;
constexpr char kSpaces[] = " \t\n\v\f\r";

// The first place of the key decides; a value needs at least one byte behind the key.
std::optional<std::string> Expected(const std::string& key, const std::string& file) {
  if (key.empty()) return std::nullopt;
  const std::size_t place = file.find(key);
  if (place == std::string::npos || place + key.size() >= file.size()) return std::nullopt;
  const std::size_t quote = file.find_first_not_of(kSpaces, place + key.size());
  if (quote == std::string::npos || file[quote] != '"') return std::nullopt;
  return file.substr(quote + 1, file.find('"', quote + 1) - quote - 1).substr(0, kMostValue);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const TwoTexts input = CutAtLineFeed(AllOf(data, size));
  const std::string key = input.first.c_str();  // a key is a text and ends at a zero
  const FuzzStore store({{"1.8.19/WINDOWS/locations.txt", input.rest}});
  Require(LookupLocation(key.c_str()) == nullptr, "without a release there is no location");

  SelectRelease("1.8.19");
  const char* found = LookupLocation(key.c_str());
  const std::optional<std::string> expected = Expected(key, input.rest);
  Require((found != nullptr) == expected.has_value(), "a key is found exactly where it is set");
  if (found == nullptr) return 0;
  const std::string text = found;
  Require(text.size() <= kMostValue, "a value has at most 255 bytes");
  Require(input.rest.find(text) != std::string::npos, "a value stands in the file as it is");
  Require(std::memcmp(found, expected->c_str(), expected->size() + 1) == 0,
          "a value is what stands between the quotes, cut to 255 bytes");
  Require(text == LookupLocation(key.c_str()), "a second look-up finds the same");
  return 0;
}
