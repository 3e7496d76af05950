// A bar on the terminal while a large payload is compressed. Nothing is written when the standard
// error stream isn't a terminal.
#pragma once

#include <cstdint>
#include <string>

class ProgressBar {
 public:
  // `title` stands before the bar; `total` may be 0.
  ProgressBar(std::string title, std::uint64_t total);
  // Wipes the bar, so that a message that follows has the line for itself.
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Advance(std::uint64_t bytes);

 private:
  std::string title_;
  std::uint64_t total_;
  std::uint64_t done_ = 0;
  int shown_percent_ = -1;
  bool active_;
};

// The bar's text at `percent`, 0 to 100, always of the same width.
std::string ProgressText(const std::string& title, int percent);
