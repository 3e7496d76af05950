#include "engine/library_query.h"

#include <FL/Fl_Check_Browser.H>

#include <cstring>

Fl_Check_Browser* LibraryList;

namespace {

const char* found_name;  // the text of the row found last, the list's own
int found_row;

}  // namespace

int FindLibrary(const char* name) {
  if (found_name != nullptr && std::strcmp(found_name, name) == 0) return found_row;
  const int count = LibraryList->nitems();
  for (int row = 1; row <= count; ++row) {
    const char* text = LibraryList->text(row);
    if (std::strcmp(text, name) != 0) continue;
    found_name = text;
    found_row = row;
    return row;
  }
  return 0;
}

int LibrarySelected(const char* name) {
  if (LibraryList == nullptr) return 1;
  const int row = FindLibrary(name);
  return row != 0 && LibraryList->checked(row) != 0 ? 1 : 0;
}

void ResetLibraryQuery() {
  found_name = nullptr;
  found_row = 0;
}
