// What a long step is doing and how far it is, as one line on the terminal. Nothing is written when
// the standard error stream isn't a terminal, or when nobody wants it.
#pragma once

#include <cstdint>
#include <string>

class ProgressBar {
 public:
  // `title` stands before the bar. With a `total` of 0 there is no bar, only the title.
  ProgressBar(std::string title, std::uint64_t total);
  // Wipes the bar, so that a message that follows has the line for itself.
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Advance(std::uint64_t bytes) { Reach(done_ + bytes); }
  void Reach(std::uint64_t done);

  // False for a run that shall be quiet; it holds for all bars made from then on.
  static void SetWanted(bool wanted);

 private:
  void Show(const std::string& text);

  std::string title_;
  std::uint64_t total_;
  std::uint64_t done_ = 0;
  int shown_percent_ = -1;
  int shown_width_ = 0;
  bool active_;
};

// The bar's text at `percent`, 0 to 100, always of the same width.
std::string ProgressText(const std::string& title, int percent);
