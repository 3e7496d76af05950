#include "wizard/furniture.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Group.H>

#include "store/embedded_file_store.h"
#include "wizard/png_image.h"
#include "wizard/text_label.h"
#include "wizard/wizard_pages.h"

namespace {

Fl_Image* logo;

// The picture that the payload has of this name, empty when it is missing. It lives as long as the
// program.
Fl_Image* LoadPicture(const PictureRoom& room) {
  return new my_png_image(FindEntryByName(room.name));
}

Fl_Box* AddImage(Fl_Boxtype box, int x, int y, const PictureRoom& room, Fl_Image* image) {
  auto* picture = new Fl_Box(box, x, y, room.width, room.height, nullptr);
  picture->image(image);
  return picture;
}

Fl_Button* AddButton(int x, const char* label, Fl_Callback_p callback) {
  auto* button = new Fl_Button(x, 323, 90, 26, label);
  if (callback != nullptr) button->callback(callback);
  return button;
}

}  // namespace

Fl_Group* BeginPage() {
  return new Fl_Group(0, 0, kPageWidth, kPageHeight);
}

void LoadLogo() {
  logo = LoadPicture(kLogoRoom);
}

Fl_Box* AddPicture(Fl_Boxtype box, int x, int y, const PictureRoom& room) {
  return AddImage(box, x, y, room, LoadPicture(room));
}

Fl_Box* AddRule(int x, int y, int width, int height) {
  return new Fl_Box(FL_THIN_DOWN_BOX, x, y, width, height, nullptr);
}

Fl_Box* AddHeader() {
  auto* header = new Fl_Box(FL_FLAT_BOX, 0, 0, 400, 60, nullptr);
  header->color(FL_WHITE);
  return header;
}

Fl_Box* AddTitle(const char* text) {
  return MakeTextLabel(10, 6, FL_HELVETICA_BOLD, 16, 0, text);
}

Fl_Box* AddSubtitle(const char* text) {
  return MakeTextLabel(16, 32, FL_HELVETICA, 16, 0, text);
}

Fl_Box* AddLogo() {
  return AddImage(FL_FLAT_BOX, 400, 0, kLogoRoom, logo);
}

Fl_Box* AddUpperRule() {
  return AddRule(0, 60, 500, 2);
}

Fl_Box* AddLowerRule() {
  return AddRule(4, 312, 492, 2);
}

Fl_Button* AddBack() {
  return AddButton(140, "Back", wizard_back_callback);
}

Fl_Button* AddNext(const char* label, Fl_Callback_p callback) {
  return AddButton(240, label, callback);
}

Fl_Button* AddNext() {
  return AddNext("Next", wizard_next_callback);
}

Fl_Button* AddCancel(const char* label) {
  return AddButton(390, label, wizard_cancel_callback);
}

Fl_Button* AddCancel() {
  return AddCancel("Cancel");
}
