#include "wizard/png_pixels.h"

#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>

namespace {

// Far above what a window of 500 by 360 can show. A damaged header must not ask for more memory
// than there is.
constexpr std::uint64_t kMostPixelBytes = 64ULL * 1024 * 1024;

// How far behind its end an entry may be read, in zeros. A damaged chunk length asks for up to
// 2 GiB of them, which takes seconds and can only end in an error.
constexpr std::size_t kMostMissingBytes = std::size_t{1} << 20;

// All that one decoding owns. It lies outside the functions that an error of libpng leaves by
// longjmp, so that nothing is lost then.
struct Decoding {
  png_structp png;
  png_infop info;
  png_uint_32 width;
  png_uint_32 height;
  unsigned channels;
  png_bytep pixels;
  png_bytepp rows;
  bool has_transparency_chunk;
  std::size_t missing;  // bytes read behind the entry's end
  PngPixels* result;    // of which only the reason is touched here
};

void TellReason(PngPixels* result, const char* words) {
  std::snprintf(result->reason, sizeof result->reason, "%s", words);
}

[[noreturn]] void LeaveDecoding(png_structp png, png_const_charp words) {
  TellReason(static_cast<Decoding*>(png_get_error_ptr(png))->result, words);
  png_longjmp(png, 1);
}

void IgnoreWarning(png_structp, png_const_charp) {}

void ReadCallback(png_structp png, png_bytep to, std::size_t count) {
  auto* state = static_cast<PngReadState*>(png_get_io_ptr(png));
  auto* decoding = static_cast<Decoding*>(png_get_error_ptr(png));
  const auto left = static_cast<std::size_t>(state->end - state->pos);
  decoding->missing += count - std::min(count, left);
  if (decoding->missing > kMostMissingBytes) png_error(png, "a chunk far longer than the entry");
  TakePngBytes(state, to, count);
}

// How many values a transparency chunk defines: 1 for grey and RGB, the entries of a palette.
int TransparencyCount(png_structp png, png_infop info) {
  png_bytep values = nullptr;
  png_color_16p colour = nullptr;
  int count = 0;
  return png_get_tRNS(png, info, &values, &count, &colour) == 0 ? 0 : count;
}

// Settled before any transformation takes effect. A transparency chunk counts a channel here also
// on an image of 8 or 16 bits without a palette, where no transformation fills it: rows then end in
// the zeros they began with.
unsigned CountChannels(png_structp png, png_infop info, bool has_transparency_chunk) {
  const int colour_type = png_get_color_type(png, info);
  unsigned channels = 3;
  if (colour_type == PNG_COLOR_TYPE_PALETTE) {
    png_set_expand(png);
  } else if ((colour_type & PNG_COLOR_MASK_COLOR) == 0) {
    channels = 1;
  }
  if ((colour_type & PNG_COLOR_MASK_ALPHA) != 0 || has_transparency_chunk) ++channels;
  return channels;
}

// Gets the zeroed array of pixels and a pointer to each of its rows.
bool AllocateRows(Decoding* decoding) {
  const std::uint64_t stride = std::uint64_t{decoding->width} * decoding->channels;
  if (decoding->height > kMostPixelBytes / stride) return false;
  decoding->pixels = new (std::nothrow) png_byte[stride * decoding->height]();
  decoding->rows = new (std::nothrow) png_bytep[decoding->height];
  if (decoding->pixels == nullptr || decoding->rows == nullptr) return false;
  for (png_uint_32 i = 0; i < decoding->height; ++i) {
    decoding->rows[i] = decoding->pixels + i * stride;
  }
  return true;
}

void ReadImage(Decoding* decoding) {
  png_structp png = decoding->png;
  png_infop info = decoding->info;
  png_read_info(png, info);
  decoding->width = png_get_image_width(png, info);
  decoding->height = png_get_image_height(png, info);
  const int bit_depth = png_get_bit_depth(png, info);
  decoding->has_transparency_chunk = TransparencyCount(png, info) != 0;
  decoding->channels = CountChannels(png, info, decoding->has_transparency_chunk);
  if (bit_depth < 8) {
    png_set_packing(png);
    png_set_expand(png);
  } else if (bit_depth == 16) {
    png_set_strip_16(png);
  }
  if (!AllocateRows(decoding)) png_error(png, "no memory for the pixels");

  const int passes = png_set_interlace_handling(png);
  png_read_update_info(png, info);
  if (png_get_rowbytes(png, info) > std::size_t{decoding->width} * decoding->channels) {
    png_error(png, "rows longer than the channels tell");
  }
  for (int pass = 0; pass < passes; ++pass) {
    png_read_rows(png, decoding->rows, nullptr, decoding->height);
  }
  png_read_end(png, info);
}

// False when libpng found an error, by whose longjmp control comes back here.
bool Decode(Decoding* decoding) {
  if (setjmp(png_jmpbuf(decoding->png)) != 0) return false;
  ReadImage(decoding);
  return true;
}

void ClearTransparentPixels(const Decoding& decoding) {
  if (decoding.channels != 4) return;
  const png_bytep end =
      decoding.pixels + std::size_t{decoding.width} * decoding.height * decoding.channels;
  for (png_bytep pixel = decoding.pixels; pixel < end; pixel += 4) {
    if (pixel[3] == 0) std::memset(pixel, 0, 3);
  }
}

}  // namespace

void TakePngBytes(PngReadState* state, unsigned char* to, std::size_t count) {
  if (count == 0) return;
  const auto left = static_cast<std::size_t>(state->end - state->pos);
  const std::size_t taken = std::min(count, left);
  if (taken > 0) std::memcpy(to, state->pos, taken);
  state->pos += taken;
  std::memset(to + taken, 0, count - taken);
}

bool DecodePng(PngReadState* state, PngPixels* result) {
  *result = {};
  Decoding decoding{};
  decoding.result = result;
  TellReason(result, "no memory for libpng");
  decoding.png =
      png_create_read_struct(PNG_LIBPNG_VER_STRING, &decoding, LeaveDecoding, IgnoreWarning);
  if (decoding.png == nullptr) return false;
  decoding.info = png_create_info_struct(decoding.png);
  png_set_read_fn(decoding.png, state, ReadCallback);
  const bool complete = decoding.info != nullptr && Decode(&decoding);
  png_destroy_read_struct(&decoding.png, &decoding.info, nullptr);
  delete[] decoding.rows;
  if (!complete) {
    delete[] decoding.pixels;
    return false;
  }
  ClearTransparentPixels(decoding);
  result->pixels = decoding.pixels;
  result->width = static_cast<int>(decoding.width);
  result->height = static_cast<int>(decoding.height);
  result->channels = static_cast<int>(decoding.channels);
  result->has_transparency_chunk = decoding.has_transparency_chunk;
  result->reason[0] = '\0';
  return true;
}
