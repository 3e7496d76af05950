// label_picture X Y WIDTH HEIGHT SIZE ALIGN BOX TEXT: a window like the wizard's with nothing in it
// but one text box, so that a test can compare what the wizard shows with the text that it should
// show, pixel by pixel. ALIGN is FLTK's number; BOX is "white" (the driver page's) or "none".
#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Window.H>

#include <cstdlib>
#include <cstring>

int main(int argc, char** argv) {
  if (argc != 9) return 1;
  Fl_Window window(500, 360, "Label");
  const bool white = std::strcmp(argv[7], "white") == 0;
  Fl_Box box(white ? FL_THIN_DOWN_BOX : FL_NO_BOX, std::atoi(argv[1]), std::atoi(argv[2]),
             std::atoi(argv[3]), std::atoi(argv[4]), argv[8]);
  box.labelsize(std::atoi(argv[5]));
  box.align(static_cast<Fl_Align>(std::atoi(argv[6])));
  if (white) box.color(FL_WHITE);
  window.end();
  window.show(1, argv);  // with its colours as in the wizard
  return Fl::run();
}
