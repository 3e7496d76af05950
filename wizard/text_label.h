// The factory of the wizard's one-line texts. Asks FLTK's font for sizes; keeps nothing.
#pragma once

#include <FL/Enumerations.H>

class Fl_Box;

// Adds to the current group a box without a border, as wide as its text needs. With `centred` 1, x
// is the wanted centre of the text; with 0, its left edge, and the text is left aligned. The text
// is not copied: as with every label, it must stay for as long as the box shows it.
Fl_Box* MakeTextLabel(int x, int y, Fl_Font font, int size, int centred, const char* text);
