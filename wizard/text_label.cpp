#include "wizard/text_label.h"

#include <FL/Fl_Box.H>
#include <FL/fl_draw.H>

#include <cmath>

Fl_Box* MakeTextLabel(int x, int y, Fl_Font font, int size, int centred, const char* text) {
  fl_font(font, size);
  // Half the width in single precision, rounded away from the centre.
  if (centred == 1) x -= static_cast<int>(std::ceil(static_cast<float>(fl_width(text)) / 2.0F));
  const int width = static_cast<int>(1 + std::ceil(fl_width(text)));
  const int height = fl_height() + fl_descent();
  auto* label = new Fl_Box(x, y, width, height, text);
  label->box(FL_NO_BOX);
  if (centred == 0) label->align(FL_ALIGN_INSIDE | FL_ALIGN_LEFT);
  label->labelfont(font);
  label->labelsize(size);
  return label;
}
