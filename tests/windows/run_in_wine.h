// What the tests of Windows programs need beside RunProgram of tests/support/run_program.h, which
// run_in_wine.cpp defines anew for them: it launches the program under Wine, insists that every
// line of its streams ends as the Windows runtime ends them, and gives the lines with a plain line
// feed.
//
// Absolute paths of this machine work as arguments as they stand: Wine has them on drive Z:, and
// that is where it is started. One Wine prefix per user serves all tests of a process, and goes
// away with it.
#pragma once

#include <string>

// The Wine prefix of the tests: for root or, as an ordinary user, for nobody.
std::string WinePrefix(bool ordinary_user = false);

// Ends Wine's server, so that the next program starts a new one. The old one knows no file system
// that was mounted after it.
void StopWine(bool ordinary_user = false);

// Makes Wine's screen for root's prefix one of that many dots per inch; 96 is one that isn't
// scaled.
void SetScreenDpi(int dpi);

// More of WINEDLLOVERRIDES for the programs that are run from now on.
extern std::string WineOverrides;
