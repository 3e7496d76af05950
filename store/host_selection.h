// Which Arduino folder the run works on, and which release it holds. Process-wide state of plain
// texts and numbers, here because every part above reads it; nothing here looks at the disk.
#pragma once

#include <cstddef>

inline constexpr std::size_t kFolderSize = 260;      // bytes of a folder text, with terminator
inline constexpr std::size_t kHostVersionSize = 64;  // bytes of a release name, with terminator

// The folder that recognition judged last and that the install uses. Ends in a separator: a
// backslash from the command line, '/' from the folder page. Written by both of them.
extern char HostFolder[kFolderSize];

// The folder that the folder page shows. The command line leaves a plain copy of its argument
// here, without the added separator.
extern char BrowsedFolder[kFolderSize];

// The matched release, which is also the prefix of its payload entries, and its length. Empty with
// length 0 while no release matched. Written by IdentifyArduino alone.
extern char HostVersion[kHostVersionSize];
extern std::size_t HostVersionLength;

// The result of the last IdentifyArduino as its caller stored it: major * 10000 + minor * 100 +
// patch, so 1.8.19 is 10819; 0 means that HostFolder is no supported Arduino.
extern int HostVersionNumber;

// Makes `release` (at most kHostVersionSize - 1 characters, the rest is cut) the matched release;
// the empty text means none.
void SelectRelease(const char* release);

// Back to the state at program start, for tests.
void ResetHostSelection();
