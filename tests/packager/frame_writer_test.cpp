#include "packager/frame_writer.h"

#include <gtest/gtest.h>
#include <zstd.h>

#include <string>

#include "packager/frame_reader.h"
#include "packager/refusal.h"
#include "tests/support/temp_dir.h"

namespace {

// The frame of `content`, appended in pieces of `piece` bytes.
std::string FrameOf(const std::string& content, const FrameOptions& options,
                    std::size_t piece = 1000) {
  const TempDir dir;
  const std::string path = dir / "frame";
  FrameWriter writer(path, content.size(), options);
  for (std::size_t i = 0; i < content.size(); i += piece) {
    writer.Append(std::string_view(content).substr(i, piece));
  }
  const std::uint64_t length = writer.Finish();
  std::string frame = ReadFile(path);
  EXPECT_EQ(frame.size(), length);
  return frame;
}

std::string SomeText(std::size_t size) {
  std::string text;
  std::uint32_t state = 1;
  while (text.size() < size) {
    state = state * 1664525 + 1013904223;
    text += std::to_string(state >> 20);
  }
  return text;
}

TEST(FrameWriter, FrameHasSizeAndChecksumAndNoDictionary) {
  const std::string content = SomeText(5000);
  const std::string frame = FrameOf(content, {});
  EXPECT_EQ(ZSTD_getFrameContentSize(frame.data(), frame.size()), content.size());
  EXPECT_EQ(ZSTD_getDictID_fromFrame(frame.data(), frame.size()), 0U);
  EXPECT_EQ(ExpandFrame("frame", frame, content.size()), content);
}

TEST(FrameWriter, BytesDoNotDependOnThePiecesOrThreads) {
  const std::string content = SomeText(std::size_t{5} << 20);  // of several jobs
  const std::string expected = FrameOf(content, {1, 1});
  EXPECT_TRUE(FrameOf(content, {1, 1}, 1 << 20) == expected);
  EXPECT_TRUE(FrameOf(content, {1, 2}, 777) == expected);
  EXPECT_TRUE(FrameOf(content, {1, 5}, std::size_t{5} << 20) == expected);
}

TEST(FrameWriter, EveryLevelExpandsToTheSame) {
  const std::string content = SomeText(3000);
  for (int level = kLowestLevel; level <= kHighestLevel; ++level) {
    EXPECT_EQ(ExpandFrame("frame", FrameOf(content, {level, 1}), content.size()), content) << level;
  }
}

TEST(FrameWriter, MatchReachesAcrossTheWholeContent) {
  // 12 MiB apart: far beyond what the lowest level's own window would see.
  const std::string far = SomeText(std::size_t{6} << 20);
  std::string noise;
  std::uint32_t state = 3;
  while (noise.size() < (std::size_t{6} << 20)) {
    state = state * 1664525 + 1013904223;
    noise += static_cast<char>(state >> 24);
  }
  const std::size_t once = FrameOf(far + noise, {1, 1}).size();
  const std::size_t twice = FrameOf(far + noise + far, {1, 1}).size();
  EXPECT_LT(twice, once + far.size() / 100);
}

TEST(FrameWriter, FewerBytesThanPromisedAreRefused) {
  const TempDir dir;
  FrameWriter writer(dir / "frame", 10, {});
  writer.Append("12345");
  EXPECT_THROW(writer.Finish(), Refusal);
}

TEST(FrameWriter, MoreBytesThanPromisedAreRefused) {
  const TempDir dir;
  FrameWriter writer(dir / "frame", 3, {});
  EXPECT_THROW(
      {
        writer.Append("12345");
        writer.Finish();
      },
      Refusal);
}

TEST(FrameReader, FrameWithoutAChecksumIsRefused) {
  std::string frame(ZSTD_compressBound(5), '\0');
  frame.resize(ZSTD_compress(frame.data(), frame.size(), "12345", 5, 1));
  try {
    ExpandFrame("f", frame, 5);
    FAIL();
  } catch (const Refusal& refusal) {
    EXPECT_STREQ(refusal.what(), "f: the frame has no content checksum");
  }
}

TEST(FrameReader, EveryTruncationAndEveryFlippedBitIsRefused) {
  const std::string content = SomeText(300);
  const std::string frame = FrameOf(content, {});
  for (std::size_t size = 0; size < frame.size(); ++size) {
    EXPECT_THROW(ExpandFrame("f", frame.substr(0, size), content.size()), Refusal) << size;
  }
  for (std::size_t bit = 0; bit < frame.size() * 8; ++bit) {
    std::string damaged = frame;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << (bit % 8)));
    try {
      // What the format leaves unused may be flipped, but the content can never differ.
      EXPECT_EQ(ExpandFrame("f", damaged, content.size()), content) << bit;
    } catch (const Refusal&) {
      continue;
    }
  }
}

}  // namespace
