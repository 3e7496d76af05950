// How much room a library's description takes on the library page, reckoned without the toolkit
// that draws it there. The lines are broken as FLTK breaks a wrapped label. On Windows it draws
// labels in Arial; the widths are that font's (Liberation Sans, which was made to the same
// measures, has them in its hmtx table), at the size of the page's text and rounded to whole pixels
// as Windows does. A person who set another font or size may see a line more or fewer.
#pragma once

#include <string_view>

// Pixels of one line: ascent 13 and descent 3 at the size of 14.
inline constexpr int kDescriptionLineHeight = 16;

// The lines that the description takes, at least 1. What the page cuts off isn't counted.
int DescriptionLines(std::string_view text);

// The lines that the page has room for beside a picture of this height, 0 for no picture.
int RoomForLines(int picture_height);
