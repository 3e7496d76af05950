#include "tests/wizard/wizard_test.h"

#include <FL/Fl_Button.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Text_Buffer.H>
#include <FL/Fl_Window.H>
#include <FL/Fl_Wizard.H>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "driver/driver_page.h"
#include "driver/driver_survey.h"
#include "recognition/check_log.h"
#include "tests/wizard/open_display.h"
#include "wizard/help_window.h"
#include "wizard/wizard_pages.h"

namespace fs = std::filesystem;

// The preview abandons each picture and description that it replaces, on purpose; the widgets may
// still hold them. Fonts and display are the system's libraries' own caches.
const char* MeantLeaks() __asm__("__lsan_default_suppressions");
const char* MeantLeaks() {
  return "leak:ShowLibrary\nleak:libfontconfig\nleak:libX11\nleak:libXft\nleak:libfltk\n";
}

namespace {

// Widgets are never destroyed, by design; those of earlier tests are held here, so that a leak
// report names nothing but leaks.
std::vector<const void*>& Graveyard() {
  static auto* graveyard = new std::vector<const void*>;  // outlives the report
  return *graveyard;
}

}  // namespace

WizardTest::WizardTest() : home_variable_("HOME", home_.path()) {
  OpenDisplay();
  WriteFile(Home(".config/user-dirs.dirs"),
            "XDG_DOCUMENTS_DIR=\"$HOME/Documents\"\nXDG_DESKTOP_DIR=\"$HOME/Desktop\"\n");
  fs::create_directories(Home("Documents"));
  fs::create_directories(Home("staged"));
  Machine = {};
  Machine.temporary_folder = Home("staged/");
}

WizardTest::~WizardTest() {
  Forget();
  ResetDriverSurvey();
  RunPending();
}

void WizardTest::Forget() {
  Graveyard().insert(Graveyard().end(), {MainWindow, HelpWindow, LogBuffer});
  ResetWizard();
}

void WizardTest::Build(std::vector<TestEntry> entries) {
  Forget();
  store_.reset();  // there is one at a time
  store_ = std::make_unique<TestStore>(std::move(entries));
  BuildWizard();
}

void WizardTest::Show() {
  Show(SmallPayload1819());
}

void WizardTest::Show(std::vector<TestEntry> entries) {
  Build(std::move(entries));
  MainWindow->show();
  // The first drawing hides all pages but the first; until then clicks would go to the last.
  WaitUntil([] { return Pages()[1]->visible() == 0; });
}

std::string WizardTest::MakeDefaultHost() {
  std::string host = Home("Downloads/arduino-1.8.19/");
  MakeArduino1819(host);
  return host;
}

void WizardTest::WaitUntil(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) throw std::runtime_error("waited in vain");
    Fl::wait(0.005);
  }
}

void WizardTest::RunPending() {
  for (int i = 0; i < 20; ++i) Fl::wait(0);
}

void WizardTest::GoToPage(int page) {
  if (page == 0) return;
  Click(Labelled(Pages()[0], "Next"));
  WaitUntil([] { return Fl::has_timeout(driver_survey) == 0; });
  if (page == 1) return;
  Click(DriverSkipButton->visible() != 0 ? DriverSkipButton : DriverNextButton);
  for (int i = 2; i < page; ++i) Click(Labelled(Pages()[static_cast<std::size_t>(i)], "Next"));
  if (CurrentPage() != page) throw std::runtime_error("the wizard doesn't get to that page");
}

void ClickAt(const Fl_Widget* in_window_of, int x, int y) {
  Fl_Window* window = in_window_of->window();
  Fl::e_x = x;
  Fl::e_y = y;
  Fl::e_x_root = window->x() + x;
  Fl::e_y_root = window->y() + y;
  Fl::e_keysym = FL_Button + FL_LEFT_MOUSE;
  Fl::e_is_click = 1;
  Fl::e_clicks = 0;
  Fl::e_state = FL_BUTTON1;
  Fl::handle(FL_PUSH, window);
  Fl::e_state = 0;
  Fl::handle(FL_RELEASE, window);
}

void Click(const Fl_Widget* widget) {
  ClickAt(widget, widget->x() + widget->w() / 2, widget->y() + widget->h() / 2);
}

std::vector<Fl_Group*> Pages() {
  std::vector<Fl_Group*> pages;
  pages.reserve(static_cast<std::size_t>(Wizard->children()));
  for (int i = 0; i < Wizard->children(); ++i) pages.push_back(Wizard->child(i)->as_group());
  return pages;
}

Fl_Widget* Labelled(Fl_Group* group, const std::string& label) {
  for (int i = 0; i < group->children(); ++i) {
    if (LabelOf(group->child(i)) == label) return group->child(i);
  }
  return nullptr;
}

int CurrentPage() {
  return Wizard->find(Wizard->value());
}

std::string LabelOf(const Fl_Widget* widget) {
  return widget->label() == nullptr ? "" : widget->label();
}

std::string LogText() {
  char* text = LogBuffer->text();
  std::string log = text;
  std::free(text);
  return log;
}
