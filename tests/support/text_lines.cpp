#include "tests/support/text_lines.h"

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t feed = text.find('\n', begin);
    const std::size_t end = feed == std::string::npos ? text.size() : feed + 1;
    lines.push_back(text.substr(begin, end - begin));
    begin = end;
  }
  return lines;
}
