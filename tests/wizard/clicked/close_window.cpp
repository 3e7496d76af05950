// Asks the window of that id to close, as a window manager does for its close control.
#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  Display* display = XOpenDisplay(nullptr);
  if (argc != 2 || display == nullptr) {
    std::fprintf(stderr, "usage: close_window WINDOW-ID, on the display of DISPLAY\n");
    return 2;
  }
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = std::strtoul(argv[1], nullptr, 0);
  event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
  event.xclient.data.l[1] = CurrentTime;
  const Status sent = XSendEvent(display, event.xclient.window, False, NoEventMask, &event);
  XCloseDisplay(display);
  return sent != 0 ? 0 : 1;
}
