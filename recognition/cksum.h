// The checksum of the POSIX cksum utility (IEEE Std 1003.1, "cksum"): a CRC of 32 bits with the
// polynomial 0x04C11DB7, most significant bit first, from 0, without reflection, the length folded
// in last and the result complemented. Plain functions of their arguments.
#pragma once

#include <cstddef>
#include <cstdint>

// `crc` advanced over `count` bytes; the first call takes 0. Calls may be split anywhere.
std::uint32_t CksumUpdate(std::uint32_t crc, const void* bytes, std::size_t count);

// The final value, after `length` (the count of all bytes) is folded in, lowest byte first until
// nothing of it remains, so that a length of 0 feeds nothing.
std::uint32_t CksumFinish(std::uint32_t crc, std::uint64_t length);
