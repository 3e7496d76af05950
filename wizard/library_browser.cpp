#include "wizard/library_browser.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Check_Browser.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Round_Button.H>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "engine/library_query.h"
#include "platform/text.h"
#include "store/embedded_file_store.h"
#include "store/payload_format.h"
#include "wizard/library_page.h"
#include "wizard/picture_room.h"
#include "wizard/png_image.h"

namespace {

constexpr std::size_t kLibraryNameSize = kLongestLibraryName + 1;
constexpr std::size_t kCompanionSize = 1024;

constexpr int kPreviewX = 236;
constexpr int kPreviewY = 100;
constexpr int kSpacerHeight = 12;

// The library that a payload entry belongs to. False for any other entry and for the companion
// files (picture, description) that lie directly in libraries/.
bool LibraryOfEntry(const char* entry_name, char (&library)[kLibraryNameSize]) {
  const char* name = AfterPrefix(entry_name, kLibrariesFolder);
  if (name == nullptr) return false;
  const char* slash = std::strchr(name, '/');
  if (slash == nullptr) return false;
  const auto length = static_cast<std::size_t>(slash - name);
  if (length == 0 || length > kLongestLibraryName) return false;
  std::memcpy(library, name, length);
  library[length] = '\0';
  return true;
}

// The index of "libraries/<name><ending>", or -1; also without a name.
int FindCompanion(const char* name, const char* ending) {
  if (name == nullptr) return -1;
  char path[kCompanionSize];
  FormatBounded(path, sizeof path, "%s%s%s", kLibrariesFolder, name, ending);
  return FindEntryByName(path);
}

// A copy of the description that lives as long as the program. An index of 0 counts as none.
const char* CopyDescription(int index) {
  const PayloadEntry entry =
      index > 0 ? EntryAt(static_cast<std::uint32_t>(index)) : PayloadEntry{"", 0, nullptr};
  const std::size_t length = std::min<std::size_t>(entry.size, kDescriptionLength);
  char* copy = static_cast<char*>(std::malloc(length + 1));
  if (copy == nullptr) return "";
  if (length > 0) std::memcpy(copy, entry.data, length);
  copy[length] = '\0';
  return copy;
}

// Gives the picture its height; the text below moves up into the room that it leaves.
void ArrangePreview(int picture_height) {
  LibraryImageBox->resize(kPreviewX, kPreviewY, kPreviewWidth, picture_height);
  LibrarySpacerBox->resize(kPreviewX, kPreviewY + picture_height, kPreviewWidth, kSpacerHeight);
  LibraryTextBox->resize(kPreviewX, kPreviewY + kSpacerHeight + picture_height, kPreviewWidth,
                         kPreviewHeight - picture_height);
}

}  // namespace

void FillLibraryList() {
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    char library[kLibraryNameSize];
    if (!LibraryOfEntry(Store.names[i], library)) continue;
    if (FindLibrary(library) == 0) LibraryList->add(library);
  }
  LibraryList->check_all();
  NoneButton->clear();
  AllButton->set();
}

void ShowLibrary(int row) {
  // One row too lenient, and LibraryToggled gives -1 where no row is current: such a row has no
  // text, and shows as an empty preview.
  if (row > LibraryList->nitems()) return;
  const char* name = LibraryList->text(row + 1);
  const int picture = FindCompanion(name, kPictureEnding);
  const int description = FindCompanion(name, kDescriptionEnding);
  LibraryTitleBox->label(name);
  auto* image = new my_png_image(picture);
  LibraryImageBox->image(image);
  ArrangePreview(image->h());
  LibraryPage->redraw();
  // The text before this one is abandoned with its image: nothing else points at them, and a run
  // shows few.
  LibraryTextBox->label(CopyDescription(description));
  // The analyzer would have the copy freed here: NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
  NoneButton->value(LibraryList->nchecked() == 0 ? 1 : 0);
  AllButton->value(LibraryList->nchecked() >= LibraryList->nitems() ? 1 : 0);
}

void LibraryToggled(Fl_Widget*, void*) {
  const int rows = LibraryList->nitems();
  const int ticked = LibraryList->nchecked();
  const int current = LibraryList->value();
  NoneButton->value(ticked == 0 ? 1 : 0);
  AllButton->value(ticked != 0 && ticked == rows ? 1 : 0);
  ShowLibrary(current - 1);
}

void AllPressed(Fl_Widget*, void*) {
  if (AllButton->value() == 0) return;
  NoneButton->clear();
  LibraryList->check_all();
}

void NonePressed(Fl_Widget*, void*) {
  if (NoneButton->value() == 0) return;
  AllButton->clear();
  LibraryList->check_none();
}
