// A widget in one line: its class, place, box, colour, label, font, alignment, state, callback and
// picture. The tests compare the lines of a page, in stacking order, with those of the design's
// table, written with the functions below.
#pragma once

#include <FL/Enumerations.H>

#include <string>
#include <vector>

class Fl_Group;
class Fl_Widget;

struct Row {
  std::string kind = "Fl_Box";
  int x = 0;
  int y = 0;
  int w = 0;
  int h = 0;
  std::string box = "own";    // "none", "flat", "thin-down"; "own" is the class's default
  std::string color = "own";  // "white"; "own" is the class's default
  std::string label;
  std::string font = "regular";
  int size = 14;
  std::string align = "own";  // "left" (inside, left), "wrap" (top-left wrap)
  std::string state = "active visible";
  std::string callback = "-";
  std::string picture = "-";  // width x height
  std::string more;           // what one class has beyond the others
};

std::string Line(const Row& row);
std::string Line(const Fl_Widget& widget);

// All children of the group, in stacking order, one line each.
std::string Lines(const Fl_Group& group);
std::string Lines(const std::vector<Row>& rows);

// The rows of the tables, from their columns. A text's size is measured as the design tells.
Row Box(int x, int y, int w, int h, const std::string& box);
Row Text(int x, int y, Fl_Font font, int size, int centred, const std::string& text);
Row Button(int x, int y, int w, int h, const std::string& label, const std::string& callback);
Row Header();
Row Title(const std::string& text);
Row Subtitle(const std::string& text);
Row Logo();
Row UpperRule();
Row LowerRule();
Row Back();
Row Next();
Row Cancel();
Row White(Row row);
Row Wrapped(Row row, const std::string& text);
Row Sized(Row row, int size);
Row WithPicture(Row row, const std::string& picture);
Row Deactivated(Row row);
Row DeactivatedAndHidden(Row row);

// The size of the logo's picture that the tests' payload has.
inline constexpr int kLogoWidth = 20;
inline constexpr int kLogoHeight = 12;
