#include "wizard/help_window.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Text_Display.H>
#include <FL/Fl_Window.H>

#include "platform/text.h"
#include "recognition/check_log.h"
#include "store/embedded_file_store.h"
#include "store/package_version.h"
#include "wizard/furniture.h"
#include "wizard/text_label.h"

Fl_Window* HelpWindow;

namespace {

constexpr int kCentre = 200;

const char* WindowTitle() {
  static char title[64];
  FormatBounded(title, sizeof title, "Quirloduino %s Help", kPackageVersion);
  return title;
}

void BuildHelpWindow() {
  HelpWindow = new Fl_Window(400, 360);
  AddHeader();
  MakeTextLabel(kCentre, 4, FL_HELVETICA_BOLD, 16, 1, "Supported Arduino Versions:");
  MakeTextLabel(kCentre, 26, FL_HELVETICA, 15, 1, SupportedVersions());
  MakeTextLabel(kCentre, 46, FL_HELVETICA, 10, 1,
                "Windows installer & zip are supported, but Windows \"app\" can not be used.");
  AddRule(0, 60, 400, 2);
  auto* log = new Fl_Text_Display(32, 75, 336, 223);
  log->color(FL_WHITE);
  log->buffer(LogBuffer);
  AddRule(4, 312, 392, 2);
  auto* ok = new Fl_Button(155, 323, 90, 26, "Ok");
  ok->callback(help_ok_callback);
  HelpWindow->label(WindowTitle());
  HelpWindow->end();
}

}  // namespace

void help_button_callback(Fl_Widget*, void*) {
  if (HelpWindow == nullptr) BuildHelpWindow();
  HelpWindow->show();
}

void help_ok_callback(Fl_Widget*, void*) {
  HelpWindow->hide();
}
