#include "store/location_value.h"

#include <cstring>

namespace {

// White space as isspace tells it in the C locale, which is the one these files are written for.
bool IsSpace(unsigned char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

bool FindLocationValue(const unsigned char* text, std::size_t size, const char* key,
                       char (&value)[kLocationValueSize]) {
  const std::size_t key_length = std::strlen(key);
  if (size < key_length) return false;
  const unsigned char* const end = text + size;

  // Strictly below: a key that ends at the very last byte is not found, as no value could follow.
  const unsigned char* const search_end = end - key_length;
  const unsigned char* position = text;
  const auto first = static_cast<unsigned char>(key[0]);
  while (position < search_end &&
         (*position != first || std::memcmp(position, key, key_length) != 0)) {
    ++position;
  }
  if (position >= search_end) return false;

  position += key_length;
  while (position < end && IsSpace(*position)) ++position;
  if (position == end || *position != '"') return false;
  ++position;

  std::size_t length = 0;
  while (position < end && *position != '"' && length < kLocationValueSize - 1) {
    value[length++] = static_cast<char>(*position++);
  }
  value[length] = '\0';
  return true;
}
