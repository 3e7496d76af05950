// PNG files for tests, made with libpng's writer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct PngPicture {
  int width = 1;
  int height = 1;
  int bit_depth = 8;
  int colour_type = 2;  // 0 grey, 2 RGB, 3 palette, 4 grey and alpha, 6 RGBA
  bool interlaced = false;
  std::vector<std::uint8_t> palette;       // three bytes a colour
  std::vector<std::uint8_t> transparency;  // palette: alpha of the first colours; grey: one 16-bit
                                           // value, RGB: three, most significant byte first
  std::string rows;                        // packed as in the file, without filter bytes
};

// Bytes of one row of such a picture.
int RowBytes(const PngPicture& picture);

// The file. Rows too short are filled up with a fixed pattern.
std::string MakePng(PngPicture picture);

// An opaque RGB picture of one colour.
std::string PlainPng(int width, int height, std::uint8_t red = 10, std::uint8_t green = 120,
                     std::uint8_t blue = 130);
