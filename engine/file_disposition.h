// Carries out what engine/disposition_rules.h decides of each entry. Writes below the host folder
// through engine/writers.h; shows nothing.
#pragma once

#include <cstdint>

// Whether the entry disposed of last is of a kind that virus scanners are known to interfere with.
// Cleared by each DisposeEntry; read by the failure advice.
extern bool AntivirusHint;

// Disposes of the entry at `index` for the release in HostVersion. `host_folder` ends in a
// separator. Returns 1 when the entry was written, to a file or to the open archive; 0 when there
// was nothing to do (passed over, removed, or absent already); negative for a failure, after which
// the run has to stop. The words are in the shared error text, but for defects of the payload that
// no user could act on: an index above the last, an alias whose left side passes 511 characters, a
// file directly under cores/, a release that doesn't say where a file goes.
int DisposeEntry(const char* host_folder, std::uint32_t index);
