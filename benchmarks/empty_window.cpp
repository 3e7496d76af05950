// The least that a program with a window does: an empty one of the wizard's size, up to its first
// picture.
#include <FL/Fl.H>
#include <FL/Fl_Window.H>

#include "benchmarks/first_picture.h"

int main() {
  ExitAfterFirstPicture();
  Fl_Window window(500, 360, "Empty");
  window.end();
  window.show();
  return Fl::run();
}
