// The fifth page: the install and, after a failure, the advice. Its widgets are built here; the
// work is in wizard/install_pump.h.
#pragma once

class Fl_Box;
class Fl_Button;
class Fl_Group;
class Fl_Progress;

extern Fl_Group* InstallPage;
extern Fl_Box* InstallStatusLabel;
extern Fl_Progress* InstallProgress;  // counts entries, not bytes; never shows its maximum
extern Fl_Box* InstallDetailBox;      // the file that comes next, or the advice
extern Fl_Button* InstallBackButton;
extern Fl_Button* InstallButton;
extern Fl_Button* InstallCancelButton;

// Adds the page to the current group.
void BuildInstallPage();

// Makes the page ready for a run, as it is when the user arrives from the library page: the button
// works, the texts and the bar of an earlier run are gone.
void ArmInstallPage();

// Forgets the page, for tests.
void ResetInstallPage();
