#include "wizard/welcome_page.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Group.H>

#include "platform/text.h"
#include "store/embedded_file_store.h"
#include "store/package_version.h"
#include "wizard/furniture.h"
#include "wizard/text_label.h"

Fl_Group* WelcomePage;

namespace {

constexpr int kCentre = 323;

const char* VersionText() {
  static char text[64];
  FormatBounded(text, sizeof text, "Version %s", kPackageVersion);
  return text;
}

void AddCentredText(int y, Fl_Font font, int size, const char* text) {
  MakeTextLabel(kCentre, y, font, size, 1, text);
}

}  // namespace

void BuildWelcomePage() {
  WelcomePage = BeginPage();
  AddPicture(FL_FLAT_BOX, 0, 0, kWelcomeRoom);
  (new Fl_Box(FL_FLAT_BOX, 144, 0, 356, 312, nullptr))->color(FL_WHITE);
  AddLowerRule();
  AddRule(144, 0, 2, 312);
  AddCentredText(6, FL_HELVETICA_BOLD, 30, "Quirloduino");
  AddCentredText(48, FL_HELVETICA, 12, VersionText());
  AddPicture(FL_THIN_DOWN_BOX, 152, 76, kBoardRoom);
  AddCentredText(196, FL_HELVETICA, 12, "Arduino versions supported:");
  AddCentredText(212, FL_HELVETICA, 12, SupportedVersions());
  auto* purpose = new Fl_Box(FL_NO_BOX, 176, 244, 292, 130,
                             "This installer adds files to your Arduino software so you can build "
                             "and run sketches on Quirlo.");
  purpose->labelsize(14);
  purpose->align(kTopLeftWrap);
  AddBack()->deactivate();
  AddNext();
  AddCancel();
  WelcomePage->end();
}
