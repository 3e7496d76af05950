#include "platform/library_search.h"

#include <windows.h>

// FLTK takes one function from COMCTL32, which is not among the libraries that the system protects,
// so a file of that name beside the executable would be loaded before any code of ours runs. USER32
// has the same function under another name; here the import that FLTK asks for is defined by it.
extern "C" {
extern BOOL(WINAPI* const track_mouse_event)(LPTRACKMOUSEEVENT) __asm__(
    "__imp___TrackMouseEvent@4");
BOOL(WINAPI* const track_mouse_event)(LPTRACKMOUSEEVENT) = TrackMouseEvent;
}

namespace {

// The function of a system library that is loaded already, or null.
template <typename Function>
Function Find(const wchar_t* library, const char* name) {
  HMODULE module = GetModuleHandleW(library);
  if (module == nullptr) return nullptr;
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace

void RestrictLibrarySearch() {
  using SetDirectories = BOOL(WINAPI*)(DWORD);
  const auto set_directories = Find<SetDirectories>(L"kernel32.dll", "SetDefaultDllDirectories");
  if (set_directories != nullptr && set_directories(LOAD_LIBRARY_SEARCH_SYSTEM32) != FALSE) return;
  // Takes at least the current folder out.
  SetDllDirectoryW(L"");
}
