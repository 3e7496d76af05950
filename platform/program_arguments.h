// The command line in the program's own form of text. Reads what the system keeps of it; keeps the
// converted texts to the end of the process.
#pragma once

// Replaces the arguments that main was given by the same ones in UTF-8. The runtime of Windows has
// put them into the code page of the process, where a character that it lacks is lost; elsewhere
// they stay as they are. Where the system can't give them anew, they stay as they are too.
void ProgramArguments(int* argc, char*** argv);
