#include "packager/payload_order.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "packager/entry_names.h"
#include "store/payload_format.h"

namespace {

struct Folder {
  std::string_view prefix;
  PayloadGroup group;
};

constexpr Folder kFolders[] = {
    {kArmFolder, PayloadGroup::kArm},
    {kArmNoneEabiFolder, PayloadGroup::kArmNoneEabi},
    {kAvrQuirloFolder, PayloadGroup::kAvrQuirlo},
    {kOtherLibsFolder, PayloadGroup::kOtherLibs},
    {kExamplesFolder, PayloadGroup::kExamples},
    {kCoresFolder, PayloadGroup::kCores},
    {kLibrariesFolder, PayloadGroup::kLibraries},
    {kArmLibFolder, PayloadGroup::kArmLib},
};

constexpr Folder kReleaseFolders[] = {
    {kWindowsFolder, PayloadGroup::kReleaseWindows},
    {kLibrariesFolder, PayloadGroup::kReleaseLibraries},
    {kExamplesFolder, PayloadGroup::kReleaseExamples},
};

constexpr std::string_view kTitles[] = {
    "root tools",          "arm/",          "arm-none-eabi/",   "avrquirlo/",
    "otherlibs/",          "driver",        "release WINDOWS/", "release libraries/",
    "release examples/",   "release files", "examples/",        "cores/",
    "libraries/",          "armlib/",       "other folders",    "images",
    "release board files", "version marker"};
static_assert(std::size(kTitles) == static_cast<std::size_t>(PayloadGroup::kVersionMarker) + 1);

template <std::size_t N>
PayloadGroup GroupByFolder(const Folder (&folders)[N], std::string_view path,
                           PayloadGroup otherwise) {
  for (const Folder& folder : folders) {
    if (path.starts_with(folder.prefix)) return folder.group;
  }
  return otherwise;
}

PayloadGroup GroupOfRootFile(std::string_view name) {
  if (name == kVersionMarkerName) return PayloadGroup::kVersionMarker;
  if (name.ends_with(kDriverCatalogEnding) || name.ends_with(kDriverInfEnding))
    return PayloadGroup::kDriver;
  if (name.ends_with(kPictureEnding)) return PayloadGroup::kImages;
  return PayloadGroup::kRootTools;
}

PayloadGroup GroupOfReleaseFile(std::string_view rest) {
  if (rest == kBoardsFile || rest == kPlatformFile) return PayloadGroup::kReleaseBoards;
  return GroupByFolder(kReleaseFolders, rest, PayloadGroup::kReleaseOther);
}

std::string_view NameOf(const RootFile& file) {
  return file.name;
}
std::string_view NameOf(const char* picture) {
  return picture;
}

template <class Item, std::size_t N>
std::size_t RankIn(const Item (&list)[N], std::string_view name) {
  const auto* const position = std::find_if(
      std::begin(list), std::end(list), [name](const Item& item) { return NameOf(item) == name; });
  return static_cast<std::size_t>(std::distance(std::begin(list), position));
}

// The end of a component ranks below every character, so that a folder's files stand together and
// "Audio/" comes before "Audio-effects/".
int RankOf(char c) {
  return c == '/' ? 0 : static_cast<unsigned char>(FoldCase(c));
}

int ComparePaths(std::string_view a, std::string_view b) {
  const std::size_t shared = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < shared; ++i) {
    if (RankOf(a[i]) != RankOf(b[i])) return RankOf(a[i]) - RankOf(b[i]);
  }
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return a.compare(b);
}

}  // namespace

PayloadGroup GroupOf(std::string_view name) {
  const std::string_view path = InstalledPath(name);
  const bool in_root = path.find('/') == std::string_view::npos;
  if (in_root) return GroupOfRootFile(path);
  if (IsReleasePrefixed(path)) return GroupOfReleaseFile(AfterFirstComponent(path));
  return GroupByFolder(kFolders, path, PayloadGroup::kOtherFolder);
}

std::string_view GroupTitle(PayloadGroup group) {
  return kTitles[static_cast<std::size_t>(group)];
}

std::size_t ListedRank(std::string_view name) {
  switch (GroupOf(name)) {
    case PayloadGroup::kRootTools:
      return RankIn(kRootFiles, name);
    case PayloadGroup::kImages:
      return RankIn(kPictures, name);
    default:
      return 0;
  }
}

bool ComesBefore(std::string_view a, std::string_view b) {
  const PayloadGroup group_a = GroupOf(a);
  const PayloadGroup group_b = GroupOf(b);
  if (group_a != group_b) return group_a < group_b;
  const std::size_t rank_a = ListedRank(a);
  const std::size_t rank_b = ListedRank(b);
  if (rank_a != rank_b) return rank_a < rank_b;
  if (IsReleasePrefixed(a) && IsReleasePrefixed(b)) {
    // Byte order, not the order of the numbers: 1.8.13 is tried before 1.8.5.
    const int releases = FirstComponent(a).compare(FirstComponent(b));
    if (releases != 0) return releases < 0;
  }
  return ComparePaths(InstalledPath(a), InstalledPath(b)) < 0;
}
