#include "wizard/install_pump.h"

#include <FL/Fl.H>
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Progress.H>
#include <FL/Fl_Wizard.H>

#include <cstdint>
#include <cstring>

#include "driver/driver_page.h"
#include "engine/file_disposition.h"
#include "engine/host_preferences.h"
#include "engine/library_removal.h"
#include "engine/writers.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "wizard/failure_advice.h"
#include "wizard/install_page.h"

int InstallCursor;

namespace {

constexpr int kSliceEntries = 10;
constexpr std::uint64_t kSliceBytes = 1000000;
constexpr double kEndDelay = 0.01;

void EndRun(Fl_Timeout_Handler outcome) {
  Fl::remove_idle(InstallPump);
  Fl::add_timeout(kEndDelay, outcome);
}

void FinishRun() {
  if (!CloseOpenArchive()) {
    EndRun(InstallFailed);
    return;
  }
  UpdatePreferences(HostFolder, HostVersionNumber);
  RemoveOldLibraries(HostFolder);
  EndRun(InstallSucceeded);
}

// What follows the last '/' of the name, or all of it. For an alias that is the end of its target.
const char* LastPart(const char* name) {
  const char* slash = std::strrchr(name, '/');
  return slash == nullptr ? name : slash + 1;
}

void ShowProgress() {
  InstallDetailBox->label(LastPart(Store.names[InstallCursor]));
  InstallProgress->value(static_cast<float>(InstallCursor));
  InstallProgress->redraw();
}

}  // namespace

void BeginInstall(Fl_Widget*, void*) {
  InstallButton->deactivate();
  InstallBackButton->deactivate();
  InstallCancelButton->deactivate();
  InstallCursor = 0;
  InstallProgress->value(0);
  InstallProgress->redraw();
  InstallStatusLabel->label("Files to be installed:");
  Fl::add_idle(InstallPump);
}

void InstallPump(void*) {
  int entries = 0;
  std::uint64_t bytes = 0;
  do {
    if (DisposeEntry(HostFolder, static_cast<std::uint32_t>(InstallCursor)) < 0) {
      EndRun(InstallFailed);
      return;
    }
    ++InstallCursor;
    ++entries;
    if (static_cast<std::uint32_t>(InstallCursor) >= Store.entry_count) {
      FinishRun();
      return;
    }
    // The sum looks ahead: the first entry of a slice is never counted, so that a slice does at
    // least one entry, however large.
    bytes += Store.sizes[InstallCursor];
  } while (entries < kSliceEntries && bytes < kSliceBytes);
  ShowProgress();
}

void InstallSucceeded(void*) {
  Wizard->next();
  InstallProgress->value(0);
  InstallProgress->redraw();
}

void InstallFailed(void*) {
  InstallBackButton->activate();
  InstallCancelButton->activate();
  InstallStatusLabel->label("ERROR !!!");
  InstallDetailBox->label(FailureAdvice());
}

void ResetInstallPump() {
  Fl::remove_idle(InstallPump);
  Fl::remove_timeout(InstallSucceeded);
  Fl::remove_timeout(InstallFailed);
  InstallCursor = 0;
}
