#include "wizard/folder_page.h"

#include <FL/Fl_Browser.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Choice.H>
#include <FL/Fl_File_Browser.H>
#include <FL/Fl_Group.H>

#include "platform/text.h"
#include "recognition/default_folder.h"
#include "store/host_selection.h"
#include "wizard/folder_browser.h"
#include "wizard/furniture.h"
#include "wizard/help_window.h"

Fl_Group* FolderPage;
Fl_Choice* PathChoice;
Fl_File_Browser* FolderList;
Fl_Button* FolderNextButton;
Fl_Button* HelpButton;

void BuildFolderPage() {
  FolderPage = BeginPage();
  AddHeader();
  AddTitle("Select Arduino Folder");
  AddSubtitle("Choose Arduino location to install Quirloduino");
  AddLogo();
  AddUpperRule();
  FormatBounded(BrowsedFolder, sizeof BrowsedFolder, "%s", DefaultFolder());
  FormatBounded(HostFolder, sizeof HostFolder, "%s", BrowsedFolder);
  PathChoice = new Fl_Choice(32, 75, 436, 30);
  rebuild_path_choice();
  FolderList = new Fl_File_Browser(32, 112, 436, 186);
  FolderList->type(FL_HOLD_BROWSER);
  FolderList->filetype(Fl_File_Browser::DIRECTORIES);
  load_folder_list();
  FolderList->callback(folder_list_callback);
  AddLowerRule();
  AddBack();
  AddCancel();
  FolderNextButton = AddNext();
  HelpButton = new Fl_Button(340, 323, 26, 26, "?");
  HelpButton->callback(help_button_callback);
  // The search may have ended on another folder than this one.
  recognise_host_folder();
  FolderPage->end();
}

void ResetFolderPage() {
  FolderPage = nullptr;
  PathChoice = nullptr;
  FolderList = nullptr;
  FolderNextButton = nullptr;
  HelpButton = nullptr;
}
