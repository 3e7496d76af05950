// What tells one INF file from another: the whole of its [Version] section. The file name plays no
// part, since the system renames what it copies, and a new DriverVer or CatalogFile makes another
// driver. Reads INF files through the platform's operations and changes nothing.
//
// "Not found" and every failure give the same empty result: no text, or nothing.
#pragma once

#include <cstddef>

// Bytes of the buffer for a [Version] text, terminator included.
inline constexpr std::size_t kVersionTextSize = 8192;

// Collects the values of all lines of the [Version] section of an INF file, given by path or bare
// name, in `buffer` (kVersionTextSize bytes), end to end without a separator; keys are no part of
// it. A line that can't be read, or for which no room is left, is passed over. Returns the number
// of characters, 0 for a file that can't be opened.
int read_inf_version_text(const char* name, char* buffer);

// Looks through the INF files that the system has installed for one with the same [Version] text as
// the staged file. Returns its name, allocated with malloc and owned by the caller, or null. Only
// names that hold "oem" are opened: so the system names what it copies, and reading its own
// hundreds of files takes minutes.
char* find_installed_inf(const char* staged_path);
