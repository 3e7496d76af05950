#include "platform/native_window.h"

#include <FL/x.H>

void* NativeHandleOf(const Fl_Window* window) {
  return fl_xid(window);  // null without a native record
}
