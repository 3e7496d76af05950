#include "packager/payload_order.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "packager/entry_names.h"
#include "store/package_version.h"

namespace {

constexpr std::string_view kTools[] = {
    "quirlo.exe",           "quirlo_post_compile.exe", "quirlo_reboot.exe",  "quirlo_cleanup.exe",
    "quirlo_size.exe",      "quirlo_restart.exe",      "quirlo_gateway.exe", "quirlo_ports.exe",
    "quirlo_serialmon.exe", "quirlo_secure.exe",       "Q4Security.jar",     "mktinyfat.exe",
    "stdout_redirect.exe",  "precompile_helper.exe",   "vscode_plugins.exe", "post_install.bat",
    "pre_uninstall.bat"};

constexpr std::string_view kImages[] = {"final.png", "sc.png", "screenshot.png", "quirlo_icon.png",
                                        "quirlo_main.png"};

struct Folder {
  std::string_view prefix;
  PayloadGroup group;
};

constexpr Folder kFolders[] = {
    {"arm/", PayloadGroup::kArm},
    {"arm-none-eabi/", PayloadGroup::kArmNoneEabi},
    {"avrquirlo/", PayloadGroup::kAvrQuirlo},
    {"otherlibs/", PayloadGroup::kOtherLibs},
    {"examples/", PayloadGroup::kExamples},
    {"cores/", PayloadGroup::kCores},
    {"libraries/", PayloadGroup::kLibraries},
    {"armlib/", PayloadGroup::kArmLib},
};

constexpr Folder kReleaseFolders[] = {
    {"WINDOWS/", PayloadGroup::kReleaseWindows},
    {"libraries/", PayloadGroup::kReleaseLibraries},
    {"examples/", PayloadGroup::kReleaseExamples},
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
  if (name.ends_with(".cat") || name.ends_with(".inf")) return PayloadGroup::kDriver;
  if (name.ends_with(".png")) return PayloadGroup::kImages;
  return PayloadGroup::kRootTools;
}

PayloadGroup GroupOfReleaseFile(std::string_view rest) {
  if (rest == "boards.txt" || rest == "platform.txt") return PayloadGroup::kReleaseBoards;
  return GroupByFolder(kReleaseFolders, rest, PayloadGroup::kReleaseOther);
}

template <std::size_t N>
std::size_t RankIn(const std::string_view (&list)[N], std::string_view name) {
  return static_cast<std::size_t>(
      std::distance(std::begin(list), std::find(std::begin(list), std::end(list), name)));
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
      return RankIn(kTools, name);
    case PayloadGroup::kImages:
      return RankIn(kImages, name);
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
