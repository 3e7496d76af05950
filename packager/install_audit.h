// An Arduino folder held against what an install of a release should have left in it. Reads only.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "packager/install_forecast.h"

enum class FindingKind {
  kMissing,     // a file or member of an archive isn't there
  kDiffers,     // it is there with other bytes
  kUnreadable,  // it, or the archive, can't be read
  kRetired,     // a file that the install removes is still there
  kMarker,      // the version marker is missing or says something else
};

// One thing that isn't as the install leaves it.
struct Finding {
  FindingKind kind;
  std::string path;             // below the host folder: of a file, or of an archive
  std::string member;           // of the archive; empty when it is about the file or archive itself
  std::string words;            // how it differs, or why it can't be read; may be empty
  bool antivirus_hint = false;  // virus scanners are known to take such files
};

struct HostAudit {
  // How many of each were looked at. What two entries write to one place counts once, for the later
  // is what an install leaves.
  std::size_t files = 0;
  std::size_t members = 0;
  std::size_t removals = 0;
  std::vector<Finding> findings;      // in table order
  std::optional<std::string> marker;  // what the version marker says, at most its first 80 bytes
  // What an install may well have left so: libraries of which nothing is there, as when the user
  // didn't tick them, and the places of old libraries that an install from the wizard removes and a
  // silent one doesn't.
  std::vector<std::string> absent_libraries;
  std::vector<std::string> old_libraries;
};

// Throws Refusal when `host` is no folder, and when the install of this payload itself would fail
// at an entry.
HostAudit AuditHost(const PayloadView& payload, const InstallForecast& forecast,
                    const std::filesystem::path& host);
