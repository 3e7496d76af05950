#include "wizard/program_start.h"

int main(int argc, char** argv) {
  return StartProgram(argc, argv);
}
