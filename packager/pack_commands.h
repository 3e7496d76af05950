// What quirloduino-pack does once its command line is understood. Each function throws Refusal when
// the payload is refused or a step fails; results for the user go to the standard output.
#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "packager/frame_writer.h"
#include "packager/warnings.h"

struct PackRequest {
  std::filesystem::path tree;
  std::filesystem::path output;   // a folder, created if need be
  std::filesystem::path depfile;  // empty for none
  FrameOptions frame;
  // Gives warnings beside those of FindWarnings; none for none.
  std::function<std::vector<Warning>(const PayloadTree& tree, const ContentReader& read)>
      more_warnings = {};
  // Told of each warning before anything is written; a Refusal that it throws ends the packing.
  std::function<void(const Warning& warning)> warn = {};
};

// The names of what `pack` writes.
inline constexpr char kFrameName[] = "payload.zst";
inline constexpr char kTableName[] = "payload.tbl";
inline constexpr char kTableSourceName[] = "payload_tables.cpp";

// Writes payload.zst, payload.tbl and payload_tables.cpp into the output folder, and the dependency
// file. After a throw none of them stands there, not even from an earlier run.
void PackTree(const PackRequest& request);

// Prints index, size and name of every entry of a table, tabs between them: of the table that a
// tree will have, or when `source` is a file, of the one that this finished installer carries.
void ListEntries(const std::filesystem::path& source);

// Checks a packed payload as the installer would meet it: that tables and frame agree, that the
// frame expands with its checksum right, and every rule for names, order and control files.
// `packed_in` is a folder that `pack` wrote or a finished installer. When `tree` isn't empty, the
// entries must also be those of that tree, byte for byte. Prints one line when all is well.
void VerifyPacked(const std::filesystem::path& packed_in, const std::filesystem::path& tree);
