#include "store/entry_names.h"

#include <cstddef>
#include <cstring>

#include "platform/text.h"

namespace {

constexpr std::size_t kScratchSize = 4096;

}  // namespace

bool EndsWith(const char* text, const char* suffix) {
  const std::size_t text_length = std::strlen(text);
  const std::size_t suffix_length = std::strlen(suffix);
  if (text_length < suffix_length) return false;
  return std::strcmp(text + text_length - suffix_length, suffix) == 0;
}

const char* AfterPrefix(const char* text, const char* prefix) {
  const std::size_t length = std::strlen(prefix);
  return std::strncmp(text, prefix, length) == 0 ? text + length : nullptr;
}

const char* ScratchConcat(const char* first, const char* second) {
  static char scratch[kScratchSize];
  FormatBounded(scratch, sizeof scratch, "%s%s", first, second);
  return scratch;
}
