// What the recording setupapi.dll and newdev.dll share: the file in which they note their calls.
#pragma once

#include <windows.h>

#include <cstdarg>
#include <cstdio>

inline constexpr char kCallsFile[] = "C:\\calls.txt";
inline constexpr char kAskFile[] = "C:\\ask.txt";

// A line of the file, as printf.
inline void Note(const char* format, ...) {
  std::FILE* file = std::fopen(kCallsFile, "ab");
  if (file == nullptr) return;
  std::va_list arguments;
  va_start(arguments, format);
  std::vfprintf(file, format, arguments);
  va_end(arguments);
  std::fputs("\n", file);
  std::fclose(file);
}

// An argument that is expected to be null, or not.
inline const char* Given(const void* pointer) {
  return pointer == nullptr ? "-" : "given";
}
