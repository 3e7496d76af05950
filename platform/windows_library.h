// Libraries of the system, from the system's own folder. For sources of Windows alone.
#pragma once

#include <windows.h>

// Loads a library by the whole path of its file in the system's folder, and what that needs in its
// turn from there too: no search takes place in which a file of the same name beside the program
// could be found first, on no Windows, whatever flags it knows. Null when the system has none; the
// library stays loaded.
HMODULE LoadSystemLibrary(const wchar_t* name);
