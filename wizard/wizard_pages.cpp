#include "wizard/wizard_pages.h"

#include <FL/Fl.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Text_Buffer.H>
#include <FL/Fl_Window.H>
#include <FL/Fl_Wizard.H>

#include "driver/driver_page.h"
#include "driver/driver_survey.h"
#include "engine/library_query.h"
#include "platform/native_window.h"
#include "platform/text.h"
#include "recognition/check_log.h"
#include "store/package_version.h"
#include "wizard/driver_status_page.h"
#include "wizard/finished_page.h"
#include "wizard/folder_page.h"
#include "wizard/furniture.h"
#include "wizard/help_window.h"
#include "wizard/install_page.h"
#include "wizard/install_pump.h"
#include "wizard/library_page.h"
#include "wizard/welcome_page.h"

Fl_Window* MainWindow;

namespace {

constexpr int kLogSize = 4096;

// The survey blocks the event loop. It runs from a timer, so that the driver page with its waiting
// text is drawn first.
constexpr double kSurveyDelay = 0.02;

const char* WindowTitle() {
  static char title[64];
  FormatBounded(title, sizeof title, "Quirloduino %s Installer", kPackageVersion);
  return title;
}

}  // namespace

int StartWizard(int argc, char** argv) {
  PrepareDrawing();
  BuildWizard();
  MainWindow->show(argc, argv);
  NativeWindowHandle = NativeHandleOf(MainWindow);
  return Fl::run();
}

void BuildWizard() {
  LogBuffer = new Fl_Text_Buffer(kLogSize);
  MainWindow = new Fl_Window(kPageWidth, kPageHeight, WindowTitle());
  Wizard = new Fl_Wizard(0, 0, kPageWidth, kPageHeight);
  LoadLogo();
  BuildWelcomePage();
  BuildDriverPage();
  BuildFolderPage();
  BuildLibraryPage();
  BuildInstallPage();
  BuildFinishedPage();
  Wizard->end();
  MainWindow->end();
}

void wizard_back_callback(Fl_Widget*, void*) {
  if (Wizard->value() == FolderPage) Fl::add_timeout(kSurveyDelay, driver_survey);
  Wizard->prev();
}

void wizard_next_callback(Fl_Widget*, void*) {
  if (Wizard->value() == WelcomePage) Fl::add_timeout(kSurveyDelay, driver_survey);
  if (Wizard->value() == LibraryPage) ArmInstallPage();
  Wizard->next();
}

void wizard_cancel_callback(Fl_Widget*, void*) {
  if (HelpWindow != nullptr) HelpWindow->hide();
  MainWindow->hide();
}

void ResetWizard() {
  Fl::remove_timeout(driver_survey);
  ResetInstallPump();
  if (HelpWindow != nullptr) HelpWindow->hide();
  if (MainWindow != nullptr) MainWindow->hide();
  HelpWindow = nullptr;
  MainWindow = nullptr;
  LogBuffer = nullptr;
  ResetDriverPage();
  WelcomePage = nullptr;
  ResetFolderPage();
  ResetLibraryPage();
  ResetInstallPage();
}
