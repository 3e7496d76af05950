#include "tests/wizard/png_chunks.h"

namespace {

constexpr std::size_t kSignatureSize = 8;
constexpr std::size_t kChunkFrame = 12;  // length, type and sum

// The CRC of ISO 3309, bit by bit.
std::uint32_t ChunkSum(const std::string& bytes) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (const char c : bytes) {
    sum ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
  }
  return ~sum;
}

}  // namespace

std::uint32_t NumberAt(const std::string& bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
  }
  return number;
}

void PutNumber(std::string* bytes, std::size_t at, std::uint32_t number) {
  for (std::size_t i = 0; i < 4; ++i) {
    (*bytes)[at + i] = static_cast<char>(number >> (24 - 8 * i));
  }
}

void RepairSums(std::string* file) {
  std::size_t at = kSignatureSize;
  while (at + kChunkFrame <= file->size()) {
    const std::size_t length = NumberAt(*file, at);
    if (length > file->size() - at - kChunkFrame) return;
    PutNumber(file, at + 8 + length, ChunkSum(file->substr(at + 4, length + 4)));
    at += length + kChunkFrame;
  }
}
