#include "packager/description_fit.h"

#include <array>

#include "wizard/picture_room.h"

namespace {

constexpr int kUnitsPerEm = 2048;
constexpr int kLineWidth = kPreviewWidth - 2 * kLabelMargin;
constexpr int kTabColumns = 8;

// Advance widths of the characters from blank to "~".
constexpr std::array<int, 95> kAdvances = {
    569,  569,  727,  1139, 1139, 1821, 1366, 391,  682,  682,  797,  1196, 569,  682,  569,  569,
    1139, 1139, 1139, 1139, 1139, 1139, 1139, 1139, 1139, 1139, 569,  569,  1196, 1196, 1196, 1139,
    2079, 1366, 1366, 1479, 1479, 1366, 1251, 1593, 1479, 569,  1024, 1366, 1139, 1706, 1479, 1593,
    1366, 1593, 1479, 1366, 1251, 1479, 1366, 1933, 1366, 1366, 1251, 569,  569,  569,  961,  1139,
    682,  1139, 1139, 1024, 1139, 1139, 569,  1139, 1139, 455,  455,  1024, 455,  1706, 1139, 1139,
    1139, 1139, 682,  1024, 569,  1139, 1024, 1479, 1024, 1024, 1024, 684,  532,  684,  1196};
constexpr int kLetterAdvance = 1139;  // most letters beyond ASCII
constexpr int kWideAdvance = 2048;    // signs and other scripts

bool IsControl(unsigned char c) {
  return c < ' ' || c == 0x7F;
}

int Pixels(int advance) {
  return (advance * kDescriptionTextSize + kUnitsPerEm / 2) / kUnitsPerEm;
}

int AsciiWidth(char c) {
  return Pixels(kAdvances.at(static_cast<std::size_t>(c - ' ')));
}

// The width that the character at a byte of UTF-8 text adds; nothing for a byte that continues one.
int WidthOf(char c) {
  const auto byte = static_cast<unsigned char>(c);
  if (IsControl(byte)) return AsciiWidth('^') + AsciiWidth(static_cast<char>(byte ^ 0x40));
  if (byte < 0x80) return AsciiWidth(c);
  if (byte < 0xC0) return 0;
  return Pixels(byte < 0xE0 ? kLetterAdvance : kWideAdvance);
}

// Takes the first line off the text: as many words as fit, one at least, or all to a line feed.
void TakeLine(std::string_view* text) {
  int width = 0;  // up to here, blanks included
  int column = 0;
  std::size_t word = 0;  // where that one begins
  bool has_word = false;
  for (std::size_t i = 0;; ++i) {
    const bool at_end = i == text->size();
    const char c = at_end ? '\n' : (*text)[i];
    if (c == ' ' || c == '\n') {
      if (word < i) {
        if (has_word && width > kLineWidth) return text->remove_prefix(word);
        has_word = true;
      }
      if (at_end) return text->remove_prefix(i);
      if (c == '\n') return text->remove_prefix(i + 1);
      word = i + 1;
    }
    if (c == '\t') {
      const int blanks = kTabColumns - column % kTabColumns;
      width += blanks * AsciiWidth(' ');
      column += blanks;
    } else {
      width += WidthOf(c);
      ++column;
    }
  }
}

}  // namespace

int DescriptionLines(std::string_view text) {
  text = text.substr(0, kDescriptionLength);
  int lines = 0;
  do {
    ++lines;
    TakeLine(&text);
  } while (!text.empty());
  return lines;
}

int RoomForLines(int picture_height) {
  return (kPreviewHeight - picture_height) / kDescriptionLineHeight;
}
