// What several pages have in common: the header with its texts and logo, the two rules, the buttons
// of the bottom row. Every function adds one widget to the current group, at its fixed place.
#pragma once

#include <FL/Enumerations.H>
#include <FL/Fl_Widget.H>

#include "wizard/picture_room.h"

class Fl_Box;
class Fl_Button;
class Fl_Group;

// Every page is as large as the window.
inline constexpr int kPageWidth = 500;
inline constexpr int kPageHeight = 360;

// The alignment of the long texts: top-left wrap.
inline constexpr Fl_Align kTopLeftWrap =
    FL_ALIGN_TOP | FL_ALIGN_LEFT | FL_ALIGN_INSIDE | FL_ALIGN_WRAP;

// A page to fill; end() on it completes the page.
Fl_Group* BeginPage();

// Loads the one image that all logos share. To be called before the first page is built.
void LoadLogo();

// A picture of the payload in all of its room, with its top left corner at x, y. Without such an
// entry the box stays blank.
Fl_Box* AddPicture(Fl_Boxtype box, int x, int y, const PictureRoom& room);
Fl_Box* AddRule(int x, int y, int width, int height);

Fl_Box* AddHeader();
Fl_Box* AddTitle(const char* text);
Fl_Box* AddSubtitle(const char* text);
Fl_Box* AddLogo();
Fl_Box* AddUpperRule();
Fl_Box* AddLowerRule();

// The three places of the bottom row. Without other words they are the plain Back, Next and Cancel.
// A null callback leaves the button FLTK's own, which nobody reads.
Fl_Button* AddBack();
Fl_Button* AddNext(const char* label, Fl_Callback_p callback);
Fl_Button* AddNext();
Fl_Button* AddCancel(const char* label);
Fl_Button* AddCancel();
