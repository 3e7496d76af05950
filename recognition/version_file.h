// The version that an Arduino folder's lib/version.txt states. Reads the stream that the caller
// opened and leaves it open; the packager's tools read with it what the installer will.
#pragma once

#include <cstdio>

struct ArduinoVersion {
  int major;
  int minor;
  int patch;
  int beta;  // 0 for none

  bool operator==(const ArduinoVersion&) const = default;
};

enum class VersionFile {
  kRead,       // *version is filled
  kNightly,    // a nightly build, which has no version
  kMalformed,  // none of the forms
};

// Reads three numbers as scanf's "%d.%d.%d" finds them at the head of the file (blanks and line
// ends ahead of each are passed over), or else a first line, of which 127 characters count, of the
// form "PR-beta1.5-BUILD-48" of old test builds, where patch is 0 and the build is the beta. What
// follows the three numbers is ignored: a "-beta" stands in the names of releases alone, never in a
// folder.
VersionFile ReadVersionFile(std::FILE* file, ArduinoVersion* version);
