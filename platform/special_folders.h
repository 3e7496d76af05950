// The user's special folders. Asks the system anew at every call and keeps nothing.
#pragma once

#include <cstddef>

// The values are those of Windows' CSIDL_ constants (platform documentation, shlobj.h).
enum class SpecialFolder {
  kPersonal = 5,           // CSIDL_PERSONAL, the Documents folder
  kDesktopDirectory = 16,  // CSIDL_DESKTOPDIRECTORY
  kLocalAppData = 28,      // CSIDL_LOCAL_APPDATA, application data that stays on this machine
  kProgramFiles = 38,      // CSIDL_PROGRAM_FILES
  kProgramFilesX86 = 42,   // CSIDL_PROGRAM_FILESX86
};

// Bytes, terminator included, of the buffer that SpecialFolderPath fills: MAX_PATH of Windows.
inline constexpr std::size_t kSpecialFolderSize = 260;

// Fills `path` (kSpecialFolderSize bytes) with the folder, without a trailing separator. False,
// with `path` empty, when the system has no such folder. Whether it exists is not looked at.
//
// Off Windows the Documents and Desktop folders are the desktop's user directories
// (user-dirs.dirs of the XDG user directories), local application data is XDG_DATA_HOME or its
// default, and there are no program-files folders.
bool SpecialFolderPath(SpecialFolder folder, char* path);
