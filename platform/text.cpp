#include "platform/text.h"

#include <cstdio>
#include <cstring>

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

void CopyWholeCharacters(char* buffer, std::size_t size, const char* text) {
  std::size_t length = std::strlen(text);
  if (length >= size) {
    length = size - 1;
    // Back to the first byte of the character that is cut; the bytes behind it are 10xxxxxx.
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
  }
  std::memcpy(buffer, text, length);
  buffer[length] = '\0';
}
