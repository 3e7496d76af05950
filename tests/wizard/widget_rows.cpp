#include "tests/wizard/widget_rows.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Check_Browser.H>
#include <FL/Fl_Choice.H>
#include <FL/Fl_File_Browser.H>
#include <FL/Fl_Image.H>
#include <FL/Fl_Progress.H>
#include <FL/Fl_Round_Button.H>
#include <FL/Fl_Text_Display.H>
#include <FL/fl_draw.H>

#include <cmath>
#include <memory>
#include <sstream>
#include <typeinfo>

#include "driver/driver_install.h"
#include "driver/driver_survey.h"
#include "wizard/folder_browser.h"
#include "wizard/help_window.h"
#include "wizard/install_pump.h"
#include "wizard/library_browser.h"
#include "wizard/wizard_pages.h"

namespace {

struct CallbackName {
  Fl_Callback_p callback;
  const char* name;
};
constexpr CallbackName kCallbacks[] = {{wizard_back_callback, "back"},
                                       {wizard_next_callback, "next"},
                                       {wizard_cancel_callback, "cancel"},
                                       {driver_skip_callback, "skip"},
                                       {driver_install_callback, "install driver"},
                                       {driver_update_callback, "update"},
                                       {driver_uninstall_callback, "uninstall"},
                                       {folder_list_callback, "folder list"},
                                       {path_choice_callback, "path choice"},
                                       {help_button_callback, "help"},
                                       {help_ok_callback, "help ok"},
                                       {AllPressed, "all"},
                                       {NonePressed, "none"},
                                       {LibraryToggled, "library"},
                                       {BeginInstall, "begin install"},
                                       {Fl_Widget::default_callback, "-"}};

std::string NameOfCallback(const Fl_Widget& widget) {
  for (const CallbackName& known : kCallbacks) {
    if (widget.callback() == known.callback) return known.name;
  }
  return "unknown";
}

// A widget of the class as FLTK makes it, and the class's name.
struct Kind {
  std::string name;
  std::unique_ptr<Fl_Widget> plain;
};

template <class Widget>
bool IsA(const Fl_Widget& widget, const char* name, Kind* kind) {
  if (typeid(widget) != typeid(Widget)) return false;
  Fl_Group* current = Fl_Group::current();
  Fl_Group::current(nullptr);
  *kind = {name, std::make_unique<Widget>(0, 0, 10, 10)};
  Fl_Group::current(current);
  return true;
}

Kind KindOf(const Fl_Widget& widget) {
  Kind kind;
  const bool known = IsA<Fl_Box>(widget, "Fl_Box", &kind) ||
                     IsA<Fl_Button>(widget, "Fl_Button", &kind) ||
                     IsA<Fl_Round_Button>(widget, "Fl_Round_Button", &kind) ||
                     IsA<Fl_Choice>(widget, "Fl_Choice", &kind) ||
                     IsA<Fl_File_Browser>(widget, "Fl_File_Browser", &kind) ||
                     IsA<Fl_Check_Browser>(widget, "Fl_Check_Browser", &kind) ||
                     IsA<Fl_Progress>(widget, "Fl_Progress", &kind) ||
                     IsA<Fl_Text_Display>(widget, "Fl_Text_Display", &kind) ||
                     IsA<Fl_Group>(widget, "Fl_Group", &kind);
  if (!known) kind = {typeid(widget).name(), std::make_unique<Fl_Box>(0, 0, 10, 10)};
  return kind;
}

std::string NameOfBox(Fl_Boxtype box) {
  if (box == FL_NO_BOX) return "none";
  if (box == FL_FLAT_BOX) return "flat";
  if (box == FL_THIN_DOWN_BOX) return "thin-down";
  return std::to_string(box);
}

std::string NameOfAlignment(Fl_Align align) {
  if (align == (FL_ALIGN_INSIDE | FL_ALIGN_LEFT)) return "left";
  if (align == (FL_ALIGN_TOP | FL_ALIGN_LEFT | FL_ALIGN_INSIDE | FL_ALIGN_WRAP)) return "wrap";
  if (align == (FL_ALIGN_INSIDE | FL_ALIGN_WRAP)) return "centred wrap";
  return std::to_string(align);
}

std::string MoreOf(const Fl_Widget& widget) {
  std::ostringstream more;
  if (const auto* progress = dynamic_cast<const Fl_Progress*>(&widget)) {
    more << progress->minimum() << " to " << progress->maximum() << " at " << progress->value();
  } else if (const auto* folders = dynamic_cast<const Fl_File_Browser*>(&widget)) {
    more << (folders->type() == FL_HOLD_BROWSER ? "hold" : "other") << ' '
         << (folders->filetype() == Fl_File_Browser::DIRECTORIES ? "directories" : "files");
  } else if (dynamic_cast<const Fl_Check_Browser*>(&widget) != nullptr) {
    more << "when " << static_cast<int>(widget.when());
  } else if (const auto* round = dynamic_cast<const Fl_Round_Button*>(&widget)) {
    more << (round->type() == FL_TOGGLE_BUTTON ? "toggle " : "other ")
         << (round->value() != 0 ? "set" : "clear");
  }
  return more.str();
}

}  // namespace

std::string Line(const Row& row) {
  std::ostringstream line;
  line << row.kind << " at " << row.x << ',' << row.y << " of " << row.w << 'x' << row.h << ", box "
       << row.box << ' ' << row.color << ", label \"" << row.label << "\" " << row.font << ' '
       << row.size << ' ' << row.align << ", " << row.state << ", callback " << row.callback
       << ", picture " << row.picture << (row.more.empty() ? "" : ", ") << row.more << '\n';
  return line.str();
}

std::string Line(const Fl_Widget& widget) {
  const Kind kind = KindOf(widget);
  Row row;
  row.kind = kind.name;
  row.x = widget.x();
  row.y = widget.y();
  row.w = widget.w();
  row.h = widget.h();
  const bool own_box = kind.name != "Fl_Box" && widget.box() == kind.plain->box();
  row.box = own_box ? "own" : NameOfBox(widget.box());
  row.color = widget.color() == FL_WHITE              ? "white"
              : widget.color() == kind.plain->color() ? "own"
                                                      : std::to_string(widget.color());
  // No table names another colour for a label or a selection than FLTK's own.
  if (widget.labelcolor() != kind.plain->labelcolor()) {
    row.color += ", label " + std::to_string(widget.labelcolor());
  }
  if (widget.selection_color() != kind.plain->selection_color()) {
    row.color += ", selection " + std::to_string(widget.selection_color());
  }
  row.label = widget.label() == nullptr ? "" : widget.label();
  row.font = widget.labelfont() == FL_HELVETICA        ? "regular"
             : widget.labelfont() == FL_HELVETICA_BOLD ? "bold"
                                                       : std::to_string(widget.labelfont());
  row.size = widget.labelsize();
  row.align = widget.align() == kind.plain->align() ? "own" : NameOfAlignment(widget.align());
  row.state = std::string(widget.active() != 0 ? "active" : "inactive") +
              (widget.visible() != 0 ? " visible" : " hidden");
  row.callback = NameOfCallback(widget);
  if (const Fl_Image* image = widget.image()) {
    row.picture = std::to_string(image->w()) + "x" + std::to_string(image->h());
  }
  row.more = MoreOf(widget);
  return Line(row);
}

std::string Lines(const Fl_Group& group) {
  std::string lines;
  for (int i = 0; i < group.children(); ++i) lines += Line(*group.child(i));
  return lines;
}

std::string Lines(const std::vector<Row>& rows) {
  std::string lines;
  for (const Row& row : rows) lines += Line(row);
  return lines;
}

Row Box(int x, int y, int w, int h, const std::string& box) {
  Row row;
  row.x = x;
  row.y = y;
  row.w = w;
  row.h = h;
  row.box = box;
  return row;
}

Row Text(int x, int y, Fl_Font font, int size, int centred, const std::string& text) {
  fl_font(font, size);
  const double width = fl_width(text.c_str());
  if (centred == 1) x -= static_cast<int>(std::ceil(static_cast<float>(width * 0.5)));
  Row row = Box(x, y, 1 + static_cast<int>(std::ceil(width)), fl_height() + fl_descent(), "none");
  row.label = text;
  row.font = font == FL_HELVETICA_BOLD ? "bold" : "regular";
  row.size = size;
  if (centred == 0) row.align = "left";
  return row;
}

Row Button(int x, int y, int w, int h, const std::string& label, const std::string& callback) {
  Row row = Box(x, y, w, h, "own");
  row.kind = "Fl_Button";
  row.label = label;
  row.callback = callback;
  return row;
}

Row Header() {
  return White(Box(0, 0, 400, 60, "flat"));
}
Row Title(const std::string& text) {
  return Text(10, 6, FL_HELVETICA_BOLD, 16, 0, text);
}
Row Subtitle(const std::string& text) {
  return Text(16, 32, FL_HELVETICA, 16, 0, text);
}
Row Logo() {
  return WithPicture(Box(400, 0, 100, 60, "flat"),
                     std::to_string(kLogoWidth) + "x" + std::to_string(kLogoHeight));
}
Row UpperRule() {
  return Box(0, 60, 500, 2, "thin-down");
}
Row LowerRule() {
  return Box(4, 312, 492, 2, "thin-down");
}
Row Back() {
  return Button(140, 323, 90, 26, "Back", "back");
}
Row Next() {
  return Button(240, 323, 90, 26, "Next", "next");
}
Row Cancel() {
  return Button(390, 323, 90, 26, "Cancel", "cancel");
}

Row White(Row row) {
  row.color = "white";
  return row;
}
Row Wrapped(Row row, const std::string& text) {
  row.align = "wrap";
  row.label = text;
  return row;
}
Row Sized(Row row, int size) {
  row.size = size;
  return row;
}
Row WithPicture(Row row, const std::string& picture) {
  row.picture = picture;
  return row;
}
Row Deactivated(Row row) {
  row.state = "inactive visible";
  return row;
}
Row DeactivatedAndHidden(Row row) {
  row.state = "inactive hidden";
  return row;
}
