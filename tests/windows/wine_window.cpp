#include "tests/windows/wine_window.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <thread>

#include "tests/windows/run_in_wine.h"

namespace {

constexpr int kLongestWait = 60;  // seconds
constexpr std::chrono::milliseconds kPause(50);
constexpr int kQuietLooks = 4;  // in a row without a change, a pause between each two

// The windows' widths, in units.
constexpr int kInstallerWidth = 500;
constexpr int kHelpWidth = 400;

// Half the size of the part of a button where a label stands, in units.
constexpr int kLabelHalfWidth = 20;
constexpr int kLabelHalfHeight = 7;

std::string OutputOf(const std::string& command) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 65536> buffer{};
  for (std::size_t count = 0;
       (count = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) > 0;) {
    text.append(buffer.data(), count);
  }
  return text;
}

// The numbers of the windows that are seen under such a title, a line each.
std::string FindWindows(const std::string& title) {
  return OutputOf("xdotool search --onlyvisible --name '" + title + "' 2>/dev/null");
}

// What is this many units long, in pixels.
int Scaled(int units, double scale) {
  return static_cast<int>(std::lround(units * scale));
}

}  // namespace

template <typename Condition>
void WineWindow::WaitFor(const char* what, Condition condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(kLongestWait);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      Keep("failed");
      throw std::runtime_error(std::string("waited in vain for ") + what);
    }
    std::this_thread::sleep_for(kPause);
  }
}

WineWindow::WineWindow(const std::string& program, const std::vector<std::string>& arguments,
                       const std::string& title, const std::string& folder) {
  std::vector<std::string> words = {WINE_LAUNCHER, "--prefix", WinePrefix()};
  if (!WineOverrides.empty()) words.insert(words.end(), {"--override", WineOverrides});
  words.push_back(program);
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  process_ = fork();
  if (process_ < 0) throw std::runtime_error("fork failed");
  if (process_ == 0) {
    if (chdir(folder.c_str()) == 0) execv(WINE_LAUNCHER, pointers.data());
    _exit(127);
  }
  TurnTo(title);
}

WineWindow::~WineWindow() {
  if (process_ == 0) return;
  StopWine();
  End();
}

void WineWindow::TurnBackTo(const std::string& title, const std::string& gone) {
  WaitFor("a window to close", [&] { return FindWindows(gone).empty(); });
  TurnTo(title);
}

void WineWindow::TurnTo(const std::string& title) {
  window_.clear();
  WaitFor("the window", [&] {
    const std::string found = FindWindows(title);
    window_ = found.substr(0, found.find('\n'));
    return !window_.empty();
  });
  unscaled_width_ = title.ends_with("Installer") ? kInstallerWidth
                    : title.ends_with("Help")    ? kHelpWidth
                                                 : 0;
  std::string last;
  int quiet = 0;
  WaitFor("the window's pixels", [&] {
    const std::string pixels = Pixels();
    quiet = !pixels.empty() && pixels == last ? quiet + 1 : 0;
    last = pixels;
    return quiet >= kQuietLooks;
  });
}

bool WineWindow::StandsBefore(const std::string& title) {
  const std::string other = FindWindows(title);
  if (other.empty()) return false;
  // The screen's windows, the topmost first, each in a line with its number in hexadecimal.
  const std::string all = OutputOf("xwininfo -root -children");
  const auto place = [&](const std::string& window) {
    char number[32];
    std::snprintf(number, sizeof number, "0x%lx ", std::stoul(window));
    return all.find(number);
  };
  return place(window_) < place(other);
}

void WineWindow::Click(Spot spot, int times) {
  const double scale = Scale();
  OutputOf("xdotool mousemove --window " + window_ + " " + std::to_string(Scaled(spot.x, scale)) +
           " " + std::to_string(Scaled(spot.y, scale)) + " click --repeat " +
           std::to_string(times) + " --delay 60 1");
}

void WineWindow::Press(const std::string& key) {
  OutputOf("xdotool key --window " + window_ + " " + key);
}

void WineWindow::ClickAndWait(Spot spot, int times) {
  const std::string before = Pixels();
  Click(spot, times);
  std::string last;
  int quiet = 0;
  WaitFor("a change", [&] {
    const std::string pixels = Pixels();
    quiet = pixels == last && pixels != before ? quiet + 1 : 0;
    last = pixels;
    return quiet >= kQuietLooks;
  });
}

bool WineWindow::IsActive(Spot button) {
  const Spot size = Size();
  const double scale = Scale();
  const std::string pixels = Pixels();
  if (pixels.size() != 3 * static_cast<std::size_t>(size.x) * static_cast<std::size_t>(size.y)) {
    return false;
  }
  const auto is_black = [&](int x, int y) {
    const int at = 3 * (y * size.x + x);
    return std::all_of(pixels.begin() + at, pixels.begin() + at + 3,
                       [](char value) { return static_cast<unsigned char>(value) < 64; });
  };
  int black = 0;
  for (int y = Scaled(button.y - kLabelHalfHeight, scale);
       y <= Scaled(button.y + kLabelHalfHeight, scale); ++y) {
    for (int x = Scaled(button.x - kLabelHalfWidth, scale);
         x <= Scaled(button.x + kLabelHalfWidth, scale); ++x) {
      if (is_black(x, y)) ++black;
    }
  }
  return black > 10;
}

void WineWindow::WaitUntilActive(Spot button) {
  WaitFor("an active button", [&] { return IsActive(button); });
}

void WineWindow::WaitUntilInactive(Spot button) {
  WaitFor("an inactive button", [&] { return !IsActive(button); });
}

void WineWindow::GoToFolderPage(const char* keep) {
  if (keep != nullptr) Keep(keep + std::string("1-welcome"));
  Click(kNext);
  WaitUntilActive(kBack);  // until the survey has ended
  if (keep != nullptr) Keep(keep + std::string("2-driver"));
  Click(IsActive(kSkipDriver) ? kSkipDriver : kNext);
  WaitUntilActive(kHelp);
}

// A command's first words, for a picture that is cut out of the whole screen, so that a menu over
// the window is in it.
std::string WineWindow::CutOut() const {
  return "eval $(xdotool getwindowgeometry --shell " + window_ +
         "); import -silent -window root -crop ${WIDTH}x${HEIGHT}+$X+$Y +repage ";
}

void WineWindow::Keep(const std::string& name) {
  std::filesystem::create_directories(PICTURES);
  OutputOf(CutOut() + PICTURES "/" + name + ".png");
}

std::string WineWindow::Parts(int across, int down) {
  return OutputOf(CutOut() + "-resize " + std::to_string(across) + "x" + std::to_string(down) +
                  "! -colorspace Gray -depth 8 gray:-");
}

Spot WineWindow::Size() {
  Spot size{0, 0};
  const std::string geometry = OutputOf("xdotool getwindowgeometry --shell " + window_);
  const std::size_t width = geometry.find("WIDTH=");
  if (width == std::string::npos ||
      std::sscanf(geometry.c_str() + width, "WIDTH=%d HEIGHT=%d", &size.x, &size.y) != 2) {
    return {0, 0};
  }
  return size;
}

void WineWindow::WaitUntilWiderThan(int pixels) {
  WaitFor("a wider window", [&] { return Size().x > pixels; });
}

double WineWindow::Scale() {
  return unscaled_width_ == 0 ? 1 : static_cast<double>(Size().x) / unscaled_width_;
}

int WineWindow::End() {
  int status = 0;
  if (process_ == 0 || waitpid(process_, &status, 0) != process_) return -1;
  process_ = 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string WineWindow::Pixels() {
  return OutputOf("import -silent -window " + window_ + " -depth 8 rgb:- 2>/dev/null");
}
