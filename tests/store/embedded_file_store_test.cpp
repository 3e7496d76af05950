#include "store/embedded_file_store.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/test_store.h"

namespace {

std::string ContentAt(std::uint32_t index) {
  const PayloadEntry entry = EntryAt(index);
  return {reinterpret_cast<const char*>(entry.data), entry.size};
}

std::vector<TestEntry> FourEntries() {
  return {{"quirlo.exe", "tool"},
          {"libraries/FastLED/src/fastspi_dma.h", ""},
          {"cores/quirlo4/main.cpp", std::string("a\0b", 3)},
          {"quirloduino.txt", "1.60-beta5"}};
}

TEST(LoadEmbeddedFiles, EveryEntryGetsItsOwnBytes) {
  const std::vector<TestEntry> entries = FourEntries();
  const TestStore store(entries, false);
  ASSERT_TRUE(LoadEmbeddedFiles());
  for (std::uint32_t i = 0; i < entries.size(); ++i) {
    EXPECT_EQ(EntryAt(i).name, entries[i].name);
    EXPECT_EQ(ContentAt(i), entries[i].content);
  }
}

// The table's unit is the sum's: 4 + (4 GiB - 1) + 5 are 8 bytes.
TEST(LoadEmbeddedFiles, SizesAreSummedIn32Bits) {
  TestStore store({{"a", "1234"}, {"b", ""}, {"c", "5678"}}, false);
  store.SetSize(1, 0xFFFFFFFF);
  store.SetSize(2, 5);
  ASSERT_TRUE(LoadEmbeddedFiles());
  EXPECT_EQ(ContentAt(0), "1234");
  EXPECT_EQ(Store.data[1], Store.data[0] + 4);
}

TEST(LoadEmbeddedFiles, BeforeItTheDataTableIsEmpty) {
  const TestStore store(FourEntries(), false);
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) EXPECT_EQ(Store.data[i], nullptr);
}

TEST(LoadEmbeddedFiles, EntriesStandEndToEndWithoutGaps) {
  const TestStore store(FourEntries());
  for (std::uint32_t i = 0; i + 1 < Store.entry_count; ++i) {
    EXPECT_EQ(Store.data[i] + Store.sizes[i], Store.data[i + 1]);
  }
}

TEST(LoadEmbeddedFiles, EmptyFileSharesItsPointerWithTheNextEntry) {
  const TestStore store(FourEntries());
  EXPECT_EQ(Store.sizes[1], 0U);
  EXPECT_EQ(Store.data[1], Store.data[2]);
}

TEST(LoadEmbeddedFiles, AliasHasSizeZeroWhateverItsTargetHolds) {
  const TestStore store({{"arm/bin/arm-none-eabi-c++.exe", "compiles"},
                         {"arm/bin/arm-none-eabi-g++.exe --> arm/bin/arm-none-eabi-c++.exe", ""},
                         {"quirloduino.txt", "1.60-beta5"}});
  EXPECT_EQ(Store.sizes[0], 8U);
  EXPECT_EQ(Store.sizes[1], 0U);
  EXPECT_EQ(Store.data[1], Store.data[2]);
}

TEST(LoadEmbeddedFiles, LastEntryEndsWhereTheBlockEnds) {
  const TestStore store(FourEntries());
  EXPECT_EQ(Store.data[3] + Store.sizes[3], Store.data[0] + store.content().size());
}

TEST(LoadEmbeddedFiles, LastEntryOfSizeZeroPointsAtTheEndOfTheBlock) {
  const TestStore store({{"first", "content"}, {"last", ""}});
  EXPECT_EQ(Store.data[1], Store.data[0] + 7);
}

TEST(LoadEmbeddedFiles, FrameOfOneByteMoreThanTheSizesIsRefused) {
  TestStore store(FourEntries(), false);
  store.SetFrame(PackFrame(store.content() + "x"));
  EXPECT_FALSE(LoadEmbeddedFiles());
}

TEST(LoadEmbeddedFiles, FrameOfOneByteLessThanTheSizesIsRefused) {
  TestStore store(FourEntries(), false);
  store.SetFrame(PackFrame(store.content().substr(1)));
  EXPECT_FALSE(LoadEmbeddedFiles());
}

TEST(LoadEmbeddedFiles, TruncatedFrameIsRefusedAtEveryLength) {
  TestStore store(FourEntries(), false);
  const std::string sound = store.frame();
  for (std::size_t length = 0; length < sound.size(); ++length) {
    store.SetFrame(sound.substr(0, length));
    EXPECT_FALSE(LoadEmbeddedFiles()) << length << " bytes of " << sound.size();
    ResetEmbeddedFileStore();
  }
}

TEST(LoadEmbeddedFiles, GarbageIsRefused) {
  TestStore store(FourEntries(), false);
  store.SetFrame("these bytes are no frame at all");
  EXPECT_FALSE(LoadEmbeddedFiles());
}

TEST(LoadEmbeddedFiles, BytesBehindTheFrameAreRefused) {
  TestStore store(FourEntries(), false);
  store.SetFrame(store.frame() + "x");
  EXPECT_FALSE(LoadEmbeddedFiles());
}

TEST(LoadEmbeddedFiles, BrokenContentChecksumIsRefused) {
  TestStore store(FourEntries(), false);
  std::string frame = store.frame();
  for (std::size_t i = frame.size() - 4; i < frame.size(); ++i) {
    frame[i] = static_cast<char>(frame[i] ^ 1);
    store.SetFrame(frame);
    EXPECT_FALSE(LoadEmbeddedFiles());
    ResetEmbeddedFileStore();
    frame[i] = static_cast<char>(frame[i] ^ 1);
  }
  store.SetFrame(frame);
  EXPECT_TRUE(LoadEmbeddedFiles()) << "the frame put right again";
}

TEST(LoadEmbeddedFiles, RefusedFrameLeavesTheDataTableEmpty) {
  TestStore store(FourEntries(), false);
  store.SetFrame("garbage");
  ASSERT_FALSE(LoadEmbeddedFiles());
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) EXPECT_EQ(Store.data[i], nullptr);
}

}  // namespace
