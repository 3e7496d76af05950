// All that the install engine knows of the library page: is this library to be installed?
#pragma once

class Fl_Check_Browser;

// The library page's list, one row a library. Null until the wizard builds that page, and for the
// whole run from the command line. Rows are added while the page is built and never change.
extern Fl_Check_Browser* LibraryList;

// The row of that name, counted from 1, or 0. The row found last is kept, since the files of one
// library stand together in the table. LibraryList must exist.
int FindLibrary(const char* name);

// 1 to install the library, 0 to leave it out. Without a list every library is installed; with one,
// a name that no row holds is not.
int LibrarySelected(const char* name);

// Forgets the row kept by FindLibrary, for tests that build a new list.
void ResetLibraryQuery();
