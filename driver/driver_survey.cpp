#include "driver/driver_survey.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Wizard.H>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "driver/driver_install.h"
#include "driver/driver_page.h"
#include "driver/driver_platform.h"
#include "driver/driver_text.h"
#include "driver/inf_identity.h"
#include "driver/search_order.h"
#include "engine/writers.h"
#include "platform/administrator.h"
#include "platform/text.h"
#include "store/embedded_file_store.h"
#include "store/payload_format.h"

int SurveyDone;
int DriverReady;
int SystemDriverFound;
int StagedInfCount;
char* StagedInfPaths[kStagedInfRows];
char* InstalledInfNames[kStagedInfRows];

namespace {

constexpr std::uint32_t kSystemInfTextSize = 512;
constexpr std::uint32_t kTemporaryFolderSize = 1024;
constexpr int kMostStagedInfs = 250;

// The service that the system's INF file installs must be its USB serial driver.
bool ServiceIsSerialDriver(InfFile* file) {
  char value[kSystemInfTextSize];
  return GetInfKeyText(file, "UsbSerial_Service_Install", "ServiceBinary", value, sizeof value) &&
         find_substring_nocase(value, "usbser.sys") != nullptr;
}

// Only the second line counts, and only as a whole: that is how the file stands in the systems
// whose driver takes the boards.
bool SecondLineIsPortPage(InfFile* file) {
  char text[kSystemInfTextSize];
  InfContext line = {};
  return FindFirstInfLine(file, "UsbSerial_AddReg", &line) && FindNextInfLine(&line) &&
         GetInfLineText(&line, text, sizeof text) &&
         equal_nocase(text, "HKR,,EnumPropPages32,,MsPorts.dll,SerialPortPropPageProvider");
}

// Adds the row for a file that was written. Without memory for its text the file has no row.
void AddStagedInf(const char* folder, const char* name) {
  const std::size_t size = std::strlen(folder) + std::strlen(name) + 64;
  char* path = static_cast<char*>(std::malloc(size));
  if (path == nullptr) return;
  FormatBounded(path, size, "%s%s", folder, name);
  StagedInfPaths[StagedInfCount] = path;
  InstalledInfNames[StagedInfCount] = nullptr;
  ++StagedInfCount;
}

void ActivateNavigation() {
  DriverNextButton->activate();
  DriverBackButton->activate();
  DriverCancelButton->activate();
}

void ShowInstallDue() {
  DriverSkipButton->show();
  DriverSkipButton->activate();
  if (is_user_admin() != 0) {
    DriverStatusBox->label(
        "The USB Serial driver needs to be installed.\n\nJust click \"Next\" to install it.\n");
    ActivateNavigation();
    DriverNextButton->callback(driver_install_callback);
    DriverNextButton->take_focus();
    return;
  }
  DriverStatusBox->label(
      "The USB Serial driver needs to be installed.\n\n"
      "You must run this installer with Administrator access.  On Windows 7 or Vista, right click "
      "on this program and choose \"Run as administrator\".  On XP, right click and \"Run as...\" "
      "and select Administrator.");
  DriverNextButton->deactivate();  // Skip is the way on
  DriverBackButton->activate();
  DriverCancelButton->activate();
}

void ShowDriverReady() {
  DriverStatusBox->align(FL_ALIGN_INSIDE | FL_ALIGN_WRAP);  // centred, and it stays so
  if (SystemDriverFound != 0) {
    DriverStatusBox->label(
        "Windows 10 USB Serial driver found.\n\nNo driver installation is needed.");
  } else {
    DriverStatusBox->label("USB Serial driver is installed.");
    relax_driver_search_order();
  }
  ActivateNavigation();
  DriverSkipButton->hide();
  DriverUpdateButton->show();
  // Shown but dead where there is nothing of ours to update, or no right to do it.
  if (SystemDriverFound == 0 && is_user_admin() != 0) DriverUpdateButton->activate();
  DriverNextButton->callback(DriverNextPageCallback);
}

// The slow part: minutes on a slow machine.
void LookForDriver() {
  if (system_driver_present() != 0) {
    SystemDriverFound = 1;
    DriverReady = 1;
  } else {
    stage_driver_files();
    // No row means no missing row: where nothing could be staged, the driver counts as installed.
    if (count_missing_infs() == 0) DriverReady = 1;
  }
  SurveyDone = 1;
}

}  // namespace

void driver_survey(void*) {
  if (DriverReady == 0 && SurveyDone == 0) LookForDriver();
  if (DriverReady != 0) {
    ShowDriverReady();
  } else {
    ShowInstallDue();
  }
}

void driver_skip_callback(Fl_Widget*, void*) {
  ActivateNavigation();
  DriverNextButton->callback(DriverNextPageCallback);
  Wizard->next();
}

int system_driver_present() {
  InfFile* file = OpenInfFile("usbser.inf");
  if (file == nullptr) return 0;
  const bool service = ServiceIsSerialDriver(file);
  const bool port_page = SecondLineIsPortPage(file);  // asked for whatever the first test gave
  CloseInfFile(file);
  return service && port_page ? 1 : 0;
}

void stage_driver_files() {
  if (StagedInfCount > 0) return;
  char folder[kTemporaryFolderSize] = "";
  if (GetTemporaryFolder(folder, sizeof folder) == 0) {
    FormatBounded(folder, sizeof folder, "%s", "C:\\");
  }
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    const char* name = Store.names[i];
    if (EndsWith(name, kDriverInfEnding)) {
      if (WriteEntryToFile(folder, "", name, i) < 0) continue;
      AddStagedInf(folder, name);
      // Ends the whole walk, so a catalog further on isn't staged either.
      if (StagedInfCount >= kMostStagedInfs) return;
    } else if (EndsWith(name, kDriverCatalogEnding)) {
      WriteEntryToFile(folder, "", name, i);
    }
  }
}

int count_missing_infs() {
  int missing = 0;
  for (int row = 0; row < StagedInfCount; ++row) {
    InstalledInfNames[row] = find_installed_inf(StagedInfPaths[row]);
    if (InstalledInfNames[row] == nullptr) ++missing;
  }
  return missing;
}

void ResetDriverSurvey() {
  for (int row = 0; row < kStagedInfRows; ++row) {
    std::free(StagedInfPaths[row]);
    std::free(InstalledInfNames[row]);
    StagedInfPaths[row] = nullptr;
    InstalledInfNames[row] = nullptr;
  }
  StagedInfCount = 0;
  SurveyDone = 0;
  DriverReady = 0;
  SystemDriverFound = 0;
}
