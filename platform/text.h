// Bounded text formatting, the only formatter that the program uses for paths and messages.
// Works on the caller's buffers alone; reads and writes no file and keeps no state.
#pragma once

#include <cstdarg>
#include <cstddef>

// Formats into `buffer`, cut to `size` - 1 characters and always terminated (`size` is at least 1).
// Returns the length that the whole text would have had, not the length stored, so a result of
// `size` or more means that the text was cut. Nothing is reported for a cut text.
std::size_t FormatBounded(char* buffer, std::size_t size, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// The same, with the arguments already collected.
std::size_t FormatBoundedV(char* buffer, std::size_t size, const char* format,
                           std::va_list arguments) __attribute__((format(printf, 3, 0)));

// Copies a text of UTF-8, cut where it doesn't fit into `size` bytes (at least 1, terminator
// included): between two characters, never inside one.
void CopyWholeCharacters(char* buffer, std::size_t size, const char* text);
