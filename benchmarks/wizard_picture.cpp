// The installer's start without arguments, up to the wizard's first picture.
#include "benchmarks/first_picture.h"
#include "platform/native_window.h"
#include "platform/process.h"
#include "wizard/program_start.h"

int main(int argc, char** argv) {
  PrepareProcess();
  ExitAfterFirstPicture();
  ProgramArguments(&argc, &argv);
  UseProgramIcon();
  return StartProgram(argc, argv);
}
