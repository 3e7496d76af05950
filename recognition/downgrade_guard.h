// Two looks beside the criteria: is a newer package in the folder already, which an older
// installer must not touch, and does the user have the Windows App of Arduino, which can't be
// served. Both write to the check log only.
#pragma once

// Returns 0, with the reason logged, when lib/quirloduino.txt in the folder names a newer package;
// otherwise 1. `dir` ends in a separator. Any trouble with the marker (absent, empty, no number)
// counts as 1: only proof of a newer version refuses. The version is compared as one decimal
// fraction, so that betas of one release are equal and 1.100 is less than 1.60, by design.
int CheckDowngrade(const char* dir);

// Puts a note into the check log when ArduinoData\preferences.txt in the user's Documents folder
// names the Windows App. Decides nothing; without that folder or file there is no note.
void NoteWindowsApp();
