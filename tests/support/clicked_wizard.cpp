#include "tests/support/clicked_wizard.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "tests/support/run_under.h"

namespace {

constexpr std::chrono::seconds kLongestWait(30);
constexpr std::chrono::milliseconds kPause(5);

// Where the windows stand: side by side, as a person would put them.
constexpr int kMargin = 10;
constexpr int kStep = 520;
constexpr char kScreen[] = "1600x800x24";

constexpr int kLabelHalfWidth = 20;
constexpr int kLabelHalfHeight = 7;
constexpr int kEnoughBlack = 10;

Display* Connection(void* connection) {
  return static_cast<Display*>(connection);
}

// Windows come and go while the test looks at them; the calls' results tell of it.
int IgnoreError(Display* /*display*/, XErrorEvent* /*error*/) {
  return 0;
}

// The child dies with the test, also when that is killed for its time.
void DieWithParent() {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
}

[[noreturn]] void Execute(std::vector<std::string> words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execvp(pointers[0], pointers.data());
  _exit(127);
}

// A child with the given words; `prepare` runs in it first.
pid_t Start(const std::vector<std::string>& words, const std::function<void()>& prepare) {
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork failed");
  if (child == 0) {
    DieWithParent();
    prepare();
    Execute(words);
  }
  return child;
}

void Stop(pid_t process) {
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
}

// Runs a program to its end on the given display.
void RunOn(const std::string& display, const std::vector<std::string>& words) {
  const pid_t child = Start(words, [&] { setenv("DISPLAY", display.c_str(), 1); });
  int status = 0;
  if (waitpid(child, &status, 0) != child || status != 0) {
    throw std::runtime_error(words[0] + " failed");
  }
}

// What the server writes to its pipe: the number of its display and a line feed.
std::string ReadNumber(int pipe) {
  std::string text;
  while (!text.ends_with('\n')) {
    pollfd waited = {pipe, POLLIN, 0};
    const auto limit = std::chrono::milliseconds(kLongestWait).count();
    char byte = 0;
    if (poll(&waited, 1, static_cast<int>(limit)) <= 0 || read(pipe, &byte, 1) != 1) {
      throw std::runtime_error("the X server did not start");
    }
    text += byte;
  }
  text.pop_back();
  return text;
}

std::string TitleOf(Display* display, Window window) {
  char* name = nullptr;
  if (XFetchName(display, window, &name) == 0 || name == nullptr) return "";
  const std::string title = name;
  XFree(name);
  return title;
}

bool IsShown(Display* display, Window window) {
  XWindowAttributes attributes;
  return XGetWindowAttributes(display, window, &attributes) != 0 &&
         attributes.map_state == IsViewable;
}

// 0 when there is none.
Window FindWindow(Display* display, const std::string& title) {
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned count = 0;
  Window found = 0;
  if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) == 0) {
    return 0;
  }
  for (unsigned i = 0; i < count && found == 0; ++i) {
    if (TitleOf(display, children[i]).ends_with(title) && IsShown(display, children[i])) {
      found = children[i];
    }
  }
  if (children != nullptr) XFree(children);
  return found;
}

// Where the window's corner lies on the screen, and its size.
bool PlaceOf(Display* display, Window window, Area* place) {
  XWindowAttributes attributes;
  Window child = 0;
  if (XGetWindowAttributes(display, window, &attributes) == 0) return false;
  place->width = attributes.width;
  place->height = attributes.height;
  return XTranslateCoordinates(display, window, DefaultRootWindow(display), 0, 0, &place->x,
                               &place->y, &child) != 0;
}

Pixels ReadPixels(Display* display, Area area) {
  XImage* image = XGetImage(display, DefaultRootWindow(display), area.x, area.y,
                            static_cast<unsigned>(area.width), static_cast<unsigned>(area.height),
                            AllPlanes, ZPixmap);
  if (image == nullptr) return {};
  Pixels pixels;
  for (int y = 0; y < area.height; ++y) {
    for (int x = 0; x < area.width; ++x) {
      pixels.push_back(static_cast<unsigned>(XGetPixel(image, x, y)) & 0xFFFFFF);
    }
  }
  XDestroyImage(image);
  return pixels;
}

bool IsBlack(unsigned pixel) {
  return (pixel >> 16) < 64 && (pixel >> 8 & 0xFF) < 64 && (pixel & 0xFF) < 64;
}

bool LabelIsBlack(const Pixels& label) {
  return std::count_if(label.begin(), label.end(), IsBlack) > kEnoughBlack;
}

Area LabelAt(Spot button) {
  return {button.x - kLabelHalfWidth, button.y - kLabelHalfHeight, 2 * kLabelHalfWidth + 1,
          2 * kLabelHalfHeight + 1};
}

}  // namespace

bool TestDisplay::IsAvailable() {
  return std::system(
             "command -v Xvfb >/dev/null && command -v xdotool >/dev/null &&"
             " command -v convert >/dev/null") == 0;
}

TestDisplay::TestDisplay() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::runtime_error("pipe failed");
  // -ac: a test may run its program as another user.
  server_ = Start({"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", kScreen,
                   "-nolisten", "tcp", "-ac", "-noreset"},
                  [&] {
                    close(ends[0]);
                    // It warns of keyboard names that nobody needs.
                    if (std::freopen("/dev/null", "w", stderr) == nullptr) _exit(126);
                  });
  close(ends[1]);
  try {
    name_ = ":" + ReadNumber(ends[0]);
  } catch (...) {
    close(ends[0]);
    Stop(server_);
    throw;
  }
  close(ends[0]);
  XSetErrorHandler(IgnoreError);
  connection_ = XOpenDisplay(name_.c_str());
  if (connection_ == nullptr) {
    Stop(server_);
    throw std::runtime_error("no connection to the X server");
  }
}

TestDisplay::~TestDisplay() {
  XCloseDisplay(Connection(connection_));
  // Lets it remove its lock and socket.
  kill(server_, SIGTERM);
  waitpid(server_, nullptr, 0);
}

ClickedWizard::ClickedWizard(TestDisplay* display, const std::vector<std::string>& command,
                             const std::vector<std::string>& environment, const std::string& title)
    : connection_(display->connection_), display_(display->name()) {
  std::vector<std::string> words = RunUnder();
  words.insert(words.end(), command.begin(), command.end());
  process_ = Start(words, [&] {
    setenv("DISPLAY", display_.c_str(), 1);
    setenv("FLTK_BACKEND", "x11", 1);  // also where Wayland is to be had
    for (const std::string& setting : environment) {
      const std::size_t equals = setting.find('=');
      setenv(setting.substr(0, equals).c_str(), setting.substr(equals + 1).c_str(), 1);
    }
  });
  try {
    TurnTo(title);
  } catch (...) {
    Stop(process_);
    throw;
  }
}

ClickedWizard::~ClickedWizard() {
  if (!HasEnded()) Stop(process_);
}

void ClickedWizard::TurnTo(const std::string& title) {
  Display* display = Connection(connection_);
  WaitFor("the window \"" + title + "\"", [&] {
    window_ = FindWindow(display, title);
    return window_ != 0;
  });
  if (!places_.contains(window_)) {
    const int place = static_cast<int>(places_.size());
    places_[window_] = place;
    XMoveWindow(display, window_, kMargin + kStep * place, kMargin);
  }
  XSetInputFocus(display, window_, RevertToPointerRoot, CurrentTime);
  Settle();
}

bool ClickedWizard::Shows(const std::string& title) {
  return FindWindow(Connection(connection_), title) != 0;
}

void ClickedWizard::WaitUntilGone(const std::string& title) {
  WaitFor("the end of the window \"" + title + "\"", [&] { return !Shows(title); });
}

void ClickedWizard::Click(Spot spot, int times) {
  PressMouseButton(spot, "1", times);
}

void ClickedWizard::Scroll(Spot spot, int steps) {
  PressMouseButton(spot, "5", steps);
}

void ClickedWizard::PressMouseButton(Spot spot, const std::string& button, int times) {
  Area place{};
  if (!PlaceOf(Connection(connection_), window_, &place)) throw std::runtime_error("no window");
  RunOn(display_,
        {"xdotool", "mousemove", std::to_string(place.x + spot.x), std::to_string(place.y + spot.y),
         "click", "--repeat", std::to_string(times), "--delay", "20", button});
}

void ClickedWizard::Press(const std::string& key) {
  RunOn(display_, {"xdotool", "key", key});
}

void ClickedWizard::ClickAndWait(Spot spot, int times) {
  Click(spot, times);
  Settle();
}

void ClickedWizard::Settle() {
  // The first drawing may be part of one that had begun before; the second comes after all of that.
  for (int i = 0; i < 2; ++i) {
    WaitFor("the window to be drawn", [&] { return CornerWasDrawnAnew(); });
  }
}

// Spoils the corner of the window, which every page leaves grey, and asks for it to be drawn anew.
// The program takes its events in their order, so it draws the corner after it has handled
// everything before.
bool ClickedWizard::CornerWasDrawnAnew() {
  Display* display = Connection(connection_);
  Area place{};
  if (!PlaceOf(display, window_, &place)) return false;
  const Area corner = {place.x + place.width - 1, place.y + place.height - 1, 1, 1};
  constexpr unsigned kSpoilt = 0xFF0001;  // used by no page

  GC context = XCreateGC(display, window_, 0, nullptr);
  XSetForeground(display, context, kSpoilt);
  XFillRectangle(display, window_, context, place.width - 1, place.height - 1, 1, 1);
  XFreeGC(display, context);
  XSync(display, False);
  if (ReadPixels(display, corner) != Pixels{kSpoilt}) return false;  // not shown yet
  XExposeEvent expose = {};
  expose.type = Expose;
  expose.window = window_;
  expose.x = place.width - 1;
  expose.y = place.height - 1;
  expose.width = 1;
  expose.height = 1;
  XSendEvent(display, window_, False, ExposureMask, reinterpret_cast<XEvent*>(&expose));
  WaitFor("an answer of the program", [&] {
    Area now{};
    if (!PlaceOf(display, window_, &now) || now.x != place.x) return true;  // moved: once more
    return ReadPixels(display, corner) != Pixels{kSpoilt};
  });
  return true;
}

void ClickedWizard::WaitUntilActive(Spot button) {
  WaitFor("an active button", [&] { return LabelIsBlack(LookAtOnce(LabelAt(button))); });
}

void ClickedWizard::WaitUntilInactive(Spot button) {
  WaitFor("an inactive button", [&] {
    const Pixels label = LookAtOnce(LabelAt(button));
    return !label.empty() && !LabelIsBlack(label);
  });
}

bool ClickedWizard::IsActive(Spot button) {
  return LabelIsBlack(Look(LabelAt(button)));
}

void ClickedWizard::WaitFor(const std::string& what, const std::function<bool()>& condition) {
  // A program that another one looks at is slow.
  const auto longest_wait = RunUnder().empty() ? kLongestWait : 10 * kLongestWait;
  const auto end = std::chrono::steady_clock::now() + longest_wait;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      WritePicture("failed");
      throw std::runtime_error("waited in vain for " + what);
    }
    std::this_thread::sleep_for(kPause);
  }
}

Pixels ClickedWizard::LookAtOnce(Area area) {
  Area place{};
  if (!PlaceOf(Connection(connection_), window_, &place)) return {};
  return ReadPixels(Connection(connection_),
                    {place.x + area.x, place.y + area.y, area.width, area.height});
}

Pixels ClickedWizard::Look(Area area) {
  Settle();
  return LookAtOnce(area);
}

void ClickedWizard::KeepAtOnce(const std::string& name) {
  WritePicture(name);
}

void ClickedWizard::Keep(const std::string& name) {
  Settle();
  WritePicture(name);
}

void ClickedWizard::WritePicture(const std::string& name) {
  Area place{};
  if (!PlaceOf(Connection(connection_), window_, &place)) return;
  const Pixels pixels = ReadPixels(Connection(connection_), place);
  std::filesystem::create_directories(CLICKED_PICTURES);
  const std::string command = "convert -size " + std::to_string(place.width) + "x" +
                              std::to_string(place.height) +
                              " -depth 8 rgb:- '" CLICKED_PICTURES "/" + name + ".png'";
  std::FILE* pipe = popen(command.c_str(), "w");
  if (pipe == nullptr) return;
  for (const unsigned pixel : pixels) {
    const std::array<unsigned char, 3> bytes = {static_cast<unsigned char>(pixel >> 16),
                                                static_cast<unsigned char>(pixel >> 8),
                                                static_cast<unsigned char>(pixel)};
    std::fwrite(bytes.data(), 1, bytes.size(), pipe);
  }
  pclose(pipe);
}

void ClickedWizard::CloseWindow() {
  Display* display = Connection(connection_);
  XClientMessageEvent message = {};
  message.type = ClientMessage;
  message.window = window_;
  message.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
  message.format = 32;
  message.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
  message.data.l[1] = CurrentTime;
  XSendEvent(display, window_, False, NoEventMask, reinterpret_cast<XEvent*>(&message));
  XSync(display, False);
}

int ClickedWizard::End() {
  WaitFor("the program's end", [&] { return HasEnded(); });
  return WIFEXITED(status_) ? WEXITSTATUS(status_) : 128 + WTERMSIG(status_);
}

bool ClickedWizard::HasEnded() {
  if (!ended_ && waitpid(process_, &status_, WNOHANG) == process_) ended_ = true;
  return ended_;
}
