#include "wizard/library_page.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Check_Browser.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Round_Button.H>

#include "engine/library_query.h"
#include "wizard/furniture.h"
#include "wizard/library_browser.h"

Fl_Group* LibraryPage;
Fl_Round_Button* AllButton;
Fl_Round_Button* NoneButton;
Fl_Box* LibraryTitleBox;
Fl_Box* LibraryImageBox;
Fl_Box* LibrarySpacerBox;
Fl_Box* LibraryTextBox;

void BuildLibraryPage() {
  LibraryPage = BeginPage();
  AddHeader();
  AddTitle("Libraries to Install");
  AddSubtitle("Choose additional libraries install");  // these words on purpose
  AddLogo();
  AddUpperRule();
  AllButton = new Fl_Round_Button(36, 74, 70, 16, "All");
  AllButton->callback(AllPressed);
  NoneButton = new Fl_Round_Button(120, 74, 90, 16, "None");
  NoneButton->callback(NonePressed);
  LibraryList = new Fl_Check_Browser(16, 100, 200, 180);
  FillLibraryList();
  LibraryList->when(FL_WHEN_CHANGED);
  LibraryList->callback(LibraryToggled);
  LibraryTitleBox = new Fl_Box(FL_NO_BOX, 236, 72, 244, 20, nullptr);
  LibraryTitleBox->labelsize(16);
  LibraryImageBox = new Fl_Box(FL_NO_BOX, 236, 100, 244, 64, nullptr);
  LibrarySpacerBox = new Fl_Box(FL_NO_BOX, 236, 164, 244, 8, nullptr);
  LibraryTextBox = new Fl_Box(FL_NO_BOX, 236, 172, 244, 120, nullptr);
  LibraryTextBox->align(kTopLeftWrap);
  ShowLibrary(0);
  AddLowerRule();
  AddBack();
  AddCancel();
  AddNext();
  LibraryPage->end();
}

void ResetLibraryPage() {
  LibraryPage = nullptr;
  AllButton = nullptr;
  NoneButton = nullptr;
  LibraryList = nullptr;
  LibraryTitleBox = nullptr;
  LibraryImageBox = nullptr;
  LibrarySpacerBox = nullptr;
  LibraryTextBox = nullptr;
  ResetLibraryQuery();
}
