// Removes six library folders of old package versions from the host, at the end of an install from
// the wizard. A courtesy of the install: every failure is passed over, what can't be removed stays,
// and nothing here reports anything. Deletes what lies by its path in the six folders below that of
// LIBRARY_SUBDIR, and through links that lead out of them, as stat follows those.
#pragma once

// Below the folder of LIBRARY_SUBDIR. The last names a subfolder only: an SD folder stays, with its
// other content.
inline constexpr const char* kOldLibraries[] = {
    "Adafruit_GFX", "Adafruit_CC3000", "Adafruit_RA8875", "openGLCD", "ST7565", "SD/utility"};

// Removes the six paths, in order, from the host folder `dir`, which may end in a separator,
// whatever libraries the user chose. A path that is no folder is passed over.
void RemoveOldLibraries(const char* dir);

// Deletes what the folder `path` holds and leaves the folder itself to the caller. An entry whose
// path would pass 259 characters is taken for the one with the beginning of its name. 1 when the
// folder could be opened, whatever stayed in it; 0 when not, or when its path has 258 characters or
// more and so leaves no room for an entry's name.
int RemoveTree(const char* path);
