#include "tests/wizard/png_maker.h"

#include <png.h>

#include <stdexcept>

namespace {

void Append(png_structp png, png_bytep bytes, std::size_t count) {
  static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<char*>(bytes), count);
}

void Flush(png_structp) {}

[[noreturn]] void Fail(png_structp, png_const_charp message) {
  throw std::runtime_error(message);
}

png_uint_16 Value16(const std::vector<std::uint8_t>& bytes, std::size_t index) {
  return static_cast<png_uint_16>(bytes.at(2 * index) * 256 + bytes.at(2 * index + 1));
}

void SetTransparency(png_structp png, png_infop info, const PngPicture& picture) {
  const std::vector<std::uint8_t>& bytes = picture.transparency;
  if (bytes.empty()) return;
  png_color_16 colour{};
  if (picture.colour_type == PNG_COLOR_TYPE_PALETTE) {
    png_set_tRNS(png, info, bytes.data(), static_cast<int>(bytes.size()), nullptr);
    return;
  }
  if (picture.colour_type == PNG_COLOR_TYPE_GRAY) {
    colour.gray = Value16(bytes, 0);
  } else {
    colour.red = Value16(bytes, 0);
    colour.green = Value16(bytes, 1);
    colour.blue = Value16(bytes, 2);
  }
  png_set_tRNS(png, info, nullptr, 0, &colour);
}

}  // namespace

int RowBytes(const PngPicture& picture) {
  static constexpr int kChannels[] = {1, 0, 3, 1, 2, 0, 4};
  return (picture.width * picture.bit_depth * kChannels[picture.colour_type] + 7) / 8;
}

std::string MakePng(PngPicture picture) {
  const auto stride = static_cast<std::size_t>(RowBytes(picture));
  const std::size_t size = stride * static_cast<std::size_t>(picture.height);
  for (std::size_t i = picture.rows.size(); i < size; ++i) {
    picture.rows += static_cast<char>(i * 37 + 11);
  }
  std::vector<png_bytep> rows;
  rows.reserve(static_cast<std::size_t>(picture.height));
  for (int i = 0; i < picture.height; ++i) {
    rows.push_back(reinterpret_cast<png_bytep>(picture.rows.data()) +
                   static_cast<std::size_t>(i) * stride);
  }

  std::string file;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, &file, Append, Flush);
  png_set_benign_errors(png, 1);  // an index beyond the palette is welcome
  png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width),
               static_cast<png_uint_32>(picture.height), picture.bit_depth, picture.colour_type,
               picture.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  std::vector<png_color> palette;
  for (std::size_t i = 0; i + 2 < picture.palette.size(); i += 3) {
    palette.push_back({picture.palette[i], picture.palette[i + 1], picture.palette[i + 2]});
  }
  if (!palette.empty()) {
    png_set_PLTE(png, info, palette.data(), static_cast<int>(palette.size()));
  }
  SetTransparency(png, info, picture);
  png_write_info(png, info);
  png_write_image(png, rows.data());
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  return file;
}

std::string PlainPng(int width, int height, std::uint8_t red, std::uint8_t green,
                     std::uint8_t blue) {
  PngPicture picture;
  picture.width = width;
  picture.height = height;
  for (int i = 0; i < width * height; ++i) {
    picture.rows += {static_cast<char>(red), static_cast<char>(green), static_cast<char>(blue)};
  }
  return MakePng(picture);
}
