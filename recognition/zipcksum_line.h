// The argument of a zipcksum: line taken apart. Works on the caller's text alone; the packager uses
// it to refuse malformed lines with the very test that the installer would make.
#pragma once

#include <cstddef>
#include <cstdint>

#include "store/payload_format.h"

// Room for the numbers of one line. A count that reaches it makes the line malformed.
inline constexpr std::size_t kZipcksumNumbers = 2 * kMostPairs + 2;

struct ZipcksumLine {
  std::uint32_t numbers[kZipcksumNumbers];  // checksum, size, checksum, size, ...
  std::size_t count;                        // even and at least 2
  const char* member;                       // points into the text that was split
};

// Splits `text`, "<archive> <cksum> <size> [<cksum> <size> ...] <member>", in place: the blanks
// behind the archive's name become terminators, so that `text` is the archive's name alone. The
// numbers end at the first token that doesn't scan as one, and the member is all from there on, so
// a member that begins with a digit is taken for a number. False for a malformed line: no blank, 32
// numbers or more, fewer than two, an odd count, or nothing behind the last number.
bool SplitZipcksumLine(char* text, ZipcksumLine* line);
