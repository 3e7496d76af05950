#include "platform/windows_library.h"

#include <cstddef>
#include <cwchar>

HMODULE LoadSystemLibrary(const wchar_t* name) {
  wchar_t path[MAX_PATH];
  const std::size_t folder_length = GetSystemDirectoryW(path, MAX_PATH);
  const std::size_t name_size = std::wcslen(name) + 1;
  if (folder_length == 0 || folder_length + 1 + name_size > MAX_PATH) return nullptr;
  path[folder_length] = L'\\';
  std::wmemcpy(path + folder_length + 1, name, name_size);
  return LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}
