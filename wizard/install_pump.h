// The install from the wizard, in slices: an idle callback disposes of a few entries at each call
// and returns to the event loop, which redraws the page in between. One long entry, or the rewrite
// of an archive at its close, still blocks the loop for its time. Works on the widgets of
// wizard/install_page.h; there is no pause, resume or rollback, and a new run starts at the first
// entry.
#pragma once

class Fl_Widget;

// The index of the entry to dispose of next. 0 when a run starts; after a failure it stays on the
// entry that failed.
extern int InstallCursor;

// The callback of InstallButton: takes the page's three buttons away and starts the pump.
void BeginInstall(Fl_Widget*, void*);

// The idle callback: one slice of at most 10 entries, ended ahead of the entry that would bring the
// bytes to 1,000,000. After the last entry, or at a failure, it removes itself and sets the timer
// for one of the two below.
void InstallPump(void*);

// The end of a run, by timer: goes on to the last page, or shows the advice and gives Back and
// Cancel back. InstallButton works again only after the page was left and reached anew.
void InstallSucceeded(void*);
void InstallFailed(void*);

// Ends idle work and timers, and the cursor is 0 again, for tests.
void ResetInstallPump();
