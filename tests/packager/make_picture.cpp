// make_picture WIDTH HEIGHT [transparent]: a PNG of one colour on the standard output, with a
// transparency chunk if so wished, for the cases in mistakes/cases.txt.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/wizard/png_maker.h"

int main(int argc, char** argv) {
  if (argc < 3) return 1;
  PngPicture picture;
  picture.width = std::atoi(argv[1]);
  picture.height = std::atoi(argv[2]);
  if (argc > 3) picture.transparency = {0, 1, 0, 2, 0, 3};
  const std::string file = MakePng(picture);
  return std::fwrite(file.data(), 1, file.size(), stdout) == file.size() ? 0 : 1;
}
