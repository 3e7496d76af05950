// The host's preferences.txt: where the matched release keeps it, and the edit that makes it select
// one of our boards. A courtesy of the install: nothing here reports a failure or fails an install.
// Nothing guards against an Arduino that is running and holds the file.
#pragma once

// The path of the existing preferences file of the release `version` (HostVersionNumber) for the
// folder `dir`, or null. It lies in one static text of 260 bytes that the next call overwrites.
const char* FindPreferences(const char* dir, int version);

// Rewrites that file in place, without backup, unless its board, package and platform are all ours
// already, or it has 4 GiB less one byte or more: then it isn't touched. As soon as one of the
// three isn't, every line of all three keys is replaced, and a key that is missing is put at the
// head. Replacement lines end in a carriage return and a line feed, all other lines stay byte for
// byte as they are.
void UpdatePreferences(const char* dir, int version);
