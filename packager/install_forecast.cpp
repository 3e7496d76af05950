#include "packager/install_forecast.h"

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <utility>

#include "packager/entry_names.h"
#include "packager/refusal.h"
#include "packager/release_name.h"
#include "store/location_value.h"
#include "store/payload_format.h"

namespace {

std::size_t FindEntry(const PayloadView& payload, const std::string& name) {
  const auto position =
      std::find_if(payload.entries.begin(), payload.entries.end(),
                   [&name](const PayloadFile& entry) { return entry.name == name; });
  return static_cast<std::size_t>(position - payload.entries.begin());
}

// The values of the release's locations.txt, read as the installer reads them.
std::map<std::string, std::string, std::less<>> ReadLocations(const PayloadView& payload,
                                                              const std::string& release) {
  const std::size_t index = FindEntry(payload, release + kLocationsFileEnding);
  if (index == payload.entries.size()) throw Refusal(release, "the payload has no such release");
  const std::string text = payload.read(index);
  std::map<std::string, std::string, std::less<>> locations;
  for (const char* key : kLocationKeys) {
    char value[kLocationValueSize];
    if (FindLocationValue(reinterpret_cast<const unsigned char*>(text.data()), text.size(), key,
                          value)) {
      locations[key] = value;
    }
  }
  return locations;
}

void CheckLibrary(const PayloadView& payload, const std::string& library) {
  const std::string folder = kLibrariesFolder + library + "/";
  const bool is_there =
      std::any_of(payload.entries.begin(), payload.entries.end(),
                  [&folder](const PayloadFile& entry) { return entry.name.starts_with(folder); });
  if (!is_there) throw Refusal(library, "the payload has no such library");
}

bool ComesBeforeByNumber(const std::string& a, const std::string& b) {
  const auto numbers_a = ScanReleaseNumbers(a);
  const auto numbers_b = ScanReleaseNumbers(b);
  if (!numbers_a || !numbers_b || *numbers_a == *numbers_b) return a < b;
  return std::tie(numbers_a->major, numbers_a->minor, numbers_a->patch, numbers_a->beta) <
         std::tie(numbers_b->major, numbers_b->minor, numbers_b->patch, numbers_b->beta);
}

}  // namespace

std::string LandingPath(const Foretold& foretold) {
  switch (foretold.action) {
    case DispositionAction::kWriteFile:
    case DispositionAction::kRemove:
      return foretold.place + foretold.file;
    case DispositionAction::kWriteObject:
      return foretold.place;
    case DispositionAction::kPassOver:
    case DispositionAction::kFail:
      break;
  }
  return {};
}

std::vector<std::string> ReleasesOf(const PayloadView& payload) {
  std::vector<std::string> releases;
  for (const PayloadFile& entry : payload.entries) {
    if (entry.name.ends_with(kCriteriaFileEnding)) {
      releases.emplace_back(FirstComponent(entry.name));
    }
  }
  std::sort(releases.begin(), releases.end(), ComesBeforeByNumber);
  return releases;
}

InstallForecast::InstallForecast(const PayloadView& payload, std::string release,
                                 std::set<std::string> left_out)
    : payload_(payload),
      release_(std::move(release)),
      left_out_(std::move(left_out)),
      locations_(ReadLocations(payload, release_)) {
  for (const std::string& library : left_out_) CheckLibrary(payload, library);
  for (std::size_t i = 0; i < payload.entries.size(); ++i) {
    index_of_.emplace(payload.entries[i].name, i);  // the first of that name counts
  }
}

Foretold InstallForecast::At(std::size_t index) const {
  const PayloadFile& entry = payload_.entries[index];
  std::string bytes;
  if (entry.size == kRemovalSize && entry.name.starts_with(kCoresFolder)) {
    bytes = payload_.read(index);
  }
  const Disposition answer =
      DecideEntry({entry.name.c_str(), static_cast<std::uint32_t>(index),
                   static_cast<std::uint32_t>(entry.size),
                   reinterpret_cast<const unsigned char*>(bytes.data())},
                  {release_.c_str(), this, Location, FindEntryBelow, IsSelected});
  return {answer.action,
          answer.rule,
          answer.antivirus_hint,
          answer.place,
          std::string(answer.file, answer.file_length),
          answer.source};
}

std::string InstallForecast::LocationOf(const char* key) const {
  const char* value = Location(this, key);
  return value == nullptr ? std::string() : value;
}

const char* InstallForecast::Location(const void* user, const char* key) {
  const auto& locations = static_cast<const InstallForecast*>(user)->locations_;
  const auto found = locations.find(key);
  return found == locations.end() ? nullptr : found->second.c_str();
}

int InstallForecast::FindEntryBelow(const void* user, const char* name, std::uint32_t end) {
  const auto& index_of = static_cast<const InstallForecast*>(user)->index_of_;
  const auto found = index_of.find(name);
  return found == index_of.end() || found->second >= end ? -1 : static_cast<int>(found->second);
}

bool InstallForecast::IsSelected(const void* user, const char* library) {
  return !static_cast<const InstallForecast*>(user)->left_out_.contains(library);
}
