#include <io.h>

#include "packager/terminal.h"

bool StandardErrorIsTerminal() {
  return _isatty(2) != 0;
}
