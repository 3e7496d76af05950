#include "platform/native_window.h"

#include <FL/x.H>

void* NativeHandleOf(const Fl_Window* window) {
  return reinterpret_cast<void*>(fl_xid(window));  // 0 without a native record
}
