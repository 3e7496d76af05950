#include "platform/native_window.h"

#include <FL/Fl_Window.H>
#include <FL/x.H>

void* NativeHandleOf(const Fl_Window* window) {
  return fl_xid(window);  // null without a native record
}

void UseProgramIcon() {
  constexpr int kIconResource = 1;  // of wizard/windows/quirloduino.rc.in
  const auto load = [](int width, int height) {
    return static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kIconResource),
                                         IMAGE_ICON, GetSystemMetrics(width),
                                         GetSystemMetrics(height), LR_SHARED));
  };
  // FLTK copies both and takes null for its own choice.
  Fl_Window::default_icons(load(SM_CXICON, SM_CYICON), load(SM_CXSMICON, SM_CYSMICON));
}
