#include "packager/progress_bar.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "packager/terminal.h"

namespace {

constexpr int kBarWidth = 40;

}  // namespace

ProgressBar::ProgressBar(std::string title, std::uint64_t total)
    : title_(std::move(title)), total_(total), active_(StandardErrorIsTerminal()) {}

ProgressBar::~ProgressBar() {
  if (shown_percent_ < 0) return;
  const int width = static_cast<int>(title_.size()) + kBarWidth + 8;
  std::fprintf(stderr, "\r%*s\r", width, "");
}

void ProgressBar::Advance(std::uint64_t bytes) {
  done_ = std::min(done_ + bytes, total_);
  if (!active_ || total_ == 0) return;
  const int percent = static_cast<int>(done_ * 100 / total_);
  if (percent == shown_percent_) return;
  shown_percent_ = percent;
  std::fprintf(stderr, "\r%s", ProgressText(title_, percent).c_str());
  std::fflush(stderr);
}

std::string ProgressText(const std::string& title, int percent) {
  const auto filled = static_cast<std::size_t>(percent * kBarWidth / 100);
  std::string number = std::to_string(percent);
  number.insert(0, 3 - std::min<std::size_t>(3, number.size()), ' ');
  return title + " [" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
         number + "%";
}
