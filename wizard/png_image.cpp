#include "wizard/png_image.h"

#include <cstdint>
#include <cstring>

#include "store/embedded_file_store.h"

my_png_image::my_png_image(int index) : Fl_RGB_Image(nullptr, 0, 0) {
  Load(static_cast<unsigned>(index));
}

my_png_image::my_png_image(const char* name) : Fl_RGB_Image(nullptr, 0, 0) {
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    if (std::strcmp(Store.names[i], name) == 0) Load(i);
  }
}

void my_png_image::Load(unsigned index) {
  if (index >= Store.entry_count) return;  // compared unsigned, which refuses -1 as well
  const PayloadEntry entry = EntryAt(index);
  state_ = {entry.data, entry.data, entry.data + entry.size};

  PngPixels png;
  if (!DecodePng(&state_, &png)) return;
  Adopt(png.pixels, png.width, png.height, png.channels);
}

void my_png_image::Adopt(const unsigned char* pixels, int width, int height, int channels) {
  if (alloc_array != 0) delete[] array;
  array = pixels;
  alloc_array = 1;
  w(width);
  h(height);
  d(channels);
}
