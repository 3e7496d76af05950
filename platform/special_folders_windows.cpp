#include "platform/special_folders.h"

// shlobj.h stands on it.
#include <windows.h>

#include <shlobj.h>

#include "platform/windows_text.h"

static_assert(static_cast<int>(SpecialFolder::kPersonal) == CSIDL_PERSONAL);
static_assert(static_cast<int>(SpecialFolder::kDesktopDirectory) == CSIDL_DESKTOPDIRECTORY);
static_assert(static_cast<int>(SpecialFolder::kLocalAppData) == CSIDL_LOCAL_APPDATA);
static_assert(static_cast<int>(SpecialFolder::kProgramFiles) == CSIDL_PROGRAM_FILES);
static_assert(static_cast<int>(SpecialFolder::kProgramFilesX86) == CSIDL_PROGRAM_FILESX86);
static_assert(kSpecialFolderSize == MAX_PATH);

bool SpecialFolderPath(SpecialFolder folder, char* path) {
  wchar_t found[MAX_PATH];
  if (SHGetSpecialFolderPathW(nullptr, found, static_cast<int>(folder), FALSE) != FALSE &&
      Utf8FromWide(found, path, kSpecialFolderSize)) {
    return true;
  }
  path[0] = '\0';
  return false;
}
