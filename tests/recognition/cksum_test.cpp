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

// The definition itself: long division, a bit at a time.
std::uint32_t BitByBit(std::uint32_t crc, const char* bytes, std::size_t count) {
  for (std::size_t i = 0; i < count * 8; ++i) {
    const std::uint32_t bit = (static_cast<unsigned char>(bytes[i / 8]) >> (7 - i % 8)) & 1;
    const bool divides = (crc >> 31) != bit;
    crc = divides ? (crc << 1) ^ 0x04C11DB7 : crc << 1;
  }
  return crc;
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

TEST(Cksum, EachLengthAtEachAlignmentIsTheBitByBitDivision) {
  const std::string bytes = RandomBytes(100);
  for (std::size_t offset = 0; offset < 16; ++offset) {
    for (std::size_t count = 0; count <= bytes.size() - offset; ++count) {
      ASSERT_EQ(CksumUpdate(0xDEADBEEF, bytes.data() + offset, count),
                BitByBit(0xDEADBEEF, bytes.data() + offset, count))
          << count << " bytes at " << offset;
    }
  }
}

TEST(Cksum, EachSingleBitInASliceIsTheBitByBitDivision) {
  for (std::size_t bit = 0; bit < 16 * 8; ++bit) {
    std::string bytes(16, '\0');
    bytes[bit / 8] = static_cast<char>(0x80 >> bit % 8);
    ASSERT_EQ(CksumUpdate(0, bytes.data(), bytes.size()), BitByBit(0, bytes.data(), bytes.size()))
        << "bit " << bit;
  }
}

TEST(Cksum, RandomPiecesFromRandomValuesAreTheBitByBitDivision) {
  std::mt19937 generator(20261121);
  const std::string bytes = RandomBytes(20000);
  for (int run = 0; run < 500; ++run) {
    const std::uint32_t start = static_cast<std::uint32_t>(generator());
    std::uint32_t crc = start;
    std::size_t position = generator() % 100;
    const std::size_t begin = position;
    for (int piece = 0; piece < 5; ++piece) {
      const std::size_t count = generator() % 2000;
      crc = CksumUpdate(crc, bytes.data() + position, count);
      position += count;
    }
    ASSERT_EQ(crc, BitByBit(start, bytes.data() + begin, position - begin)) << "run " << run;
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
