#include "tests/recognition/jar_damage.h"

#include <cstddef>
#include <stdexcept>

#include "tests/support/temp_dir.h"

namespace {

// Offsets of the archive format (APPNOTE, sections 4.3.7 and 4.3.12).
constexpr std::size_t kLocalMethod = 8;
constexpr std::size_t kLocalSize = 22;
constexpr std::size_t kLocalNameLength = 26;
constexpr std::size_t kLocalExtraLength = 28;
constexpr std::size_t kLocalHeader = 30;
constexpr std::size_t kDirectoryMethod = 10;

std::size_t Number16(const std::string& bytes, std::size_t offset) {
  return static_cast<unsigned char>(bytes[offset]) +
         static_cast<std::size_t>(static_cast<unsigned char>(bytes[offset + 1])) * 256;
}

std::size_t FindDirectory(const std::string& bytes) {
  const std::size_t offset = bytes.find("PK\1\2");
  if (offset == std::string::npos) throw std::runtime_error("no directory in the jar");
  return offset;
}

void FlipBit(std::string* bytes, std::size_t offset) {
  (*bytes)[offset] = static_cast<char>((*bytes)[offset] ^ 1);
}

}  // namespace

void TruncateJar(const std::string& path) {
  const std::string bytes = ReadFile(path);
  WriteFile(path, bytes.substr(0, bytes.size() / 2));
}

void AlterHeader(const std::string& path) {
  std::string bytes = ReadFile(path);
  FlipBit(&bytes, kLocalSize);
  WriteFile(path, bytes);
}

void FlipDataByte(const std::string& path) {
  std::string bytes = ReadFile(path);
  const std::size_t data =
      kLocalHeader + Number16(bytes, kLocalNameLength) + Number16(bytes, kLocalExtraLength);
  FlipBit(&bytes, (data + FindDirectory(bytes)) / 2);
  WriteFile(path, bytes);
}

void MakeUnreadable(const std::string& path) {
  std::string bytes = ReadFile(path);
  bytes[kLocalMethod] = bytes[FindDirectory(bytes) + kDirectoryMethod] = 97;
  WriteFile(path, bytes);
}
