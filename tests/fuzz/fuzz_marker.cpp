// The downgrade guard over any marker file: it refuses exactly when the marker's first line begins
// with a decimal number above the package's own, says so in five lines, and leaves the file alone.
// The same bytes stand as the preferences of the Windows App, for the note that goes with the
// guard.
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "recognition/downgrade_guard.h"
#include "tests/fuzz/fuzz_support.h"

namespace {

constexpr std::size_t kMostRead = 1283;  // characters of the marker's first line
constexpr char kRefusalRest[] =
    " is installed in this copy of Arduino !!!\n"
    "     This installer can not be used to downgrade, because it\n"
    "     is not able to anticipate and delete files added by future\n"
    "     versions.  To downgrade, please extract a fresh copy of\n"
    "     Arduino, then run this installer on the fresh copy.\n";

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The characters of the exponent that stands there; 0 for none.
std::size_t ExponentLength(const std::string& line, std::size_t at) {
  if (at == line.size() || (line[at] != 'e' && line[at] != 'E')) return 0;
  std::size_t digits = at + 1;
  if (digits < line.size() && (line[digits] == '+' || line[digits] == '-')) ++digits;
  std::size_t end = digits;
  while (end < line.size() && IsDigit(line[end])) ++end;
  return end == digits ? 0 : end - at;
}

// The decimal number at the head of the line, blanks ahead of it skipped; "" when there is none. An
// exponent that is begun and has no digits is no part of it.
std::string NumberText(const std::string& line) {
  std::size_t at = line.find_first_not_of(" \t\r\n\v\f");
  if (at == std::string::npos) return "";
  const std::size_t begin = at;
  std::size_t digits = 0;
  if (line[at] == '+' || line[at] == '-') ++at;
  for (; at < line.size() && IsDigit(line[at]); ++at) ++digits;
  if (at < line.size() && line[at] == '.') ++at;
  for (; at < line.size() && IsDigit(line[at]); ++at) ++digits;
  return digits == 0 ? "" : line.substr(begin, at + ExponentLength(line, at) - begin);
}

// The line as the guard sees it: cut, and a text that ends at a zero.
std::string FirstLine(const std::string& marker) {
  return marker.substr(0, marker.find('\n')).substr(0, kMostRead).c_str();
}

// The same bytes as the preferences of the Windows App, which lie in the Documents folder: the note
// is given exactly when one line names both the setting and the App's place.
std::string ExpectedNote(const std::string& preferences) {
  for (std::size_t begin = 0; begin < preferences.size();) {
    const std::size_t end = std::min(preferences.find('\n', begin), preferences.size());
    const std::string line = preferences.substr(begin, end - begin).c_str();
    if (line.find("hardwarepath") != std::string::npos &&
        line.find("WindowsApps\\ArduinoLLC") != std::string::npos) {
      return "Quirloduino can not work with the Windows App\n"
             "version of Arduino.  The regular installer &\n"
             "non-admin ZIP versions are supported.\n\n";
    }
    begin = end + 1;
  }
  return "";
}

struct Place {
  std::string folder;
  std::string marker;
  std::string app_preferences;
};

Place MakePlace() {
  const std::string root = WorkFolder();
  const bool made = mkdir((root + "/lib").c_str(), 0777) == 0 &&
                    mkdir((root + "/ArduinoData").c_str(), 0777) == 0;
  Require(made, "the work folder is new");
  setenv("HOME", root.c_str(), 1);  // which is the Documents folder, too, where no other is set
  setenv("XDG_CONFIG_HOME", root.c_str(), 1);
  return {root + "/", root + "/lib/quirloduino.txt", root + "/ArduinoData/preferences.txt"};
}

void CheckGuard(const Place& place, const std::string& marker) {
  StartLog();
  const int result = CheckDowngrade(place.folder.c_str());
  Require(result == 0 || result == 1, "the guard answers 0 or 1");
  const std::string number = NumberText(FirstLine(marker));
  const float installed = std::strtof(number.c_str(), nullptr);
  const bool newer = !number.empty() && double{installed} > double{1.60F} + 0.0001;
  Require(result == (newer ? 0 : 1), "only a number above the own one refuses");
  char shown[64];
  std::snprintf(shown, sizeof shown, "     Quirloduino %.2f", double{installed});
  Require(LogText() == (newer ? std::string(shown) + kRefusalRest : ""),
          "a refusal has its five lines, and a folder that passes none");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Place place = MakePlace();
  const std::string text = AllOf(data, size);
  PutFile(place.marker, text);
  PutFile(place.app_preferences, text);
  const int descriptor = LowestFreeDescriptor();

  CheckGuard(place, text);
  StartLog();
  NoteWindowsApp();
  Require(LogText() == ExpectedNote(text), "the note tells of the Windows App and of nothing else");

  Require(LowestFreeDescriptor() == descriptor, "both files are closed again");
  Require(GetFile(place.marker) == text && GetFile(place.app_preferences) == text,
          "both files stay as they are");
  return 0;
}
