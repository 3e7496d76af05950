// What quirloduino-pack does once its command line is understood. Each function throws Refusal when
// the payload is refused or a step fails; results for the user go to the standard output.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "packager/frame_writer.h"
#include "packager/payload_listing.h"
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
// file. After a throw none of them stands there, not even from an earlier run. Prints what the
// payload asks of its users; see LimitsText.
void PackTree(const PackRequest& request);

struct ListRequest {
  std::filesystem::path source;  // a payload tree, or a finished installer
  std::string release;           // empty for the plain table, or in a summary for all releases
  bool summary = false;
  ListingForm form = ListingForm::kText;
};

// Prints every entry of a table, of the one that a tree will have or that an installer carries, and
// with a release also what its install does with each; or the summary: how many by which rule.
void ListEntries(const ListRequest& request);

// Prints all about the entry of this name; see EntryExplanation.
void ExplainEntry(const std::filesystem::path& source, const std::string& name, ListingForm form);

// Checks a packed payload as the installer would meet it: that tables and frame agree, that the
// frame expands with its checksum right, and every rule for names, order and control files.
// `packed_in` is a folder that `pack` wrote or a finished installer. When `tree` isn't empty, the
// entries must also be those of that tree, byte for byte. Prints one line when all is well,
// and what the payload asks of its users.
void VerifyPacked(const std::filesystem::path& packed_in, const std::filesystem::path& tree);
