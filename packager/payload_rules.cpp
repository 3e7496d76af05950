#include "packager/payload_rules.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>
#include <string_view>

#include "packager/class_rules.h"
#include "packager/control_file_rules.h"
#include "packager/criteria_rules.h"
#include "packager/entry_names.h"
#include "packager/name_rules.h"
#include "packager/picture_rules.h"
#include "packager/refusal.h"
#include "packager/release_name.h"
#include "store/package_version.h"
#include "store/payload_format.h"

namespace {

// What every release brings for the host's menu of boards.
constexpr std::string_view kBoardFiles[] = {kBoardsFile, kPlatformFile};

using FilesByName = std::map<std::string_view, const PayloadFile*>;

FilesByName ByName(const std::vector<PayloadFile>& files) {
  FilesByName by_name;
  for (const PayloadFile& file : files) by_name.emplace(file.name, &file);
  return by_name;
}

const PayloadFile* Find(const FilesByName& by_name, std::string_view name) {
  const auto position = by_name.find(name);
  return position == by_name.end() ? nullptr : position->second;
}

void CheckCriteriaName(const PayloadFile& file) {
  const std::size_t position = file.name.find(kCriteriaFileEnding);
  if (position == std::string::npos) return;
  const bool is_own = IsReleasePrefixed(file.name) &&
                      position == FirstComponent(file.name).size() &&
                      file.name.ends_with(kCriteriaFileEnding);
  if (!is_own) {
    throw Refusal(file.name, std::string("only a release's own criteria file may have \"") +
                                 kCriteriaFileEnding + "\" in its name");
  }
}

// The installer gives such a file no place and fails.
void CheckCoresFile(const PayloadFile& file) {
  const std::string_view path = InstalledPath(file.name);
  if (!path.starts_with(kCoresFolder)) return;
  const std::string_view rest = AfterFirstComponent(path);
  if (rest.find('/') == std::string_view::npos && rest != kKeywordsFile) {
    throw Refusal(path, "no file but keywords.txt may stand directly in cores/");
  }
}

std::set<std::string_view> ReleaseFolders(const std::vector<PayloadFile>& files,
                                          const std::vector<std::string>& folders) {
  std::set<std::string_view> releases;
  for (const std::string& folder : folders) {
    if (IsReleasePrefixed(folder)) releases.insert(FirstComponent(folder));
  }
  for (const PayloadFile& file : files) {
    if (!IsReleasePrefixed(file.name)) continue;
    if (file.name.find('/') == std::string::npos) {
      throw Refusal(file.name, "a name that begins with a digit must belong to a release");
    }
    releases.insert(FirstComponent(file.name));
  }
  return releases;
}

// Sorted texts have a name right before those that begin with it, or others of that kind between.
void CheckNoneBeginsAnother(const std::set<std::string_view>& releases) {
  for (auto position = releases.begin(); position != releases.end(); ++position) {
    const auto next = std::next(position);
    if (next != releases.end() && next->starts_with(*position)) {
      throw Refusal(*position, "a release's name must not be the beginning of another's, " +
                                   std::string(*next));
    }
  }
}

// The host would have no boards for the package, and no commands to build for one.
void CheckBoardFile(std::string_view release, std::string_view file, const FilesByName& by_name) {
  const std::string wanted = std::string(release) + "/" + std::string(file);
  if (Find(by_name, wanted) != nullptr) return;
  for (const auto& [name, found] : by_name) {
    if (FoldCase(name) == FoldCase(wanted)) {
      throw Refusal(name, "must be named " + std::string(file) + ", in small letters");
    }
  }
  throw Refusal(release, "a release must have a " + std::string(file));
}

std::vector<const PayloadFile*> FilesBelow(const std::string& folder, const FilesByName& by_name) {
  std::vector<const PayloadFile*> files;
  for (auto position = by_name.lower_bound(folder);
       position != by_name.end() && position->first.starts_with(folder); ++position) {
    files.push_back(position->second);
  }
  return files;
}

void CheckRelease(std::string_view release, const FilesByName& by_name, const ContentReader& read) {
  const PayloadFile* criteria = Find(by_name, std::string(release) + kCriteriaFileEnding);
  if (criteria == nullptr) {
    throw Refusal(release,
                  "a folder whose name begins with a digit must be a release and have a "
                  "WINDOWS/directory_criteria.txt");
  }
  CheckReleaseName(release);
  const PayloadFile* locations = Find(by_name, std::string(release) + kLocationsFileEnding);
  if (locations == nullptr) throw Refusal(release, "a release must have a WINDOWS/locations.txt");
  const std::string locations_text = read(*locations);
  CheckLocations(locations->name, locations_text);
  const Criteria proven = ReadCriteria(criteria->name, read(*criteria));
  for (const std::string_view file : kBoardFiles) CheckBoardFile(release, file, by_name);
  CheckClasses(release, FilesBelow(std::string(release) + "/" + kWindowsFolder, by_name),
               locations_text, proven, read);
}

// The installer's list of the releases that it supports would end before the last of them.
void CheckCount(const std::set<std::string_view>& releases) {
  if (releases.size() <= kMostReleases) return;
  throw Refusal(*std::next(releases.begin(), kMostReleases),
                "a payload must not have more than " + std::to_string(kMostReleases) +
                    " releases, not " + std::to_string(releases.size()));
}

void CheckVersionMarker(const FilesByName& by_name, const ContentReader& read) {
  const PayloadFile* marker = Find(by_name, kVersionMarkerName);
  if (marker == nullptr) throw Refusal(kVersionMarkerName, "the version marker is missing");
  const std::string_view version = kPackageVersion;
  if (marker->size != version.size() || read(*marker) != version) {
    throw Refusal(marker->name, "the version marker must hold exactly " + std::string(version) +
                                    ", without a line end");
  }
}

}  // namespace

void CheckContentSize(const std::vector<PayloadFile>& entries) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
  std::uint64_t total = 0;
  for (const PayloadFile& entry : entries) {
    if (entry.size > kMost - total) {
      throw Refusal(entry.name, "with this file the content reaches 4 GiB");
    }
    total += entry.size;
  }
}

void CheckPayload(const std::vector<PayloadFile>& files, const std::vector<std::string>& folders,
                  const ContentReader& read) {
  CheckNoTwins(files);
  for (const PayloadFile& file : files) {
    CheckCriteriaName(file);
    CheckCoresFile(file);
  }
  const FilesByName by_name = ByName(files);
  const std::set<std::string_view> releases = ReleaseFolders(files, folders);
  CheckCount(releases);
  for (const std::string_view release : releases) CheckRelease(release, by_name, read);
  CheckNoneBeginsAnother(releases);
  CheckVersionMarker(by_name, read);
  CheckPictures(files, read);
}
