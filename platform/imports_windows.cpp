// Two functions that libraries ask the system for, taken from elsewhere: what a library imports
// under a name is what the pointer of that name with __imp_ before it leads to, and these stand
// here before the linker looks for the system's own. Every executable links this file.
#include <windows.h>

namespace {

using TickCount64 = ULONGLONG(WINAPI*)();

// The threads' runtime wants a function that XP has not, and would keep the program from starting
// there. What it is asked for, a span of time, the older one tells as well.
ULONGLONG WINAPI CountTicks() {
  static const auto system = reinterpret_cast<TickCount64>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetTickCount64")));
  return system != nullptr ? system() : GetTickCount();
}

}  // namespace

extern "C" {

// FLTK takes one function from COMCTL32, which is not among the libraries that the system protects,
// so a file of that name beside the executable would be loaded before any code of ours runs. USER32
// has the same function under another name.
using TrackMouse = BOOL(WINAPI*)(LPTRACKMOUSEEVENT);
extern const TrackMouse imported_track_mouse __asm__("__imp___TrackMouseEvent@4");
const TrackMouse imported_track_mouse = TrackMouseEvent;

extern const TickCount64 imported_tick_count __asm__("__imp__GetTickCount64@0");
const TickCount64 imported_tick_count = CountTicks;
}
