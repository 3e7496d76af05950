// What the wizard's tests share: the whole wizard, built around a payload made in the test, on the
// display of the environment, with the user's folders in a place of their own and a simulated
// machine below the driver page. Clicks are FLTK events at a widget's middle, so an inactive or
// hidden button does nothing, as for a user.
#pragma once

#include <FL/Fl.H>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/driver/simulated_machine.h"
#include "tests/support/arduino_host.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

class Fl_Group;
class Fl_Widget;

class WizardTest : public ::testing::Test {
 protected:
  WizardTest();
  ~WizardTest() override;

  // Makes `entries` the payload and builds the wizard around it, without showing it. A wizard built
  // before is forgotten.
  void Build(std::vector<TestEntry> entries);
  void Build() { Build(SmallPayload1819()); }

  // Builds it around a payload that recognises 1.8.19, and shows it.
  void Show();
  void Show(std::vector<TestEntry> entries);

  // The user's folders: special folders are looked up through these.
  std::string Home(const std::string& below = "") const { return home_.path() + "/" + below; }

  // A made Arduino 1.8.19 where DefaultFolder finds it; its path, with the separator.
  std::string MakeDefaultHost();

  // Runs the event loop until `condition` holds; fails the test after ten seconds.
  static void WaitUntil(const std::function<bool()>& condition);

  // Runs the event loop as long as something is ready, without waiting for timers to come.
  static void RunPending();

  // From the welcome page forward to the page of that number (0 to 4), the survey run.
  static void GoToPage(int page);

  TempDir home_;
  std::unique_ptr<TestStore> store_;

 private:
  static void Forget();

  ScopedEnvironment home_variable_;
  ScopedEnvironment config_variable_{"XDG_CONFIG_HOME", ""};
  ScopedEnvironment data_variable_{"XDG_DATA_HOME", ""};
};

// Presses and releases the mouse at the widget's middle, whatever stands there.
void Click(const Fl_Widget* widget);
void ClickAt(const Fl_Widget* in_window_of, int x, int y);

// The pages of the wizard, in order; the child of `group` with that label (null when none).
std::vector<Fl_Group*> Pages();
Fl_Widget* Labelled(Fl_Group* group, const std::string& label);
int CurrentPage();

// The label, "" for none.
std::string LabelOf(const Fl_Widget* widget);

// All of the check log.
std::string LogText();
