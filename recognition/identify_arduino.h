// The answer the whole program waits on: is this folder a copy of Arduino that may be patched, and
// which release is it? Tries the folder against every release in the payload, in table order.
// Sets or clears HostVersion and rewrites the check log; changes nothing in the folder.
#pragma once

// `dir` ends in a separator, or is empty while the list of drives is shown: that is no folder and
// matches nothing, and nothing is opened for it. Returns the release's number, major * 10000 +
// minor * 100 + patch, with HostVersion set to its name; 0, with HostVersion empty, when none
// matched. The first in table order that fits its criteria and passes the downgrade guard wins. The
// caller stores the result in HostVersionNumber. Blocks while it reads; nothing is kept between
// calls.
int IdentifyArduino(const char* dir);

// The answer for a folder that is refused unseen: rewrites the check log with `reason`, a line with
// its line end, clears HostVersion and returns 0.
int RefuseFolder(const char* dir, const char* reason);
