#include "recognition/cksum.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

#include "tests/support/temp_dir.h"

namespace {

std::uint32_t Cksum(const std::string& bytes) {
  return CksumFinish(CksumUpdate(0, bytes.data(), bytes.size()), bytes.size());
}

// What the system's cksum utility says of a file.
std::uint32_t UtilityCksum(const std::string& path) {
  std::FILE* pipe = popen(("cksum '" + path + "'").c_str(), "r");
  if (pipe == nullptr) return 0;
  char line[256] = "";
  const char* read = std::fgets(line, sizeof line, pipe);
  pclose(pipe);
  return read == nullptr ? 0 : static_cast<std::uint32_t>(std::stoul(line));
}

std::string RandomBytes(std::size_t size) {
  std::mt19937 generator(static_cast<std::uint32_t>(size));
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(generator());
  return bytes;
}

struct Vector {
  std::string bytes;
  std::uint32_t checksum;
};

// Printed by the cksum utility of GNU coreutils 9.1.
const Vector kVectors[] = {
    {"", 4294967295U},
    {"a", 1220704766U},
    {"123456789", 930766865U},
    {"hello world\n", 3733384285U},
    {std::string(256, ' '), 4113280680U},
    {std::string(65536, '\0'), 4215202376U},
};

TEST(Cksum, KnownTextsGiveTheUtilitysValues) {
  for (const Vector& vector : kVectors) {
    EXPECT_EQ(Cksum(vector.bytes), vector.checksum) << vector.bytes.substr(0, 20);
  }
}

TEST(Cksum, RandomBytesGiveTheUtilitysValues) {
  const TempDir dir;
  for (const std::size_t size : {1U, 2U, 3U, 255U, 256U, 257U, 4355U, 4356U, 4357U, 65535U, 65536U,
                                 65537U, 1000003U, 16777216U}) {
    const std::string bytes = RandomBytes(size);
    WriteFile(dir / "file", bytes);
    EXPECT_EQ(Cksum(bytes), UtilityCksum(dir / "file")) << size << " bytes";
  }
}

TEST(Cksum, UpdatesSplitAnywhereGiveTheSameValue) {
  const std::string bytes = RandomBytes(1000);
  const std::uint32_t whole = CksumUpdate(0, bytes.data(), bytes.size());
  for (std::size_t split = 0; split <= bytes.size(); ++split) {
    const std::uint32_t head = CksumUpdate(0, bytes.data(), split);
    ASSERT_EQ(CksumUpdate(head, bytes.data() + split, bytes.size() - split), whole) << split;
  }
}

TEST(Cksum, UpdateOverNothingChangesNothing) {
  EXPECT_EQ(CksumUpdate(0x12345678, "", 0), 0x12345678U);
}

TEST(Cksum, LengthIsFoldedInLowestByteFirst) {
  const unsigned char length[] = {0x78, 0x56, 0x34, 0x12};
  EXPECT_EQ(CksumFinish(7, 0x12345678), ~CksumUpdate(7, length, 4));
}

TEST(Cksum, ZeroBytesWithinTheLengthAreFolded) {
  const unsigned char length[] = {0, 0, 0, 0, 1};
  EXPECT_EQ(CksumFinish(7, 0x100000000), ~CksumUpdate(7, length, 5));
}

TEST(Cksum, LengthOfZeroFeedsNothing) {
  EXPECT_EQ(CksumFinish(7, 0), ~7U);
}

}  // namespace
