// Makes the folder named by its one argument an Arduino 1.8.19 in the eyes of the official
// criteria, for the clicked runs.
#include <cstdio>

#include "tests/support/arduino_host.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_host FOLDER\n");
    return 2;
  }
  MakeArduino1819(argv[1]);
  return 0;
}
