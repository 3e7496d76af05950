// What quirloduino-pack does once its command line is understood. Each function throws Refusal when
// the payload is refused or a step fails; results for the user go to the standard output.
#pragma once

#include <filesystem>

#include "packager/frame_writer.h"

struct PackRequest {
  std::filesystem::path tree;
  std::filesystem::path output;   // a folder, created if need be
  std::filesystem::path depfile;  // empty for none
  FrameOptions frame;
};

// Writes payload.zst, payload.tbl and payload_tables.cpp into the output folder, and the dependency
// file. After a throw none of them stands there, not even from an earlier run.
void PackTree(const PackRequest& request);

// Prints index, size and name of every entry of the tree's table, tabs between them.
void ListTree(const std::filesystem::path& tree);
