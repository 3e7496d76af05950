// The order of the table. Order is part of the format, since the installer visits the entries once,
// from the first to the last: aliases after what they copy, the class files of one archive side by
// side, board files after all else that is installed, the version marker last.
// docs/store_format.md tells the groups and their reasons.
#pragma once

#include <string_view>

// The groups in table order, each one contiguous run of entries.
enum class PayloadGroup {
  kRootTools,  // files of the root that belong nowhere else
  kArm,
  kArmNoneEabi,
  kAvrQuirlo,
  kOtherLibs,
  kDriver,  // root .cat and .inf
  kReleaseWindows,
  kReleaseLibraries,
  kReleaseExamples,
  kReleaseOther,  // keywords.txt, theme.txt, *.java and whatever else a release has
  kExamples,
  kCores,
  kLibraries,
  kArmLib,
  kOtherFolder,
  kImages,  // root .png
  kReleaseBoards,
  kVersionMarker,
};

// The group of an entry. An alias goes by its left side.
PayloadGroup GroupOf(std::string_view name);

// A group's name for messages and listings, such as "release libraries/".
std::string_view GroupTitle(PayloadGroup group);

// Where a root tool or an image stands in its group's fixed list; a name that its list doesn't know
// comes after all of the list.
std::size_t ListedRank(std::string_view name);

// Whether `a` stands before `b`: by group, by listed rank, by release as plain bytes, and then by
// path, component by component, without regard to ASCII case; byte order breaks a tie.
bool ComesBefore(std::string_view a, std::string_view b);
