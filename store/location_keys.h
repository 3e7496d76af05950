// Where each kind of payload file goes inside the host folder, as the selected release's
// locations.txt says. Reads the store and HostVersion; one shared result buffer is its only state.
#pragma once

// The value of `key` (one of kLocationKeys) in the selected release's locations.txt: a path below
// the host folder, a folder's ending in '/', at most 255 characters. It lies in one shared buffer
// and is valid until the next call; a caller that needs two values copies the first.
//
// Null when no release is selected, the key is null or empty, the release has no such file, or the
// file doesn't yield the key. Nothing is cached: each call searches the tables and the file anew.
const char* LookupLocation(const char* key);
