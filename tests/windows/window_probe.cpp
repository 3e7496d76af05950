// Runs under Wine: writes how FLTK draws once platform/ has settled it, a line for each of the two
// typefaces of the pages and one for the scale of the first screen.
#include <FL/Fl.H>

#include <cstdio>

#include "platform/native_window.h"

int main() {
  PrepareDrawing();
  std::printf("%s\n%s\n", Fl::get_font(FL_HELVETICA), Fl::get_font(FL_HELVETICA_BOLD));
  std::printf("%.2f\n", static_cast<double>(Fl::screen_scale(0)));
  return 0;
}
