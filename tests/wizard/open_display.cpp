#include "tests/wizard/open_display.h"

#include <FL/x.H>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

void OpenDisplay() {
  if (fl_display != nullptr) return;
  setenv("FLTK_BACKEND", "x11", 0);  // also where Wayland is to be had
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  for (;;) {
    if (Display* display = XOpenDisplay(nullptr)) {
      fl_open_display();  // a connection of FLTK's own, which this one keeps the server up for
      XCloseDisplay(display);
      return;
    }
    if (std::chrono::steady_clock::now() > end) {
      throw std::runtime_error("the wizard's tests need a display: set DISPLAY, or use xvfb-run");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
}
