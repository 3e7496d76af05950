// What a release's directory_criteria.txt must be like so that it proves something. The installer
// passes over a line that it doesn't know and accepts every folder for a file without a line that
// it does; so whatever it would pass over is refused here, unless it is plainly a comment. The line
// language stands in docs/criteria_language.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A zipcksum: line: a member of one of the host's archives, and the checksums and sizes by which
// the builds of the release are known.
struct ProvenMember {
  std::size_t line;  // counted from 1
  std::string archive;
  std::string member;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> pairs;  // checksum, size
};

struct Criteria {
  std::vector<ProvenMember> members;
  std::vector<std::string> archives;  // of all zipcksum: and zipfile: lines
};

// Reads a criteria file with the installer's own reader. Throws Refusal, in words about `name`, at
// the first line that the installer would pass over, cut or misread, and for a file that names no
// version or no member of an archive.
Criteria ReadCriteria(std::string_view name, std::string_view content);
