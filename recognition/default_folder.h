// The folder that the folder page opens with: a copy of Arduino in one of the likely places, or
// failing that a place to start browsing. Asks IdentifyArduino about each candidate that exists;
// changes nothing on disk.
#pragma once

// Looks through the likely places in a fixed order and returns the first folder that is a supported
// Arduino, with no ranking among several; else the Documents folder, else "C:/". Never null, at
// most 259 characters. Ends in '/', but for a Documents folder so long that there is no room for
// it. The result usually lies in one static text, so the caller copies it at once. HostVersion and
// HostVersionNumber are left as the last candidate tried made them, which need not be the folder
// returned.
const char* DefaultFolder();

// Tries the candidates below the base folder in `buffer` (kFolderSize bytes): "arduino/", then
// "arduino-<release>/" for each supported release, ascending. Returns `buffer`, now holding the
// accepted candidate, or null. A candidate that doesn't exist leaves no trace in the check log.
const char* ProbeBase(char* buffer);

// Turns every backslash of `path` (kFolderSize bytes) into '/' and appends '/' unless the path ends
// in one already. Without room for it the path stays without.
void NormalizeFolder(char* path);
