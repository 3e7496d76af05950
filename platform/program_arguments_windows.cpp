#include "platform/program_arguments.h"

// shellapi.h stands on it.
#include <windows.h>

#include <shellapi.h>

#include <cstddef>
#include <cstdlib>
#include <cwchar>

#include "platform/windows_text.h"

namespace {

constexpr std::size_t kBytesOfAUnit = 3;  // of UTF-8, for one unit of UTF-16, at most

// From malloc, or null when memory runs out.
char* Utf8Copy(const wchar_t* wide) {
  const std::size_t size = std::wcslen(wide) * kBytesOfAUnit + 1;
  char* text = static_cast<char*>(std::malloc(size));
  if (text != nullptr && Utf8FromWide(wide, text, size)) return text;
  std::free(text);
  return nullptr;
}

}  // namespace

void ProgramArguments(int* argc, char*** argv) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (wide == nullptr) return;
  char** texts =
      static_cast<char**>(std::calloc(static_cast<std::size_t>(count) + 1, sizeof(char*)));
  bool complete = texts != nullptr;
  for (int i = 0; complete && i < count; ++i) {
    texts[i] = Utf8Copy(wide[i]);
    complete = texts[i] != nullptr;
  }
  LocalFree(wide);
  if (!complete) return;  // memory has run out, and the process is about to end over it
  *argc = count;
  *argv = texts;
}
