// Pictures of the payload as FLTK images, decoded from memory with libpng. Reads the store's bytes
// during construction only; touches no file and reports nothing.
#pragma once

#include <FL/Fl_Image.H>

#include "wizard/png_pixels.h"

// An image that is decoded by its constructor and never changes afterwards. It owns its pixels; the
// compressed bytes stay the store's. Pixels that are fully transparent come out as four zero bytes,
// so that the image can be blended without fringes.
//
// What can't be decoded gives the empty image (width and height 0, no pixels), which a widget draws
// as nothing: an entry that is missing, one in which libpng finds an error at any place, also
// behind its last row, and one whose pixels would take more than 64 MiB. Nothing is leaked or read
// outside the entry then. A damaged chunk length is read in zeros and given up after 1 MiB.
class my_png_image : public Fl_RGB_Image {
 public:
  // The entry at `index`; -1, which FindEntryByName gives for a missing name, is no entry.
  explicit my_png_image(int index);

  // Every entry of that name, so the last of them is what remains.
  explicit my_png_image(const char* name);

 private:
  void Load(unsigned index);
  void Adopt(const unsigned char* pixels, int width, int height, int channels);

  PngReadState state_{};
};
