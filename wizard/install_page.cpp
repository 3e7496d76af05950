#include "wizard/install_page.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Progress.H>

#include "store/embedded_file_store.h"
#include "wizard/furniture.h"
#include "wizard/install_pump.h"
#include "wizard/text_label.h"

Fl_Group* InstallPage;
Fl_Box* InstallStatusLabel;
Fl_Progress* InstallProgress;
Fl_Box* InstallDetailBox;
Fl_Button* InstallBackButton;
Fl_Button* InstallButton;
Fl_Button* InstallCancelButton;

namespace {

constexpr char kReadyText[] = "Click Install to begin";

}  // namespace

void BuildInstallPage() {
  InstallPage = BeginPage();
  AddHeader();
  AddTitle("Copy Files To Arduino Folder");
  AddSubtitle("Click install to begin");
  AddLogo();
  AddUpperRule();
  AddLowerRule();
  // The dots give the label a width that fits every later status.
  InstallStatusLabel =
      MakeTextLabel(64, 80, FL_HELVETICA, 16, 0, "Files to be installed:............");
  InstallStatusLabel->label(kReadyText);
  InstallProgress = new Fl_Progress(64, 105, 372, 25);
  InstallProgress->minimum(0);
  InstallProgress->maximum(static_cast<float>(Store.entry_count));
  InstallDetailBox = new Fl_Box(FL_NO_BOX, 64, 136, 372, 160, "");
  InstallDetailBox->labelsize(12);
  InstallDetailBox->align(kTopLeftWrap);
  InstallBackButton = AddBack();
  InstallButton = AddNext("Install", BeginInstall);
  InstallCancelButton = AddCancel();
  InstallPage->end();
}

void ArmInstallPage() {
  InstallButton->activate();
  InstallDetailBox->label("");
  InstallStatusLabel->label(kReadyText);
  InstallProgress->value(0);
  InstallProgress->redraw();
}

void ResetInstallPage() {
  InstallPage = nullptr;
  InstallStatusLabel = nullptr;
  InstallProgress = nullptr;
  InstallDetailBox = nullptr;
  InstallBackButton = nullptr;
  InstallButton = nullptr;
  InstallCancelButton = nullptr;
}
