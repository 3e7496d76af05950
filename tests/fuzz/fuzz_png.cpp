// my_png_image over any entry, as it stands and once more with the sums of its chunks made right,
// without which hardly any damage would get past libpng's first look. The result is an empty image
// or one of the size that the file's head tells, of at most 64 MiB, with all its pixels there and
// those that are fully transparent zero.
#include <algorithm>

#include "tests/fuzz/fuzz_support.h"
#include "tests/wizard/png_chunks.h"
#include "wizard/png_image.h"

namespace {

constexpr std::uint64_t kMostPixelBytes = 64ULL * 1024 * 1024;
constexpr std::uint64_t kQuick = 128 * 128;  // larger pictures are no other case and take long
constexpr std::uint32_t kMostChunk = 2 * 1024 * 1024;
constexpr std::size_t kHeadEnd = 33;

// A chunk that reaches beyond the file by more than it can ever be read for is as good as any
// longer one, for which libpng would ask for up to 2 GiB of memory before it reads a byte.
std::string WithBoundedChunks(std::string file) {
  for (std::size_t at = 8; at + 8 <= file.size(); at += NumberAt(file, at) + std::size_t{12}) {
    if (NumberAt(file, at) <= kMostChunk) continue;
    PutNumber(&file, at, kMostChunk);
    break;
  }
  return file;
}

void CheckPixels(const my_png_image& image) {
  std::uint32_t sum = 0;
  const auto* const pixels = image.array;
  const auto count = static_cast<std::size_t>(image.w()) * static_cast<std::size_t>(image.h());
  const auto depth = static_cast<std::size_t>(image.d());
  for (std::size_t i = 0; i < count * depth; ++i) sum += pixels[i];
  if (depth != 4) return;
  for (std::size_t i = 0; i < count; ++i) {
    const unsigned char* pixel = pixels + i * 4;
    Require(pixel[3] != 0 || std::all_of(pixel, pixel + 3, [](unsigned char c) { return c == 0; }),
            "a fully transparent pixel is zero");
  }
  Require(sum != 0xFFFFFFFF, "every pixel can be read");
}

void CheckImage(const std::string& file) {
  const FuzzStore store({{"picture.png", file}});
  const my_png_image image(0);
  if (image.w() == 0 || image.h() == 0) {
    Require(image.w() == 0 && image.h() == 0 && image.array == nullptr,
            "what can't be decoded is an empty image");
    return;
  }
  Require(file.size() > kHeadEnd, "an image has a head");
  Require(image.w() > 0 && static_cast<std::uint32_t>(image.w()) == NumberAt(file, 16) &&
              image.h() > 0 && static_cast<std::uint32_t>(image.h()) == NumberAt(file, 20),
          "an image has the size that its head tells");
  const int colour_type = file[25];
  const int colours = colour_type == 3 || (colour_type & 2) != 0 ? 3 : 1;
  Require(image.d() == colours || image.d() == colours + 1, "its channels are those of its form");
  Require(static_cast<std::uint64_t>(image.w()) * static_cast<std::uint64_t>(image.h()) *
                  static_cast<std::uint64_t>(image.d()) <=
              kMostPixelBytes,
          "an image has at most 64 MiB");
  CheckPixels(image);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string file = WithBoundedChunks(AllOf(data, size));
  if (size >= 24) {
    const std::uint64_t pixels = std::uint64_t{NumberAt(file, 16)} * NumberAt(file, 20);
    if (pixels > kQuick && pixels <= kMostPixelBytes) return -1;
  }
  CheckImage(file);
  std::string repaired = file;
  RepairSums(&repaired);
  if (repaired != file) CheckImage(repaired);
  return 0;
}
