#include "platform/native_window.h"

#include <FL/Fl.H>
#include <FL/Fl_Window.H>
#include <FL/fl_utf8.h>
#include <FL/x.H>

#include <cstdio>
#include <cstdlib>

#include "platform/windows_library.h"

namespace {

constexpr float kUnscaledDpi = 96;  // the density at which a unit of the pages is one pixel

// A function of a library of the system's, or null.
template <typename Function>
Function Find(const wchar_t* library, const char* name) {
  HMODULE module = LoadSystemLibrary(library);
  if (module == nullptr) return nullptr;
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// The scale of all screens on Windows Vista, 7 and 8, which leave scaling to a program whose
// manifest says that it knows how. 1 on any other: since 8.1 each screen has a scale of its own,
// which FLTK asks for itself, and XP has none.
float ScaleOfAllScreens() {
  if (Find<FARPROC>(L"shcore.dll", "GetDpiForMonitor") != nullptr) return 1;
  const auto is_aware = Find<BOOL(WINAPI*)()>(L"user32.dll", "IsProcessDPIAware");
  if (is_aware == nullptr || is_aware() == FALSE) return 1;
  HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return static_cast<float>(dpi) / kUnscaledDpi;
}

// FLTK takes its first scale from the environment, when it opens the display; a factor that the
// user has set there remains one.
void TellScaleOfAllScreens() {
  const float scale = ScaleOfAllScreens();
  if (scale == 1) return;
  const char* users = fl_getenv("FLTK_SCALING_FACTOR");
  const double factor = users == nullptr ? 1 : std::atof(users);
  char setting[64];
  std::snprintf(setting, sizeof setting, "FLTK_SCALING_FACTOR=%.2f",
                static_cast<double>(scale) * (factor > 0 ? factor : 1));
  fl_putenv(setting);
}

}  // namespace

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

void PrepareDrawing() {
  TellScaleOfAllScreens();

  // FLTK's own choice is Microsoft Sans Serif, which has no bold cut and is thickened for titles.
  Fl::set_font(FL_HELVETICA, " Arial");
  Fl::set_font(FL_HELVETICA_BOLD, "BArial");

  // FLTK enlarges all windows by Ctrl and +, this also where the + of a keyboard stands above =.
  Fl::option(Fl::OPTION_SIMPLE_ZOOM_SHORTCUT, true);
}
