// What a process settles with the system once, before its work begins. Changes the process alone.
#pragma once

// Makes the process one that loads no library from beside its own file or from the current folder,
// and that the system asks no question about a drive without a disk: both would hold up or betray
// a run that nobody watches. Libraries that the system's own load later are loaded here, from the
// system's folder. To be called before anything else, also before the initialisers of other
// sources, since the runtime's own already make the system load libraries; uses nothing that they
// prepare. Does nothing off Windows.
void PrepareProcess();

// Replaces the arguments that main was given by the same ones in UTF-8. The runtime of Windows has
// put them into the code page of the process, where a character that it lacks is lost; elsewhere
// they stay as they are. Where the system can't give them anew, they stay as they are too. The
// converted texts are kept to the end of the process.
void ProgramArguments(int* argc, char*** argv);
