// Damage to a jar of exactly one member, as WriteJar makes it. Each replaces the file at `path`;
// all but the first two leave an archive that passes the library's consistency check.
#pragma once

#include <string>

// Cuts the file to half its length.
void TruncateJar(const std::string& path);

// Makes the member's own header tell another size than the directory does.
void AlterHeader(const std::string& path);

// Turns one bit in the middle of the member's packed data.
void FlipDataByte(const std::string& path);

// Makes both headers name a compression method that no library knows.
void MakeUnreadable(const std::string& path);
