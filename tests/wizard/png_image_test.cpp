// Pictures of the payload: every form of PNG that exists, and every way in which one is damaged.
#include "wizard/png_image.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <FL/Fl_Image.H>
#include <png.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "store/embedded_file_store.h"
#include "tests/support/test_store.h"
#include "tests/wizard/png_chunks.h"
#include "tests/wizard/png_maker.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// What libpng asks of the entry goes through here, so that a test can count the bytes.
namespace {
std::size_t bytes_asked_for;
png_rw_ptr wrapped_read;

void CountedRead(png_structp png, png_bytep to, std::size_t count) {
  bytes_asked_for += count;
  wrapped_read(png, to, count);
}
}  // namespace

extern "C" {
void __real_png_set_read_fn(png_structp png, png_voidp state, png_rw_ptr read);

void __wrap_png_set_read_fn(png_structp png, png_voidp state, png_rw_ptr read) {
  wrapped_read = read;
  __real_png_set_read_fn(png, state, CountedRead);
}
}

namespace {

struct Decoded {
  int width;
  int height;
  int depth;
  std::vector<int> pixels;  // every byte
};

Decoded Contents(const my_png_image& image) {
  Decoded decoded{image.w(), image.h(), image.d(), {}};
  for (int i = 0; i < image.w() * image.h() * image.d(); ++i) {
    decoded.pixels.push_back(image.array[i]);
  }
  return decoded;
}

// The file stands last in the store, whose bytes end with it, so that the sanitizer sees a read
// beyond its end.
Decoded DecodeFile(const std::string& file) {
  const TestStore store({{"first", "something else"}, {"picture.png", file}});
  const my_png_image image(1);
  return Contents(image);
}

Decoded Decode(const PngPicture& picture) {
  return DecodeFile(MakePng(picture));
}

void ExpectEmpty(const Decoded& decoded) {
  EXPECT_EQ(decoded.width, 0);
  EXPECT_EQ(decoded.height, 0);
  EXPECT_EQ(decoded.depth, 3);
  EXPECT_THAT(decoded.pixels, IsEmpty());
}

PngPicture Picture(int width, int height, int colour_type, int bit_depth, const std::string& rows) {
  PngPicture picture;
  picture.width = width;
  picture.height = height;
  picture.colour_type = colour_type;
  picture.bit_depth = bit_depth;
  picture.rows = rows;
  return picture;
}

std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) bytes += static_cast<char>(value);
  return bytes;
}

const std::vector<std::uint8_t> kPalette = {1, 2, 3, 40, 50, 60, 200, 210, 220, 255, 254, 253};

// ---- forms ------------------------------------------------------------------------------------

TEST(PngImage, RgbHasThreeChannels) {
  const Decoded image = Decode(Picture(2, 1, 2, 8, Bytes({1, 2, 3, 250, 251, 252})));
  EXPECT_EQ(image.width, 2);
  EXPECT_EQ(image.height, 1);
  EXPECT_EQ(image.depth, 3);
  EXPECT_THAT(image.pixels, ElementsAre(1, 2, 3, 250, 251, 252));
}

TEST(PngImage, RgbaPixelWithAlphaZeroDecodesToFourZeros) {
  const Decoded image = Decode(Picture(3, 1, 6, 8, Bytes({9, 8, 7, 0, 9, 8, 7, 1, 9, 8, 7, 255})));
  EXPECT_EQ(image.depth, 4);
  EXPECT_THAT(image.pixels, ElementsAre(0, 0, 0, 0, 9, 8, 7, 1, 9, 8, 7, 255));
}

TEST(PngImage, GreyHasOneChannel) {
  const Decoded image = Decode(Picture(2, 2, 0, 8, Bytes({0, 100, 200, 255})));
  EXPECT_EQ(image.depth, 1);
  EXPECT_THAT(image.pixels, ElementsAre(0, 100, 200, 255));
}

TEST(PngImage, GreyWithAlphaHasTwoChannelsAndKeepsItsGreyUnderAlphaZero) {
  const Decoded image = Decode(Picture(2, 1, 4, 8, Bytes({77, 0, 88, 255})));
  EXPECT_EQ(image.depth, 2);
  EXPECT_THAT(image.pixels, ElementsAre(77, 0, 88, 255));
}

TEST(PngImage, PaletteWithoutTransparencyHasThreeChannels) {
  PngPicture picture = Picture(4, 1, 3, 8, Bytes({3, 2, 1, 0}));
  picture.palette = kPalette;
  const Decoded image = Decode(picture);
  EXPECT_EQ(image.depth, 3);
  EXPECT_THAT(image.pixels, ElementsAre(255, 254, 253, 200, 210, 220, 40, 50, 60, 1, 2, 3));
}

TEST(PngImage, PaletteWithTransparencyHasFourAndItsClearPixelsAreZero) {
  PngPicture picture = Picture(3, 1, 3, 8, Bytes({0, 1, 2}));
  picture.palette = kPalette;
  picture.transparency = {0, 128};
  const Decoded image = Decode(picture);
  EXPECT_EQ(image.depth, 4);
  EXPECT_THAT(image.pixels, ElementsAre(0, 0, 0, 0, 40, 50, 60, 128, 200, 210, 220, 255));
}

TEST(PngImage, PaletteOfOneTwoAndFourBitsIsExpanded) {
  PngPicture picture = Picture(3, 1, 3, 1, Bytes({0b01000000}));
  picture.palette = {1, 2, 3, 40, 50, 60};
  EXPECT_THAT(Decode(picture).pixels, ElementsAre(1, 2, 3, 40, 50, 60, 1, 2, 3));
  picture.palette = kPalette;
  picture.bit_depth = 2;
  picture.rows = Bytes({0b11100100});
  EXPECT_THAT(Decode(picture).pixels, ElementsAre(255, 254, 253, 200, 210, 220, 40, 50, 60));
  picture.bit_depth = 4;
  picture.rows = Bytes({0x31, 0x20});
  EXPECT_THAT(Decode(picture).pixels, ElementsAre(255, 254, 253, 40, 50, 60, 200, 210, 220));
}

TEST(PngImage, GreyOfOneTwoAndFourBitsIsExpandedToTheWholeRange) {
  EXPECT_THAT(Decode(Picture(3, 1, 0, 1, Bytes({0b01000000}))).pixels, ElementsAre(0, 255, 0));
  EXPECT_THAT(Decode(Picture(4, 1, 0, 2, Bytes({0b00011011}))).pixels,
              ElementsAre(0, 85, 170, 255));
  const Decoded image = Decode(Picture(3, 1, 0, 4, Bytes({0x0F, 0x10})));
  EXPECT_EQ(image.depth, 1);
  EXPECT_THAT(image.pixels, ElementsAre(0, 255, 17));
}

TEST(PngImage, SixteenBitsGiveChannelsOfEight) {
  EXPECT_THAT(Decode(Picture(1, 1, 0, 16, Bytes({0x12, 0x34}))).pixels, ElementsAre(0x12));
  EXPECT_THAT(Decode(Picture(1, 1, 4, 16, Bytes({0x12, 0x34, 0x56, 0x78}))).pixels,
              ElementsAre(0x12, 0x56));
  EXPECT_THAT(Decode(Picture(1, 1, 2, 16, Bytes({1, 2, 3, 4, 5, 6}))).pixels, ElementsAre(1, 3, 5));
  const Decoded image = Decode(Picture(1, 1, 6, 16, Bytes({1, 2, 3, 4, 5, 6, 0, 9})));
  EXPECT_EQ(image.depth, 4);
  EXPECT_THAT(image.pixels, ElementsAre(0, 0, 0, 0));  // its alpha is 0 in eight bits
}

TEST(PngImage, InterlacedIsThePictureThatItIsWithout) {
  for (const int colour_type : {0, 2, 4, 6}) {
    PngPicture picture = Picture(13, 11, colour_type, 8, "");
    const Decoded plain = Decode(picture);
    picture.interlaced = true;
    const Decoded interlaced = Decode(picture);
    EXPECT_EQ(interlaced.width, 13);
    EXPECT_EQ(interlaced.pixels, plain.pixels) << colour_type;
  }
}

TEST(PngImage, TransparencyOfGreyBelowEightBitsFillsItsChannel) {
  PngPicture picture = Picture(2, 1, 0, 4, Bytes({0x5A}));
  picture.transparency = {0, 5};
  const Decoded image = Decode(picture);
  EXPECT_EQ(image.depth, 2);
  EXPECT_THAT(image.pixels, ElementsAre(85, 0, 170, 255));
}

// The counted channel is filled by nothing here: each row holds its plain bytes and then zeros.
TEST(PngImage, TransparencyOfGreyOfEightBitsCountsAChannelThatStaysZero) {
  PngPicture picture = Picture(2, 2, 0, 8, Bytes({10, 20, 30, 40}));
  picture.transparency = {0, 10};
  const Decoded image = Decode(picture);
  EXPECT_EQ(image.depth, 2);
  EXPECT_THAT(image.pixels, ElementsAre(10, 20, 0, 0, 30, 40, 0, 0));
}

TEST(PngImage, TransparencyOfRgbOfEightBitsCountsAChannelThatStaysZero) {
  PngPicture picture = Picture(2, 1, 2, 8, Bytes({1, 2, 3, 4, 5, 6}));
  picture.transparency = {0, 1, 0, 2, 0, 3};
  const Decoded image = Decode(picture);
  EXPECT_EQ(image.depth, 4);
  EXPECT_THAT(image.pixels, ElementsAre(1, 2, 3, 4, 0, 0, 0, 0));
}

TEST(PngImage, TransparencyOfSixteenBitsIsReadInBoundsToo) {
  PngPicture picture = Picture(2, 1, 2, 16, Bytes({1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0}));
  picture.transparency = {0, 1, 0, 2, 0, 3};
  EXPECT_EQ(Decode(picture).depth, 4);
  PngPicture grey = Picture(3, 2, 0, 16, "");
  grey.transparency = {0, 1};
  EXPECT_EQ(Decode(grey).depth, 2);
}

TEST(PngImage, RowsOfOddWidthsFillTheirBytes) {
  for (const int bit_depth : {1, 2, 4, 8}) {
    for (int width = 1; width < 20; ++width) {
      PngPicture picture = Picture(width, 3, 0, bit_depth, "");
      picture.interlaced = width % 2 == 0;
      EXPECT_EQ(Decode(picture).pixels.size(), static_cast<std::size_t>(width) * 3);
    }
  }
}

// ---- entries ----------------------------------------------------------------------------------

TEST(PngImage, NoEntryIsAnEmptyImage) {
  const TestStore store({{"picture.png", PlainPng(2, 2)}});
  for (const int index : {-1, 1, 1000, -1000000}) {
    const my_png_image image(index);
    ExpectEmpty(Contents(image));
    EXPECT_EQ(image.array, nullptr) << index;
    EXPECT_EQ(image.ld(), 0);
    EXPECT_EQ(image.count(), 1);
  }
}

TEST(PngImage, MissingNameIsAnEmptyImage) {
  const TestStore store({{"picture.png", PlainPng(2, 2)}});
  ExpectEmpty(Contents(my_png_image(FindEntryByName("other.png"))));
  ExpectEmpty(Contents(my_png_image("other.png")));
}

TEST(PngImage, NameIsComparedAsAWholeAndTheLastEntryOfItRemains) {
  const TestStore store({{"picture.png", PlainPng(2, 3)},
                         {"picture.pngx", PlainPng(7, 7)},
                         {"picture.png", PlainPng(4, 5)}});
  const my_png_image image("picture.png");
  EXPECT_EQ(image.w(), 4);
  EXPECT_EQ(image.h(), 5);
}

TEST(PngImage, NameWhoseLastEntryIsDamagedKeepsTheOneBefore) {
  const TestStore store({{"picture.png", PlainPng(2, 3)}, {"picture.png", "damage"}});
  EXPECT_EQ(my_png_image("picture.png").h(), 3);
}

TEST(PngImage, OwnsItsPixelsAndOutlivesTheStore) {
  std::unique_ptr<my_png_image> image;
  {
    const TestStore store({{"picture.png", PlainPng(1, 1, 5, 6, 7)}});
    image = std::make_unique<my_png_image>(0);
  }
  EXPECT_EQ(image->alloc_array, 1);
  EXPECT_THAT(Contents(*image).pixels, ElementsAre(5, 6, 7));
}

TEST(PngImage, CopyAndDesaturateAreThoseOfTheToolkit) {
  const TestStore store({{"picture.png", PlainPng(4, 2, 200, 200, 200)}});
  my_png_image image(0);
  const std::unique_ptr<Fl_Image> copy(image.copy(2, 1));
  EXPECT_EQ(copy->w(), 2);
  image.desaturate();
  EXPECT_EQ(image.d(), 1);
}

// ---- damage -----------------------------------------------------------------------------------

TEST(PngImage, EmptyEntryAndOtherContentsAreEmptyImages) {
  ExpectEmpty(DecodeFile(""));
  ExpectEmpty(DecodeFile("not a picture"));
  ExpectEmpty(DecodeFile(std::string(1000, '\0')));
  ExpectEmpty(DecodeFile(std::string("\x89PNG\r\n\x1a\n", 8)));
}

std::vector<std::string> OneOfEachForm() {
  std::vector<std::string> files;
  for (const int colour_type : {0, 2, 3, 4, 6}) {
    for (const bool interlaced : {false, true}) {
      PngPicture picture = Picture(9, 5, colour_type, colour_type == 3 ? 2 : 8, "");
      picture.interlaced = interlaced;
      if (colour_type == 3) {
        picture.palette = kPalette;
        picture.transparency = {0, 128, 255};
      }
      if (colour_type == 0) picture.transparency = {0, 11};
      files.push_back(MakePng(picture));
    }
  }
  return files;
}

TEST(PngImage, TruncatedAtEveryByteIsAnEmptyImage) {
  for (const std::string& file : OneOfEachForm()) {
    for (std::size_t length = 0; length < file.size(); ++length) {
      ExpectEmpty(DecodeFile(file.substr(0, length)));
      if (HasFailure()) FAIL() << "truncated to " << length << " of " << file.size();
    }
    EXPECT_GT(DecodeFile(file).width, 0);
  }
}

TEST(PngImage, BytesBehindTheEndAreNotLookedAt) {
  EXPECT_EQ(DecodeFile(PlainPng(3, 2) + "more").width, 3);
}

TEST(PngImage, EveryFlippedByteIsAnImageOfSomeKindOrAnEmptyOne) {
  for (const std::string& file : OneOfEachForm()) {
    for (std::size_t i = 0; i < file.size(); ++i) {
      for (const int flip : {0x01, 0x80, 0xFF}) {
        std::string damaged = file;
        damaged[i] = static_cast<char>(damaged[i] ^ flip);
        const Decoded image = DecodeFile(damaged);
        EXPECT_EQ(image.pixels.size(),
                  static_cast<std::size_t>(image.width * image.height * image.depth));
      }
    }
  }
}

// Every offset but those of width and height and of the upper half of each chunk's length, whose
// damage has tests of its own: a length of up to 2 GiB is read to its end, in zeros.
std::vector<std::size_t> Offsets(const std::string& file) {
  std::vector<bool> skipped(file.size());
  std::fill_n(skipped.begin(), 24, true);
  for (std::size_t at = 33; at + 12 <= file.size(); at += NumberAt(file, at) + 12) {
    skipped[at] = true;
    skipped[at + 1] = true;
  }
  std::vector<std::size_t> offsets;
  for (std::size_t i = 0; i < file.size(); ++i) {
    if (!skipped[i]) offsets.push_back(i);
  }
  return offsets;
}

TEST(PngImage, RandomDamageWithAndWithoutRightSumsNeverLeavesTheEntry) {
  std::mt19937 random(20260101);
  const std::vector<std::string> files = OneOfEachForm();
  for (int round = 0; round < 3000; ++round) {
    std::string damaged = files[random() % files.size()];
    const std::vector<std::size_t> offsets = Offsets(damaged);
    const std::size_t count = 1 + random() % 6;
    for (std::size_t i = 0; i < count; ++i) {
      damaged[offsets[random() % offsets.size()]] = static_cast<char>(random());
    }
    if (round % 2 == 0) RepairSums(&damaged);
    const Decoded image = DecodeFile(damaged);
    EXPECT_EQ(image.pixels.size(),
              static_cast<std::size_t>(image.width * image.height * image.depth));
  }
}

TEST(PngImage, ChunkLongerThanTheEntryIsReadInZerosAndEndsAsAnEmptyImage) {
  for (const std::string& file : OneOfEachForm()) {
    for (std::size_t at = 8; at + 12 <= file.size(); at += NumberAt(file, at) + 12) {
      std::string damaged = file;
      PutNumber(&damaged, at, 0x00100000);
      ExpectEmpty(DecodeFile(damaged));
    }
  }
}

// Read to its end in zeros, each of these chunks took seconds.
TEST(PngImage, ChunkOf2GigabytesIsGivenUpAfterAMegabyte) {
  const std::string file = PlainPng(2, 2);
  for (std::size_t at = 8; at + 12 <= file.size(); at += NumberAt(file, at) + 12) {
    std::string damaged = file;
    PutNumber(&damaged, at, 0x7FFFFFFF);
    damaged.replace(at + 4, 1, "i");  // a chunk that nobody needs is passed over, not refused
    bytes_asked_for = 0;
    ExpectEmpty(DecodeFile(damaged));
    EXPECT_LT(bytes_asked_for, 2U << 20) << "chunk at " << at;
  }
}

std::string WithSize(std::uint32_t width, std::uint32_t height) {
  std::string file = PlainPng(2, 2);
  PutNumber(&file, 16, width);
  PutNumber(&file, 20, height);
  RepairSums(&file);
  return file;
}

TEST(PngImage, AbsurdSizesAreEmptyImages) {
  for (const std::uint32_t size : {0U, 8193U, 65536U, 1000000U, 1000001U, 0x1FFFFFFFU, 0x20000000U,
                                   0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    ExpectEmpty(DecodeFile(WithSize(size, size)));
    ExpectEmpty(DecodeFile(WithSize(1, size)));
    ExpectEmpty(DecodeFile(WithSize(size, 1)));
  }
}

TEST(PngImage, PictureOfMoreThan64MegabytesIsEmptyThoughItIsSound) {
  EXPECT_EQ(Decode(Picture(8192, 8192, 0, 1, "")).width, 8192);
  ExpectEmpty(Decode(Picture(8192, 8193, 0, 1, "")));
}

TEST(PngImage, PaletteIndexBeyondThePaletteStaysInBounds) {
  PngPicture picture = Picture(4, 1, 3, 8, Bytes({0, 1, 200, 255}));
  picture.palette = {1, 2, 3, 4, 5, 6};
  const Decoded image = Decode(picture);
  EXPECT_EQ(image.depth, 3);
}

TEST(PngImage, MissingPaletteIsAnEmptyImage) {
  PngPicture picture = Picture(2, 2, 3, 8, Bytes({0, 1, 1, 0}));
  picture.palette = kPalette;
  std::string file = MakePng(picture);
  file.replace(file.find("PLTE"), 4, "zzZz");
  RepairSums(&file);
  ExpectEmpty(DecodeFile(file));
}

// ---- the read callback ------------------------------------------------------------------------

class TakeBytes : public ::testing::Test {
 protected:
  TakeBytes() { std::memset(to_, '-', sizeof to_); }

  std::string Take(std::size_t count) {
    TakePngBytes(&state_, to_, count);
    return {reinterpret_cast<const char*>(to_), count};
  }

  const std::string bytes_ = "abcdefgh";
  const unsigned char* start_ = reinterpret_cast<const unsigned char*>(bytes_.data());
  PngReadState state_{start_, start_, start_ + 8};
  unsigned char to_[16];
};

TEST_F(TakeBytes, CopiesAndAdvances) {
  EXPECT_EQ(Take(3), "abc");
  EXPECT_EQ(Take(5), "defgh");
  EXPECT_EQ(state_.pos, state_.end);
  EXPECT_EQ(state_.start, start_);
}

TEST_F(TakeBytes, NothingIsAskedForAndNothingIsTouched) {
  Take(0);
  EXPECT_EQ(to_[0], '-');
  EXPECT_EQ(state_.pos, start_);
}

TEST_F(TakeBytes, BeyondTheEndTheRestIsZeros) {
  Take(6);
  EXPECT_EQ(Take(5), std::string("gh\0\0\0", 5));
  EXPECT_EQ(state_.pos, state_.end);
  EXPECT_EQ(to_[5], 'f');  // no byte more than asked for
}

TEST_F(TakeBytes, AtTheEndEverythingIsZeros) {
  Take(8);
  EXPECT_EQ(Take(4), std::string(4, '\0'));
  EXPECT_EQ(state_.pos, state_.end);
}

TEST_F(TakeBytes, EmptyEntryGivesZeros) {
  state_ = {nullptr, nullptr, nullptr};
  EXPECT_EQ(Take(4), std::string(4, '\0'));
}

}  // namespace
