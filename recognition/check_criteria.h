// The line language of directory_criteria.txt: every line is one fact that must hold of a folder.
// Reads the criteria's text, the folder's files and jars; writes only to the check log. Each file
// and archive is closed before the call returns, and nothing is kept between calls. The language is
// described in docs/criteria_language.md.
#pragma once

#include <cstddef>
#include <cstdint>

#include "store/embedded_file_store.h"

// Characters of an argument that the check log shows; the path behind it has room for more.
inline constexpr std::size_t kShownLimit = 1022;

// Tests the folder against a criteria file's text, line by line. `dir` ends in a separator. `name`
// is the file's name in the payload, which begins with the release and so with the expected
// version; a name that doesn't begin with three numbers never matches. `text` has `size` bytes and
// needs no terminator. Returns 1 when every line held, 0 at the first that didn't; the reason
// stands in the check log alone. The packager puts the same question about an author's folder.
int CheckCriteriaText(const char* dir, const char* name, const char* text, std::size_t size);

// The same with the criteria file at `index` of the store.
inline int CheckCriteria(const char* dir, std::uint32_t index) {
  const PayloadEntry entry = EntryAt(index);
  return CheckCriteriaText(dir, entry.name, reinterpret_cast<const char*>(entry.data), entry.size);
}
