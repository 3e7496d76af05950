// The system's own handle of a window, for calls below FLTK. Keeps nothing.
#pragma once

class Fl_Window;

// The window's HWND, off Windows its X11 window id, as a pointer-sized value that only the system
// can make sense of. Null while the window has no native record, that is until it is first shown.
void* NativeHandleOf(const Fl_Window* window);
