#include "driver/driver_text.h"

#include <cctype>
#include <cstdlib>
#include <cstring>

namespace {

int Upper(char letter) {
  return std::toupper(static_cast<unsigned char>(letter));
}

int Lower(char letter) {
  return std::tolower(static_cast<unsigned char>(letter));
}

bool BeginsWith(const char* text, const char* needle) {
  for (; *needle != '\0'; ++text, ++needle) {
    if (Upper(*text) != Upper(*needle)) return false;  // also at the text's end
  }
  return true;
}

}  // namespace

const char* find_substring_nocase(const char* text, const char* needle) {
  for (; *text != '\0'; ++text) {
    if (BeginsWith(text, needle)) return text;
  }
  return nullptr;
}

bool equal_nocase(const char* first, const char* second) {
  while (*first != '\0' && Lower(*first) == Lower(*second)) {
    ++first;
    ++second;
  }
  return Lower(*first) == Lower(*second);
}

char* duplicate_text(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  char* copy = static_cast<char*>(std::malloc(size));
  if (copy != nullptr) std::memcpy(copy, text, size);
  return copy;
}
