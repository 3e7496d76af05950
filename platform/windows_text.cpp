#include "platform/windows_text.h"

#include <windows.h>

#include <cstring>
#include <memory>
#include <new>

namespace {

using WideText = std::unique_ptr<wchar_t[]>;

// Null when memory runs out.
WideText NewWideText(std::size_t size) {
  return WideText(new (std::nothrow) wchar_t[size]);
}

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

bool Copy(const char* text, std::size_t length, char* copy, std::size_t size) {
  if (length > size) return false;
  std::memmove(copy, text, length);
  return true;
}

}  // namespace

bool WideFromUtf8(const char* text, wchar_t* wide, std::size_t size) {
  return Widen(CP_UTF8, text, wide, size);
}

bool Utf8FromWide(const wchar_t* wide, char* text, std::size_t size) {
  return Narrow(CP_UTF8, wide, text, size);
}

bool CodePageFromUtf8(const char* text, char* narrow, std::size_t size) {
  const UINT code_page = GetACP();
  const std::size_t length = std::strlen(text) + 1;
  if (code_page == CP_UTF8) return Copy(text, length, narrow, size);
  const WideText wide = NewWideText(length);  // in UTF-16 never longer than in UTF-8
  return wide != nullptr && WideFromUtf8(text, wide.get(), length) &&
         Narrow(code_page, wide.get(), narrow, size);
}

bool CodePagePathFromUtf8(const char* path, char* narrow, std::size_t size) {
  if (CodePageFromUtf8(path, narrow, size)) return true;
  wchar_t wide[kWidePathSize];
  wchar_t short_path[kWidePathSize];
  if (!WideFromUtf8(path, wide, kWidePathSize)) return false;
  const DWORD length = GetShortPathNameW(wide, short_path, kWidePathSize);
  return length > 0 && length < kWidePathSize && Narrow(GetACP(), short_path, narrow, size);
}

bool Utf8FromCodePage(const char* text, std::size_t length, char* utf8, std::size_t size) {
  const UINT code_page = GetACP();
  if (code_page == CP_UTF8) return Copy(text, length, utf8, size);
  const WideText wide = NewWideText(length);  // in UTF-16 never longer than in any code page
  if (wide == nullptr) return false;
  const int units = MultiByteToWideChar(code_page, 0, text, static_cast<int>(length), wide.get(),
                                        static_cast<int>(length));
  // A buffer that is too small would be filled, so the room is asked for first.
  const int needed =
      WideCharToMultiByte(CP_UTF8, 0, wide.get(), units, nullptr, 0, nullptr, nullptr);
  return needed > 0 && static_cast<std::size_t>(needed) <= size &&
         WideCharToMultiByte(CP_UTF8, 0, wide.get(), units, utf8, needed, nullptr, nullptr) > 0;
}

std::size_t Utf8BytesOfAByte() {
  return GetACP() == CP_UTF8 ? 1 : 3;
}
