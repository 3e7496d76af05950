// Jar archives for tests, and members of any wanted size and checksum.
#pragma once

#include <cstdint>
#include <map>
#include <string>

using JarMembers = std::map<std::string, std::string>;

// Writes a new archive with these members, deflated, in the order of their names.
void WriteJar(const std::string& path, const JarMembers& members);

// All members of an archive that passes the library's consistency check; throws otherwise.
JarMembers ReadJar(const std::string& path);

// `size` bytes (at least 4) of which POSIX cksum makes `checksum`: the checksum is linear, so four
// free bytes at the end reach every value.
std::string ForgeMember(std::uint32_t checksum, std::size_t size);
