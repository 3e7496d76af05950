#include "packager/refusal.h"

#include <array>
#include <cstdio>
#include <system_error>

Refusal::Refusal(std::string_view file, std::string_view rule)
    : std::runtime_error(Printable(file) + ": " + Printable(rule)) {}

std::string WithReason(std::string_view what, int error) {
  return std::string(what) + " (" + std::generic_category().message(error) + ")";
}

std::string Printable(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  for (const char c : text) {
    if (c >= ' ' && c <= '~') {
      shown += c;
      continue;
    }
    std::array<char, 5> escape{};
    std::snprintf(escape.data(), escape.size(), "\\x%02X", static_cast<unsigned char>(c));
    shown += escape.data();
  }
  return shown;
}
