// Pixels out of the bytes of a PNG, with libpng. It knows neither FLTK nor the store: the wizard's
// images are made with it, and the packager asks it whether the wizard will be able to show a
// picture.
#pragma once

#include <cstddef>

// Where libpng stands in the bytes of a PNG.
struct PngReadState {
  const unsigned char* start;  // first byte; not read again after set-up
  const unsigned char* pos;    // next byte to read
  const unsigned char* end;    // one past the last byte
};

// Copies the next `count` bytes to `to`. Reading past the end is no error: zeros take the place of
// what is missing, and libpng meets them as data.
void TakePngBytes(PngReadState* state, unsigned char* to, std::size_t count);

// A decoded picture: rows of `width` pixels from the top, without padding, `channels` bytes each.
// Pixels that are fully transparent are four zero bytes.
struct PngPixels {
  unsigned char* pixels;  // made with new[], for the caller to delete; null when decoding failed
  int width;
  int height;
  int channels;                 // 1 to 4: grey, grey and alpha, RGB, RGBA
  bool has_transparency_chunk;  // whose values fill a channel in a palette's picture alone
  char reason[64];              // why decoding failed, in libpng's words; otherwise empty
};

// Decodes what `state` spans, reading nothing outside it. False, with nothing left allocated, when
// libpng finds an error at any place, also behind the last row, and when the pixels would take more
// than 64 MiB. A damaged chunk length is read in zeros and given up after 1 MiB.
bool DecodePng(PngReadState* state, PngPixels* result);
