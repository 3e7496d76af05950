#include "platform/library_search.h"
#include "platform/native_window.h"
#include "platform/program_arguments.h"
#include "wizard/program_start.h"

int main(int argc, char** argv) {
  RestrictLibrarySearch();
  ProgramArguments(&argc, &argv);
  UseProgramIcon();
  return StartProgram(argc, argv);
}
