// The third page: which copy of Arduino to install into. Its widgets are built here, their logic is
// in wizard/folder_browser.h.
#pragma once

class Fl_Button;
class Fl_Choice;
class Fl_File_Browser;
class Fl_Group;

extern Fl_Group* FolderPage;
extern Fl_Choice* PathChoice;        // BrowsedFolder as of the last rebuild, and its parents
extern Fl_File_Browser* FolderList;  // the sub-folders of BrowsedFolder
extern Fl_Button* FolderNextButton;  // active exactly while HostVersionNumber is not 0
extern Fl_Button* HelpButton;        // "?", on this page only

// Adds the page to the current group. Searches the default folder, makes it BrowsedFolder and
// HostFolder and recognises it, all before the window is shown.
void BuildFolderPage();

// Forgets the page, for tests.
void ResetFolderPage();
