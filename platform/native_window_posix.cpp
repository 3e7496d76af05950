#include "platform/native_window.h"

#include <FL/x.H>

void* NativeHandleOf(const Fl_Window* window) {
  // The handle is an opaque number for the driver's calls; 0 without a native record.
  return reinterpret_cast<void*>(fl_xid(window));  // NOLINT(performance-no-int-to-ptr)
}

void UseProgramIcon() {}

void PrepareDrawing() {}
