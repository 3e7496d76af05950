// Removes six library folders of old package versions from the host, at the end of an install from
// the wizard. A courtesy of the install: every failure is passed over, what can't be removed stays,
// and nothing here reports anything. Deletes below the folder of LIBRARY_SUBDIR alone, but follows
// links on its way, as stat does.
#pragma once

// Removes the six paths, in order, from the host folder `dir`, which may end in a separator,
// whatever libraries the user chose. A path that is no folder is passed over.
void RemoveOldLibraries(const char* dir);

// Deletes all that the folder `path` holds and leaves the folder itself to the caller. 1 when it
// could be opened, 0 when not.
int RemoveTree(const char* path);
