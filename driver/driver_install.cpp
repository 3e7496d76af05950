#include "driver/driver_install.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Wizard.H>

#include <cstdint>

#include "driver/argumentless_format.h"
#include "driver/device_update.h"
#include "driver/driver_page.h"
#include "driver/driver_platform.h"
#include "driver/driver_survey.h"
#include "driver/driver_text.h"
#include "driver/search_order.h"
#include "engine/install_error.h"
#include "platform/text.h"

namespace {

constexpr std::uint32_t kInstalledNameSize = 260;
constexpr std::uint32_t kSystemMessageSize = 800;
constexpr std::size_t kComposedErrorSize = 2048;
constexpr std::size_t kStatusTextSize = 1024;

// Sets the error text for a file that the system refused with `code`.
void ReportRefusedInf(const char* path, std::uint32_t code) {
  char message[kSystemMessageSize] = "";
  GetSystemMessage(code, message, sizeof message);
  char composed[kComposedErrorSize];
  FormatBounded(composed, sizeof composed,
                "Driver Installation Failed.\nAn error occurred while installing an INF file:\n%s\n"
                "Windows error: %08X = \"%s\"",
                path, code, message);
  // The composed text is a format in its turn, with no arguments: percent signs of path and message
  // are read as directives. Only then is it cut to the shared text's bound.
  char text[kComposedErrorSize];
  FormatWithoutArguments(text, sizeof text, composed);
  SetInstallError("%s", text);
}

}  // namespace

void driver_install_callback(Fl_Widget*, void*) {
  if (install_missing_infs() != 0) {
    DriverStatusBox->label(InstallErrorText());
    return;
  }
  DriverReady = 1;
  Wizard->next();  // Next stays bound to the install; the survey rebinds it when the page is seen
}

void driver_update_callback(Fl_Widget*, void*) {
  static char text[kStatusTextSize];  // the label keeps the pointer
  FormatBounded(text, sizeof text, "USB Serial driver is installed.\n\n%d devices updated",
                update_installed_infs());
  DriverStatusBox->label(text);
}

void driver_uninstall_callback(Fl_Widget*, void*) {}

int install_missing_infs() {
  relax_driver_search_order();
  for (int row = 0; row < StagedInfCount; ++row) {
    if (InstalledInfNames[row] != nullptr) continue;
    char installed_name[kInstalledNameSize] = "";
    if (!CopyInfFile(StagedInfPaths[row], installed_name, sizeof installed_name)) {
      const std::uint32_t code = LastSystemError();
      ReportRefusedInf(StagedInfPaths[row], code);
      return -1;
    }
    InstalledInfNames[row] = duplicate_text(installed_name);
    update_devices_for_inf(StagedInfPaths[row]);
  }
  return 0;
}

int update_installed_infs() {
  int count = 0;
  for (int row = 0; row < StagedInfCount; ++row) {
    if (InstalledInfNames[row] != nullptr) count += update_devices_for_inf(StagedInfPaths[row]);
  }
  relax_driver_search_order();  // last here, first in the install
  return count;
}
