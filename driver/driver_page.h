// The widgets of the wizard's driver page, and the three things of the window that the serial
// driver's code needs. They are defined here, below the wizard that fills them in while it builds
// its pages, so that survey and install work on them without knowing the wizard. Nothing here
// creates, frees or shows a widget.
#pragma once

#include <FL/Fl_Widget.H>

class Fl_Box;
class Fl_Button;
class Fl_Wizard;

// All of these are null until the wizard has built its pages, and live to the end of the process.
extern Fl_Box* DriverStatusBox;      // what the page says; its label is never copied
extern Fl_Button* DriverBackButton;  // inactive until the first survey ends, as are the two below
extern Fl_Button* DriverCancelButton;
extern Fl_Button* DriverNextButton;       // its callback is swapped by survey and skip
extern Fl_Button* DriverSkipButton;       // hidden unless an install is due
extern Fl_Button* DriverUpdateButton;     // hidden unless a driver is there
extern Fl_Button* DriverUninstallButton;  // never shown by anything

// The wizard that holds the pages; survey and install move it forward only.
extern Fl_Wizard* Wizard;

// The main window's native handle, stored by the wizard once the window is shown; null before, and
// where the window has none. Parent of whatever dialog the system's driver install opens.
extern void* NativeWindowHandle;

// The plain "one page forward" of the wizard's Next buttons (wizard_next_callback), to which
// DriverNextButton is bound again once no install is due. Set by the wizard when it builds the
// driver page.
extern Fl_Callback* DriverNextPageCallback;

// Forgets all of them, for tests. The widgets stay as they are.
void ResetDriverPage();
