// What an installer made of a payload will do with each entry, told from the installer's own
// decision (engine/disposition_rules.h) without installing anything.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/disposition_rules.h"
#include "packager/payload_view.h"

// What becomes of one entry.
struct Foretold {
  DispositionAction action;
  std::size_t rule;     // for DispositionRuleTitle
  bool antivirus_hint;  // virus scanners are known to take files of this kind
  std::string place;    // below the host folder: a folder ending in "/", or an archive
  std::string file;     // below that folder, or the object's name in the archive
  std::size_t source;   // the entry that gives the bytes: for an alias its target
};

// Where a file lands or is removed, or the archive that gets an object; empty for neither.
std::string LandingPath(const Foretold& foretold);

// The release folders of a payload, in ascending order of their numbers.
std::vector<std::string> ReleasesOf(const PayloadView& payload);

// An install of one release.
class InstallForecast {
 public:
  // `payload` must outlive the forecast. The libraries of `left_out` are the ones that the user
  // didn't tick. Throws Refusal when the payload has no such release or no such library.
  InstallForecast(const PayloadView& payload, std::string release,
                  std::set<std::string> left_out = {});

  Foretold At(std::size_t index) const;

  const std::string& release() const { return release_; }

  // The value of a key of the release's locations.txt; empty when it doesn't yield the key.
  std::string LocationOf(const char* key) const;

 private:
  static const char* Location(const void* user, const char* key);
  static int FindEntryBelow(const void* user, const char* name, std::uint32_t end);
  static bool IsSelected(const void* user, const char* library);

  const PayloadView& payload_;
  std::string release_;
  std::set<std::string> left_out_;
  std::map<std::string, std::string, std::less<>> locations_;
  std::unordered_map<std::string_view, std::size_t> index_of_;
};
