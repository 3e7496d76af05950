// The forms an entry's name can have, and what the packager asks of a name: its release, the rest
// behind it, its alias parts. Plain functions of their arguments; views point into the argument.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "store/payload_format.h"

// Where, below a release, the class files of the host's two archives stand.
inline constexpr std::string_view kArchiveTrees[] = {kIdeJarTree, kCoreJarTree};

struct AliasParts {
  std::string_view left;    // the path to install
  std::string_view target;  // the exact name of the entry that holds the content
};

// The parts of an alias, split at the first separator as the installer does; none for other names.
std::optional<AliasParts> SplitAlias(std::string_view name);

// The path that a name stands for in a tree: an alias's left side, otherwise the name itself.
std::string_view InstalledPath(std::string_view name);

bool IsDigit(char c);

// Whether the name has the release-prefixed form: a leading digit is its only mark.
bool IsReleasePrefixed(std::string_view name);

// The first path component; the whole name when it is a root file's.
std::string_view FirstComponent(std::string_view name);

// What follows the first "/"; empty for a root file.
std::string_view AfterFirstComponent(std::string_view name);

// Whether the entry is a class file that the installer writes into one of the host's archives.
bool IsArchiveObject(std::string_view name);

// ASCII letters in lower case, all else as it is, whatever the locale.
char FoldCase(char c);
std::string FoldCase(std::string_view text);
