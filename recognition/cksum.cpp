#include "recognition/cksum.h"

#include <array>

namespace {

constexpr std::uint32_t kPolynomial = 0x04C11DB7;

// Bytes that one step of CksumUpdate takes together: a look-up for each, none of which waits for
// another, in tables that fill a quarter of a first-level cache.
constexpr std::size_t kSlice = 8;

using Table = std::array<std::uint32_t, 256>;

// Table k holds what a byte has become when k more have followed it.
constexpr std::array<Table, kSlice> MakeTables() {
  std::array<Table, kSlice> tables{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t value = i << 24;
    for (Table& table : tables) {
      for (int bit = 0; bit < 8; ++bit) {
        value = (value & 0x80000000U) != 0 ? (value << 1) ^ kPolynomial : value << 1;
      }
      table[i] = value;
    }
  }
  return tables;
}

constexpr std::array<Table, kSlice> kTables = MakeTables();

std::uint32_t Advance(std::uint32_t crc, std::uint32_t byte) {
  return (crc << 8) ^ kTables[0][(crc >> 24) ^ byte];
}

// The checksum is linear: what eight bytes make of it is the sum (exclusive-or) of what each does
// by itself. The old value falls on the first four. Written out, as a compiler that keeps the loop
// takes a third longer.
std::uint32_t AdvanceSlice(std::uint32_t crc, const unsigned char* bytes) {
  return kTables[7][bytes[0] ^ (crc >> 24)] ^ kTables[6][bytes[1] ^ ((crc >> 16) & 0xFF)] ^
         kTables[5][bytes[2] ^ ((crc >> 8) & 0xFF)] ^ kTables[4][bytes[3] ^ (crc & 0xFF)] ^
         kTables[3][bytes[4]] ^ kTables[2][bytes[5]] ^ kTables[1][bytes[6]] ^ kTables[0][bytes[7]];
}

}  // namespace

std::uint32_t CksumUpdate(std::uint32_t crc, const void* bytes, std::size_t count) {
  const auto* position = static_cast<const unsigned char*>(bytes);
  for (; count >= kSlice; count -= kSlice, position += kSlice) crc = AdvanceSlice(crc, position);
  for (; count > 0; --count) crc = Advance(crc, *position++);
  return crc;
}

std::uint32_t CksumFinish(std::uint32_t crc, std::uint64_t length) {
  for (; length != 0; length >>= 8) crc = Advance(crc, static_cast<std::uint32_t>(length & 0xFF));
  return ~crc;
}
