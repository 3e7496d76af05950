// Runs of programs under another one that looks on.
#pragma once

#include <string>
#include <vector>

// The words of QUIRLODUINO_RUN_UNDER, split at blanks: a program and its arguments, such as a
// memory checker, under which a test's programs are to run. None when the variable isn't set.
std::vector<std::string> RunUnder();
