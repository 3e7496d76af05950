#include "platform/text.h"

#include <cstdio>

std::size_t FormatBounded(char* buffer, std::size_t size, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const std::size_t length = FormatBoundedV(buffer, size, format, arguments);
  va_end(arguments);
  return length;
}

std::size_t FormatBoundedV(char* buffer, std::size_t size, const char* format,
                           std::va_list arguments) {
  const int length = std::vsnprintf(buffer, size, format, arguments);
  if (length >= 0) return static_cast<std::size_t>(length);
  buffer[0] = '\0';  // a conversion failed; the text must be terminated all the same
  return 0;
}
