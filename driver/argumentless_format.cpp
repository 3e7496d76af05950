#include "driver/argumentless_format.h"

#include <cstring>
#include <initializer_list>

namespace {

const char* SkipDigits(const char* position) {
  if (*position == '*') return position + 1;
  return position + std::strspn(position, "0123456789");
}

// The longest first, so that "hh" isn't taken for "h". Those with I are Windows' own.
const char* SkipLength(const char* position) {
  for (const char* length : {"I64", "I32", "hh", "ll", "I", "h", "l", "L", "j", "t", "w", "z"}) {
    const std::size_t count = std::strlen(length);
    if (std::strncmp(position, length, count) == 0) return position + count;
  }
  return position;
}

// The place behind the directive that begins at the percent sign `position`, or null when none
// does.
const char* AfterDirective(const char* position) {
  ++position;
  position += std::strspn(position, "-+ #0");
  position = SkipDigits(position);
  if (*position == '.') position = SkipDigits(position + 1);
  position = SkipLength(position);
  if (*position == '\0' || std::strchr("diouxXeEfFgGaAcCsSpn", *position) == nullptr) {
    return nullptr;
  }
  return position + 1;
}

}  // namespace

void FormatWithoutArguments(char* buffer, std::size_t size, const char* format) {
  std::size_t length = 0;
  while (*format != '\0' && length + 1 < size) {
    if (format[0] == '%' && format[1] == '%') {
      ++format;  // and print the second
    } else if (format[0] == '%') {
      const char* after = AfterDirective(format);
      if (after != nullptr) {
        format = after;
        continue;
      }
    }
    buffer[length++] = *format++;
  }
  buffer[length] = '\0';
}
