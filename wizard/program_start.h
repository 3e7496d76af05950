// Where the program's two modes part: an install into the folder named by --dir=, without a window,
// or the wizard. Sets HostFolder, BrowsedFolder and HostVersionNumber in the first case.
#pragma once

struct DirectoryHandle;

// The folder of --dir=, once it could be opened: held open until the process ends.
extern DirectoryHandle* NamedFolder;

// Makes the payload available, then looks through the arguments for one that begins with "--dir=";
// the first decides, whatever stands before or after it. Returns the exit status of the process:
// 0 or 1, as the table in docs/command_line.md tells. A payload that can't be made ready ends the
// process with status 1 and without a message, since no window exists to report in. Messages go to
// the standard error stream; nothing is ever written to the standard output stream.
int StartProgram(int argc, char** argv);
