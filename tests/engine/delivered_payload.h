// A payload in the shape of the delivered one: its 13,570 entries in their groups, order and
// counts. Names that matter are the real ones, the rest is numbered; contents are tiny.
#pragma once

#include <vector>

#include "tests/support/test_store.h"

// An entry holds its own name, unless it is an alias, one of the three empty files, one of the 26
// that hold kUnusedMark, or the locations.txt that the releases share.
std::vector<TestEntry> DeliveredPayload();

// What marks a file as no longer used, with its line end.
extern const char kUnusedMark[];
