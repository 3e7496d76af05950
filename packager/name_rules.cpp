#include "packager/name_rules.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>

#include "packager/entry_names.h"
#include "packager/refusal.h"

namespace {

constexpr std::string_view kForbiddenOnWindows = "<>:\"|?*";
constexpr std::string_view kDevices[] = {"con", "prn", "aux", "nul", "conin$", "conout$", "clock$"};
constexpr std::string_view kNumberedDevices[] = {"com", "lpt"};

bool IsPrintable(char c) {
  return c >= ' ' && c <= '~';
}

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

// A device's name stays the device's whatever extension follows, blanks before it included.
bool IsDeviceName(std::string_view component) {
  std::string stem = FoldCase(component.substr(0, component.find('.')));
  stem.erase(stem.find_last_not_of(' ') + 1);
  if (std::find(std::begin(kDevices), std::end(kDevices), stem) != std::end(kDevices)) return true;
  if (stem.size() != 4 || stem[3] < '0' || stem[3] > '9') return false;
  const std::string_view kind = std::string_view(stem).substr(0, 3);
  return std::find(std::begin(kNumberedDevices), std::end(kNumberedDevices), kind) !=
         std::end(kNumberedDevices);
}

void CheckComponent(std::string_view path, std::string_view component) {
  if (component.empty()) throw Refusal(path, "a name must not have an empty component");
  if (component.back() == '.' || component.back() == ' ') {
    throw Refusal(path, Quoted(component) + " ends in a dot or blank, which Windows drops");
  }
  if (IsDeviceName(component)) {
    throw Refusal(path, Quoted(component) + " is the name of a device on Windows");
  }
}

}  // namespace

void CheckPath(std::string_view path) {
  if (!std::all_of(path.begin(), path.end(), IsPrintable)) {
    throw Refusal(path, "a name must be printable ASCII");
  }
  if (path.find('\\') != std::string_view::npos) {
    throw Refusal(path, "a name must not hold a backslash");
  }
  if (path.starts_with('/')) throw Refusal(path, "a name must not begin with \"/\"");
  if (path.find_first_of(kForbiddenOnWindows) != std::string_view::npos) {
    throw Refusal(path, "a name must not hold any of < > : \" | ? *, which Windows forbids");
  }
  std::size_t begin = 0;
  for (;;) {
    const std::size_t slash = path.find('/', begin);
    CheckComponent(path, path.substr(begin, slash - begin));
    if (slash == std::string_view::npos) return;
    begin = slash + 1;
  }
}

void CheckTreePath(std::string_view path) {
  if (path.find(kAliasSeparator) != std::string_view::npos) {
    throw Refusal(
        path, "a file's name must not hold " + Quoted(kAliasSeparator) + ", the mark of an alias");
  }
  CheckPath(path);
}

void CheckNoTwins(const std::vector<PayloadFile>& files) {
  struct Known {
    std::string_view path;
    bool is_file;
  };
  std::unordered_map<std::string, Known> known;  // by folded path, of files and of folders
  for (const PayloadFile& file : files) {
    const std::string_view path = InstalledPath(file.name);
    std::size_t end = 0;
    do {
      end = path.find('/', end + 1);
      const std::string_view part = path.substr(0, end);
      const bool is_file = end == std::string_view::npos;
      const auto [position, is_new] = known.try_emplace(FoldCase(part), Known{part, is_file});
      if (is_new) continue;
      if (position->second.path != part) {
        throw Refusal(path,
                      Quoted(part) + " differs only in case from " + Quoted(position->second.path));
      }
      if (is_file && position->second.is_file) throw Refusal(path, "the name stands twice");
      if (is_file != position->second.is_file) {
        throw Refusal(path, Quoted(part) + " is both a file and a folder");
      }
    } while (end != std::string_view::npos);
  }
}
