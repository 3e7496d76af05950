// Functions that libraries ask the system for, taken from elsewhere: what a library imports under a
// name is what the pointer of that name with __imp_ before it leads to, or the function of that
// name, and these stand here before the linker looks for the system's own. Every executable links
// this file.
#include <windows.h>

#include <shellapi.h>

#include <cstddef>
#include <cstring>

#include "platform/windows_library.h"

namespace {

using TickCount64 = ULONGLONG(WINAPI*)();

// The threads' runtime wants a function that XP has not, and would keep the program from starting
// there. What it is asked for, a span of time, the older one tells as well.
ULONGLONG WINAPI CountTicks() {
  static const auto system = reinterpret_cast<TickCount64>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetTickCount64")));
  return system != nullptr ? system() : GetTickCount();
}

// FLTK loads what it finds only on newer systems, Windows 8.1's SHCORE.DLL above all, by its bare
// name. A system that lacks it would go on to the program's folder, and load what was planted
// there.
HMODULE WINAPI LoadFromSystem(const char* name) {
  wchar_t wide[MAX_PATH];
  const std::size_t size = std::strlen(name) + 1;
  if (size > MAX_PATH) return nullptr;
  for (std::size_t i = 0; i < size; ++i) wide[i] = static_cast<unsigned char>(name[i]);  // ASCII
  return LoadSystemLibrary(wide);
}

// FLTK watches sockets that a program gives it. This one has none, so it needs no socket library
// either: none of them is ever ready.
int WINAPI SelectNothing(int, void*, void*, void*, const void*) {
  return 0;
}

HINSTANCE WINAPI ExecuteNothing(HWND, const char*, const char*, const char*, const char*, int) {
  return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(SE_ERR_ACCESSDENIED));
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

using LoadByName = HMODULE(WINAPI*)(const char*);
extern const LoadByName imported_load_library __asm__("__imp__LoadLibraryA@4");
const LoadByName imported_load_library = LoadFromSystem;

using Select = int(WINAPI*)(int, void*, void*, void*, const void*);
extern const Select imported_select __asm__("__imp__select@20");
const Select imported_select = SelectNothing;

int WINAPI IsSetInNothing(SIZE_T, void*) __asm__("___WSAFDIsSet@8");
int WINAPI IsSetInNothing(SIZE_T, void*) {
  return 0;
}

// FLTK can open a page in the browser, and this program starts no other.
using Execute = HINSTANCE(WINAPI*)(HWND, const char*, const char*, const char*, const char*, int);
extern const Execute imported_execute __asm__("__imp__ShellExecuteA@24");
const Execute imported_execute = ExecuteNothing;
}

// FLTK can show a window of its own that prints the others, and draw into PDF files. Nothing here
// asks for either, and yet these two functions would bring all its printing and file dialogs with
// them, and so imports of WINSPOOL.DRV, which is not protected. FLTK's own give 0 as well where a
// program is not built to print.
int fl_create_print_window() {
  return 0;
}
extern "C" void* MakeNoPdfSurface(const char*** error) __asm__(
    "__ZN19Fl_PDF_File_Surface25new_platform_pdf_surface_EPPPKc");
extern "C" void* MakeNoPdfSurface(const char***) {
  return nullptr;
}
