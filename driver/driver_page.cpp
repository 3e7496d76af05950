#include "driver/driver_page.h"

Fl_Box* DriverStatusBox;
Fl_Button* DriverBackButton;
Fl_Button* DriverCancelButton;
Fl_Button* DriverNextButton;
Fl_Button* DriverSkipButton;
Fl_Button* DriverUpdateButton;
Fl_Button* DriverUninstallButton;
Fl_Wizard* Wizard;
void* NativeWindowHandle;
Fl_Callback* DriverNextPageCallback;

void ResetDriverPage() {
  DriverStatusBox = nullptr;
  DriverBackButton = nullptr;
  DriverCancelButton = nullptr;
  DriverNextButton = nullptr;
  DriverSkipButton = nullptr;
  DriverUpdateButton = nullptr;
  DriverUninstallButton = nullptr;
  Wizard = nullptr;
  NativeWindowHandle = nullptr;
  DriverNextPageCallback = nullptr;
}
