// What may stand in a file's place and is none.
#pragma once

#include <string>

struct SpecialFile {
  const char* kind;  // a word for a test's name
  // Makes it at `path`, with the folders that it needs. Throws when that fails.
  void (*make)(const std::string& path);
};

// A pipe that nobody else has open, a socket that nobody listens on, and a link to a device that
// never ends.
extern const SpecialFile kSpecialFiles[3];

// What stands at `path` is still no plain file.
bool IsSpecialFile(const std::string& path);
