// The line language of directory_criteria.txt: every line is one fact that must hold of a folder.
// Reads the payload entry, the folder's files and jars; writes only to the check log. Each file and
// archive is closed before the call returns, and nothing is kept between calls. The language is
// described in docs/criteria_language.md.
#pragma once

#include <cstdint>

// Tests the folder against the criteria file at `index` of the store, line by line. `dir` ends in
// a separator. Returns 1 when every line held, 0 at the first that didn't; the reason stands in
// the check log alone. The expected version comes from the entry's own name, not from its text, so
// an entry whose name doesn't begin with three numbers never matches.
int CheckCriteria(const char* dir, std::uint32_t index);
