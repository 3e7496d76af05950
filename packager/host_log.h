// The check log of recognition, kept as plain text: the packager links this in the place of the one
// that fills the wizard's text buffer, and so needs no windows.
#pragma once

#include <string>

void ClearHostLog();

// The last line of the log without blanks around it and with none doubled within.
std::string LastHostLogLine();
