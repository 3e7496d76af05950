// What the system knows of a window beside what FLTK tells it, and what FLTK must be told of the
// system. Keeps nothing.
#pragma once

class Fl_Window;

// The window's HWND, off Windows its X11 window id, as a pointer-sized value that only the system
// can make sense of. Null while the window has no native record, that is until it is first shown.
void* NativeHandleOf(const Fl_Window* window);

// Gives all windows that are made from now on the icon in the executable's resources, in the places
// where the system shows one. Does nothing where executables have no icon.
void UseProgramIcon();

// Settles how pages are drawn on this system, where FLTK would choose otherwise or not know: the
// typefaces that they are laid out in, and the scale where all screens share one. To be called
// before a text is measured or a window made. Does nothing off Windows, where FLTK's choices stand.
void PrepareDrawing();
