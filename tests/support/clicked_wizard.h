// A wizard used as a person uses it: clicks and keys at its window, and looks at its pixels. It
// runs on a display of its own, so that tests side by side share neither pointer nor keyboard.
// Nothing waits for a time: a wait ends as soon as the program has drawn what it waits for, and
// throws after kLongestWait.
#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

// Places of the window, in pixels.
struct Spot {
  int x;
  int y;
};
inline constexpr Spot kBack = {185, 336};
inline constexpr Spot kNext = {285, 336};
inline constexpr Spot kHelp = {353, 336};
inline constexpr Spot kCancel = {435, 336};
inline constexpr Spot kSkipDriver = {395, 273};
inline constexpr Spot kUpdateDriver = {90, 273};
inline constexpr Spot kPathChoice = {459, 90};
inline constexpr Spot kHelpOk = {200, 336};  // of the help window

// A part of the window.
struct Area {
  int x;
  int y;
  int width;
  int height;
};

// The pixels of an area, row by row, as 0xRRGGBB. Empty when the window could not be looked at.
using Pixels = std::vector<unsigned>;

// An X server without a screen to see, and the connection that looks at it. Ends with the object,
// and with the test's process.
class TestDisplay {
 public:
  // Whether this machine can have one.
  static bool IsAvailable();
  TestDisplay();
  ~TestDisplay();
  TestDisplay(const TestDisplay&) = delete;
  TestDisplay& operator=(const TestDisplay&) = delete;

  const std::string& name() const { return name_; }

 private:
  friend class ClickedWizard;
  pid_t server_ = 0;
  std::string name_;
  void* connection_ = nullptr;  // Xlib's Display
};

class ClickedWizard {
 public:
  // Starts `command` (a program and its arguments) with `environment` (NAME=value) added to the
  // test's own, and waits for its window, whose title ends in `title`. Under another program when
  // RunUnder() names one.
  ClickedWizard(TestDisplay* display, const std::vector<std::string>& command,
                const std::vector<std::string>& environment = {},
                const std::string& title = " Installer");
  // Ends a program that still runs.
  ~ClickedWizard();
  ClickedWizard(const ClickedWizard&) = delete;
  ClickedWizard& operator=(const ClickedWizard&) = delete;

  // Turns to another window, by the end of its title, once that is shown, and gives it the
  // keyboard. Each window is put beside those that were turned to before it.
  void TurnTo(const std::string& title);

  // Whether a window whose title ends so is on the screen.
  bool Shows(const std::string& title);
  void WaitUntilGone(const std::string& title);

  void Click(Spot spot, int times = 1);
  void Press(const std::string& key);
  void Scroll(Spot spot, int steps);  // down, by the wheel

  // Clicks, then waits until the program has drawn all that came of it. What a timer of the program
  // does later is not waited for.
  void ClickAndWait(Spot spot, int times = 1);

  // Waits until the program has handled all input so far and has drawn what came of it.
  void Settle();

  // A button's label is black while it is active and grey or absent otherwise. The first two only
  // look, so that they may wait for the end of something that blocks the program.
  void WaitUntilActive(Spot button);
  void WaitUntilInactive(Spot button);
  bool IsActive(Spot button);

  // Waits until `condition` holds, for what only the caller can see.
  void WaitFor(const std::string& what, const std::function<bool()>& condition);

  // What the screen shows there, other windows and menus included; at once, or settled.
  Pixels LookAtOnce(Area area);
  Pixels Look(Area area);

  // Puts a picture of the window into build/clicked-pictures; at once, or settled.
  void KeepAtOnce(const std::string& name);
  void Keep(const std::string& name);

  // Asks the window to close, as a window manager does for its close control.
  void CloseWindow();

  // Waits for the program's end; its exit status, 128 + the signal when one ended it.
  int End();
  bool HasEnded();

 private:
  void PressMouseButton(Spot spot, const std::string& button, int times);
  bool CornerWasDrawnAnew();
  void WritePicture(const std::string& name);

  void* connection_;  // Xlib's Display; the display's
  std::string display_;
  pid_t process_ = 0;
  bool ended_ = false;
  int status_ = 0;
  unsigned long window_ = 0;
  std::map<unsigned long, int> places_;  // of the windows turned to so far
};
