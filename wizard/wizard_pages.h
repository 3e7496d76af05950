// The window of the program: one wizard with six fixed pages, built once, straight through, before
// it is shown. The pages are in one source each (welcome_page to finished_page, furniture for what
// they share); here is their order and how they lead to one another. No page is ever skipped.
//
// Everything runs on the one thread of FLTK's event loop. Widgets live to the end of the process
// and are reached through the pointers of the page's header, all null until the page is built.
// Labels point at their texts without a copy.
#pragma once

class Fl_Widget;
class Fl_Window;

extern Fl_Window* MainWindow;

// Builds the wizard, shows it and runs the event loop until no window is left. The arguments go to
// FLTK as they are. Returns the exit status, always 0: also after a failed install or a cancel.
int StartWizard(int argc, char** argv);

// The part of it before the window is shown: the check log, the window, the wizard and its pages in
// order. Looks for an Arduino folder, so HostFolder, BrowsedFolder and HostVersionNumber are set.
void BuildWizard();

// The callback of every Back button. Leaving the folder page sets the survey's timer, since the
// driver page decides anew what it says.
void wizard_back_callback(Fl_Widget*, void*);

// The callback of every Next button, but for the driver page's while a driver install is due.
// Leaving the welcome page sets the survey's timer, leaving the library page arms the install page.
void wizard_next_callback(Fl_Widget*, void*);

// The callback of every Cancel button and of Done: hides the help window and the main window, upon
// which the event loop ends.
void wizard_cancel_callback(Fl_Widget*, void*);

// Forgets the built wizard, for tests: timers and idle work end, windows are hidden, all pointers
// are null again. Widgets are not destroyed.
void ResetWizard();
