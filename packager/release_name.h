// The rules for a release's name, which is at once the first component of its entries, the text
// that the installer compares entries with, and the source of the version that a folder must hold.
#pragma once

#include <optional>
#include <string_view>

struct ReleaseNumbers {
  int major;
  int minor;
  int patch;
  int beta;  // 0 unless the name goes on with "-beta" and a number

  bool operator==(const ReleaseNumbers&) const = default;
};

// The numbers that `text` begins with, as in "1.8.19" or "1.9.0-beta4"; none unless it begins with
// three. Whatever else follows is of no account.
std::optional<ReleaseNumbers> ScanReleaseNumbers(std::string_view text);

// Throws Refusal, in words about the release, unless `name` fits the installer's fixed text and
// begins with three numbers.
void CheckReleaseName(std::string_view name);
