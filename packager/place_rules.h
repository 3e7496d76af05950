// Where the entries of a payload land, asked with the installer's own decision for every release:
// what lands too deep to be written whole, and what lands nowhere.
#pragma once

#include <cstddef>
#include <vector>

#include "packager/payload_view.h"
#include "packager/warnings.h"

// Bytes that a path below the host folder may have. The installer's paths hold 259: with these, a
// host folder of 100 bytes and its separator are whole, and a longer one loses the end of a name.
inline constexpr std::size_t kLongestPlace = 158;

// Throws Refusal at the first entry that lands at a longer path in some release.
void CheckPlaces(const PayloadView& payload);

// A warning for each entry that no release installs, though it is none of the files that are there
// for the installer itself. Nothing is said of what tools left, which has a warning of its own.
std::vector<Warning> FindHomeless(const PayloadView& payload);
