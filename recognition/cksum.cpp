#include "recognition/cksum.h"

#include <array>

namespace {

constexpr std::uint32_t kPolynomial = 0x04C11DB7;

constexpr std::array<std::uint32_t, 256> MakeTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t value = i << 24;
    for (int bit = 0; bit < 8; ++bit) {
      value = (value & 0x80000000U) != 0 ? (value << 1) ^ kPolynomial : value << 1;
    }
    table[i] = value;
  }
  return table;
}

constexpr std::array<std::uint32_t, 256> kTable = MakeTable();

std::uint32_t Advance(std::uint32_t crc, std::uint32_t byte) {
  return (crc << 8) ^ kTable[(crc >> 24) ^ byte];
}

}  // namespace

std::uint32_t CksumUpdate(std::uint32_t crc, const void* bytes, std::size_t count) {
  const auto* position = static_cast<const unsigned char*>(bytes);
  for (std::size_t i = 0; i < count; ++i) crc = Advance(crc, position[i]);
  return crc;
}

std::uint32_t CksumFinish(std::uint32_t crc, std::uint64_t length) {
  for (; length != 0; length >>= 8) crc = Advance(crc, static_cast<std::uint32_t>(length & 0xFF));
  return ~crc;
}
