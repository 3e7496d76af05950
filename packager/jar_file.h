// The facts about an archive's member by which a build of the IDE is known.
#pragma once

#include <cstdint>
#include <string>

struct MemberFacts {
  std::uint32_t checksum;  // the POSIX cksum of the member's uncompressed bytes
  std::uint64_t size;      // their count
};

// Reads the whole member. Throws Refusal, naming the archive's path, when the archive can't be
// opened or fails the consistency check that the installer makes too, and when it has no such
// member or can't give its bytes.
MemberFacts ReadMemberFacts(const std::string& jar, const std::string& member);
