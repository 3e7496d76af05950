#include <unistd.h>

#include "packager/terminal.h"

bool StandardErrorIsTerminal() {
  return isatty(STDERR_FILENO) == 1;
}
