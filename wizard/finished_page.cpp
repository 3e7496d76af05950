#include "wizard/finished_page.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Group.H>

#include "wizard/furniture.h"

void BuildFinishedPage() {
  Fl_Group* page = BeginPage();
  AddPicture(FL_NO_BOX, 5, 65, kFinalRoom);
  AddHeader();
  AddTitle("Finished");
  AddSubtitle("All files were installed");
  AddLogo();
  AddUpperRule();
  AddLowerRule();
  AddBack()->deactivate();
  AddNext("Next", nullptr)->deactivate();
  AddCancel("Done");
  page->end();
}
