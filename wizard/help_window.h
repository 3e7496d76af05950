// The second window, opened by "?" on the folder page: which releases are supported, and the check
// log of the latest recognition, live, since the display's buffer is the log itself. Not modal.
#pragma once

class Fl_Widget;
class Fl_Window;

// Null until the first use; never destroyed.
extern Fl_Window* HelpWindow;

// The callback of HelpButton: builds the window at the first press, and shows it at every press.
void help_button_callback(Fl_Widget*, void*);

// The callback of its Ok button: hides it.
void help_ok_callback(Fl_Widget*, void*);
