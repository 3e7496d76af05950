#include "tests/windows/wine_window.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
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

// A window's pixels come as three bytes each, in rows of this length.
constexpr int kWidth = 500;
constexpr int kHeight = 360;
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

std::string Place(Spot spot) {
  return std::to_string(spot.x) + " " + std::to_string(spot.y);
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

void WineWindow::TurnTo(const std::string& title) {
  window_.clear();
  WaitFor("the window", [&] {
    const std::string found =
        OutputOf("xdotool search --onlyvisible --name '" + title + "' 2>/dev/null");
    window_ = found.substr(0, found.find('\n'));
    return !window_.empty();
  });
  std::string last;
  int quiet = 0;
  WaitFor("the window's pixels", [&] {
    const std::string pixels = Pixels();
    quiet = !pixels.empty() && pixels == last ? quiet + 1 : 0;
    last = pixels;
    return quiet >= kQuietLooks;
  });
}

void WineWindow::Click(Spot spot, int times) {
  OutputOf("xdotool mousemove --window " + window_ + " " + Place(spot) + " click --repeat " +
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
  const std::string pixels = Pixels();
  if (pixels.size() != 3 * kWidth * kHeight) return false;
  int black = 0;
  for (int y = button.y - kLabelHalfHeight; y <= button.y + kLabelHalfHeight; ++y) {
    for (int x = button.x - kLabelHalfWidth; x <= button.x + kLabelHalfWidth; ++x) {
      const std::size_t at =
          3 * (static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x));
      const auto value = [&](std::size_t i) { return static_cast<unsigned char>(pixels[at + i]); };
      if (value(0) < 64 && value(1) < 64 && value(2) < 64) ++black;
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

void WineWindow::Keep(const std::string& name) {
  std::filesystem::create_directories(PICTURES);
  // Cut out of the whole screen, so that a menu over the window is in the picture.
  OutputOf("eval $(xdotool getwindowgeometry --shell " + window_ +
           "); import -silent -window root -crop ${WIDTH}x${HEIGHT}+$X+$Y +repage " PICTURES "/" +
           name + ".png");
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
