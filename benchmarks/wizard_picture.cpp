// The installer's start without arguments, up to the wizard's first picture.
#include "benchmarks/first_picture.h"
#include "platform/library_search.h"
#include "platform/native_window.h"
#include "platform/program_arguments.h"
#include "wizard/program_start.h"

int main(int argc, char** argv) {
  ExitAfterFirstPicture();
  RestrictLibrarySearch();
  ProgramArguments(&argc, &argv);
  UseProgramIcon();
  return StartProgram(argc, argv);
}
