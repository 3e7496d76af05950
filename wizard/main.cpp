#include "platform/native_window.h"
#include "platform/process.h"
#include "wizard/program_start.h"

namespace {

// The first of all initialisers: on Windows the stack protector's own asks for a random number, for
// which the system loads libraries.
[[gnu::constructor(101)]] void PrepareBeforeTheRuntime() {
  PrepareProcess();
}

}  // namespace

int main(int argc, char** argv) {
  ProgramArguments(&argc, &argv);
  UseProgramIcon();
  return StartProgram(argc, argv);
}
