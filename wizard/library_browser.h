// The library page's logic: one ticked row for each library of the payload, and the preview of the
// row clicked last. Works on LibraryList and the widgets of wizard/library_page.h, reads the store;
// looks at no folder, so what is installed already neither ticks nor unticks anything. Nothing here
// reports a failure: a missing picture or description is an empty one.
#pragma once

class Fl_Widget;

// Adds a row for each library, in the order of its first file in the table, and ticks all of them.
// Called once, while the page is built.
void FillLibraryList();

// Shows name, picture and description of the row, counted from 0. Picture and text of the row shown
// before are abandoned, since the widgets may still hold them: a few kilobytes for each click.
void ShowLibrary(int row);

// The callback of LibraryList, for a tick or a click on a row.
void LibraryToggled(Fl_Widget*, void*);

// The callbacks of the two toggles. Each ticks or unticks all rows when it was switched on. The two
// are no radio group: switching one off again changes nothing else.
void AllPressed(Fl_Widget*, void*);
void NonePressed(Fl_Widget*, void*);
