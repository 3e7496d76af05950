// The fourth page: which of the optional libraries to install. Its widgets are built here, their
// logic is in wizard/library_browser.h; the list itself, which the engine asks, is LibraryList of
// engine/library_query.h.
#pragma once

class Fl_Box;
class Fl_Group;
class Fl_Round_Button;

extern Fl_Group* LibraryPage;
extern Fl_Round_Button* AllButton;   // shown set while every row is ticked
extern Fl_Round_Button* NoneButton;  // shown set while no row is ticked

// The preview of the row clicked last. These three always end at the same line: text moves up into
// the room that the picture leaves.
extern Fl_Box* LibraryTitleBox;
extern Fl_Box* LibraryImageBox;
extern Fl_Box* LibrarySpacerBox;
extern Fl_Box* LibraryTextBox;

// Adds the page to the current group, the list filled and the first row previewed.
void BuildLibraryPage();

// Forgets the page, for tests; without a list every library counts as selected.
void ResetLibraryPage();
