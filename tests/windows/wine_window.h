// The wizard of a Windows program under Wine, on the display of DISPLAY, used as a person does: by
// clicks at places of its window and looks at its pixels. Nothing waits for a time: every wait ends
// as soon as the pixels say so, and fails the test after kLongestWait.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

// Places of the window, in units of the pages: pixels of a screen that isn't scaled. Where they lie
// on the screen is taken from the window, so the same clicks go through the wizard at every scale.
struct Spot {
  int x;
  int y;
};
inline constexpr Spot kBack = {185, 336};
inline constexpr Spot kNext = {285, 336};
inline constexpr Spot kHelp = {353, 336};
inline constexpr Spot kCancel = {435, 336};
inline constexpr Spot kSkipDriver = {395, 273};
inline constexpr Spot kPathChoice = {459, 90};

// Lines of the folder list, and of the path menu that opens over its field, counted from 0.
constexpr Spot FolderLine(int line) {
  return {120, 125 + 18 * line};
}
constexpr Spot MenuLine(int line) {
  return {120, 90 + 21 * line};
}

class WineWindow {
 public:
  // Starts `program` in the Wine prefix of the tests, in `folder` or else the current one, and
  // waits for its window.
  explicit WineWindow(const std::string& program, const std::vector<std::string>& arguments = {},
                      const std::string& title = "Quirloduino .* Installer",
                      const std::string& folder = ".");
  // Ends a program that still runs.
  ~WineWindow();
  WineWindow(const WineWindow&) = delete;
  WineWindow& operator=(const WineWindow&) = delete;

  // Turns to another window of the program, once that is shown.
  void TurnTo(const std::string& title);
  // Turns back to one that stood behind it, once the one of `gone` is closed.
  void TurnBackTo(const std::string& title, const std::string& gone);

  // Whether this window lies above another one on the screen.
  bool StandsBefore(const std::string& title);

  void Click(Spot spot, int times = 1);
  void Press(const std::string& key);

  // Clicks, then waits until the window looks different and stays as it is.
  void ClickAndWait(Spot spot, int times = 1);

  // A button's label is black while it is active and grey or absent otherwise.
  void WaitUntilActive(Spot button);
  void WaitUntilInactive(Spot button);
  bool IsActive(Spot button);

  // From the first page to the folder page, past the driver page. The survey finds what it finds.
  // Pictures of both pages are kept, with `keep` before their names, where it is given.
  void GoToFolderPage(const char* keep = nullptr);

  // Puts a picture of the window into build/windows-pictures.
  void Keep(const std::string& name);

  // The window's width and height on the screen, in pixels.
  Spot Size();
  void WaitUntilWiderThan(int pixels);

  // What a person sees of the window's place on the screen, menus over it too, in so many parts of
  // equal size: the mean shade of each, line by line.
  std::string Parts(int across, int down);

  // Waits for the program's end; its exit status.
  int End();

 private:
  std::string Pixels();
  double Scale();
  std::string CutOut() const;
  template <typename Condition>
  void WaitFor(const char* what, Condition condition);

  pid_t process_ = 0;
  std::string window_;
  int unscaled_width_ = 0;  // 0 for a window that isn't made of units
};
