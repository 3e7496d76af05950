#include "platform/windows_text.h"

#include <windows.h>

#include <cstring>

namespace {

// Flags and the default-character arguments are forbidden for UTF-8 in this direction.
bool Narrow(UINT code_page, const wchar_t* wide, char* text, std::size_t size) {
  const bool utf8 = code_page == CP_UTF8;
  BOOL lossy = FALSE;
  const int length = WideCharToMultiByte(code_page, utf8 ? 0 : WC_NO_BEST_FIT_CHARS, wide, -1, text,
                                         static_cast<int>(size), nullptr, utf8 ? nullptr : &lossy);
  return length > 0 && lossy == FALSE;
}

bool Widen(UINT code_page, const char* text, wchar_t* wide, std::size_t size) {
  return MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, text, -1, wide,
                             static_cast<int>(size)) > 0;
}

bool Copy(const char* text, char* copy, std::size_t size) {
  const std::size_t length = std::strlen(text);
  if (length >= size) return false;
  std::memcpy(copy, text, length + 1);
  return true;
}

}  // namespace

bool WideFromUtf8(const char* text, wchar_t* wide, std::size_t size) {
  return Widen(CP_UTF8, text, wide, size);
}

bool Utf8FromWide(const wchar_t* wide, char* text, std::size_t size) {
  return Narrow(CP_UTF8, wide, text, size);
}

bool CodePageFromUtf8(const char* path, char* text, std::size_t size) {
  const UINT code_page = GetACP();
  if (code_page == CP_UTF8) return Copy(path, text, size);
  wchar_t wide[kWidePathSize];
  if (!WideFromUtf8(path, wide, kWidePathSize)) return false;
  if (Narrow(code_page, wide, text, size)) return true;
  wchar_t short_path[kWidePathSize];
  const DWORD length = GetShortPathNameW(wide, short_path, kWidePathSize);
  return length > 0 && length < kWidePathSize && Narrow(code_page, short_path, text, size);
}

bool Utf8FromCodePage(const char* text, char* utf8, std::size_t size) {
  const UINT code_page = GetACP();
  if (code_page == CP_UTF8) return Copy(text, utf8, size);
  wchar_t wide[kWidePathSize];
  return Widen(code_page, text, wide, kWidePathSize) && Utf8FromWide(wide, utf8, size);
}
