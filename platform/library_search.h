// Where the process may load dynamic libraries from. Changes the process alone.
#pragma once

// Takes the program's own folder and the current one out of the search for libraries: a program
// that was downloaded stands among whatever else was, and a file there with a system library's name
// would be loaded into it. To be called before anything that may load a library. Does nothing off
// Windows, and on a Windows too old to have such a rule.
void RestrictLibrarySearch();
