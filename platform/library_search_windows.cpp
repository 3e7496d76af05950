#include "platform/library_search.h"

#include <windows.h>

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
