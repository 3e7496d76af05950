#include "wizard/driver_status_page.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Group.H>

#include "driver/driver_install.h"
#include "driver/driver_page.h"
#include "driver/driver_survey.h"
#include "wizard/furniture.h"
#include "wizard/wizard_pages.h"

namespace {

// Shown until the first survey ends. Its wording stays as it is.
constexpr char kWaitingText[] =
    "Checking if the USB Serial driver is already installed.\n\n"
    "This may take a few moments....\n\n"
    "Ok, let be honest, on a slow netbook this can take 15+ minutes.  It may seem like this "
    "program "
    "has crashed, but Windows will eventually finish scanning its registry.  Please be patient, "
    "maybe go get a cup of coffee... eventually this will finish!";

// A button above the bottom row, inactive and hidden until the survey says otherwise.
Fl_Button* AddHiddenButton(int x, int width, const char* label, Fl_Callback_p callback) {
  auto* button = new Fl_Button(x, 260, width, 26, label);
  button->callback(callback);
  button->deactivate();
  button->hide();
  return button;
}

}  // namespace

void BuildDriverPage() {
  Fl_Group* page = BeginPage();
  AddHeader();
  AddTitle("Virtual Serial Driver");
  AddSubtitle("Install support for USB Serial");
  AddLogo();
  AddUpperRule();
  DriverStatusBox = new Fl_Box(FL_THIN_DOWN_BOX, 32, 92, 436, 152, kWaitingText);
  DriverStatusBox->color(FL_WHITE);
  DriverStatusBox->align(kTopLeftWrap);
  AddLowerRule();
  DriverBackButton = AddBack();
  DriverBackButton->deactivate();
  DriverCancelButton = AddCancel();
  DriverCancelButton->deactivate();
  DriverNextButton = AddNext();
  DriverNextButton->deactivate();
  DriverNextPageCallback = wizard_next_callback;
  DriverSkipButton = AddHiddenButton(320, 150, "Skip Driver Install", driver_skip_callback);
  DriverUpdateButton = AddHiddenButton(30, 120, "Update Driver", driver_update_callback);
  // Never shown by anything.
  DriverUninstallButton = AddHiddenButton(170, 140, "Uninstall Driver", driver_uninstall_callback);
  page->end();
}
