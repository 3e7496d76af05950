#include "packager/release_name.h"

#include <charconv>

#include "packager/refusal.h"
#include "store/host_selection.h"

namespace {

// Takes a number off the front of `text`: decimal digits that fit an int, nothing before them.
bool TakeNumber(std::string_view* text, int* number) {
  if (text->empty() || text->front() < '0' || text->front() > '9') return false;
  const char* const begin = text->data();
  const auto [end, error] = std::from_chars(begin, begin + text->size(), *number);
  if (error != std::errc()) return false;
  text->remove_prefix(static_cast<std::size_t>(end - begin));
  return true;
}

bool TakeText(std::string_view* text, std::string_view expected) {
  if (!text->starts_with(expected)) return false;
  text->remove_prefix(expected.size());
  return true;
}

}  // namespace

std::optional<ReleaseNumbers> ScanReleaseNumbers(std::string_view text) {
  ReleaseNumbers numbers{};
  if (!TakeNumber(&text, &numbers.major) || !TakeText(&text, ".") ||
      !TakeNumber(&text, &numbers.minor) || !TakeText(&text, ".") ||
      !TakeNumber(&text, &numbers.patch)) {
    return std::nullopt;
  }
  if (!TakeText(&text, "-beta") || !TakeNumber(&text, &numbers.beta)) numbers.beta = 0;
  return numbers;
}

void CheckReleaseName(std::string_view name) {
  if (!ScanReleaseNumbers(name)) {
    throw Refusal(name, "a release's name must begin with three numbers, as in 1.8.19");
  }
  if (name.size() > kHostVersionSize - 1) {
    throw Refusal(name, "a release's name must not be longer than 63 characters");
  }
}
