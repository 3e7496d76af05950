#include "packager/progress_bar.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "packager/terminal.h"

namespace {

constexpr int kBarWidth = 40;
bool is_wanted = true;

}  // namespace

ProgressBar::ProgressBar(std::string title, std::uint64_t total)
    : title_(std::move(title)), total_(total), active_(is_wanted && StandardErrorIsTerminal()) {
  if (total_ > 0) {
    Reach(0);
  } else {
    Show(title_ + " ...");
  }
}

ProgressBar::~ProgressBar() {
  if (shown_width_ > 0) std::fprintf(stderr, "\r%*s\r", shown_width_, "");
}

void ProgressBar::SetWanted(bool wanted) {
  is_wanted = wanted;
}

void ProgressBar::Reach(std::uint64_t done) {
  done_ = std::min(done, total_);
  if (!active_ || total_ == 0) return;
  const int percent = static_cast<int>(done_ * 100 / total_);
  if (percent == shown_percent_) return;
  shown_percent_ = percent;
  Show(ProgressText(title_, percent));
}

void ProgressBar::Show(const std::string& text) {
  if (!active_) return;
  shown_width_ = static_cast<int>(text.size());
  std::fprintf(stderr, "\r%s", text.c_str());
  std::fflush(stderr);
}

std::string ProgressText(const std::string& title, int percent) {
  const auto filled = static_cast<std::size_t>(percent * kBarWidth / 100);
  std::string number = std::to_string(percent);
  number.insert(0, 3 - std::min<std::size_t>(3, number.size()), ' ');
  return title + " [" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
         number + "%";
}
