// The drop-down of the folder page over any folder: it holds the folder, each of its parents,
// nearest first, and "[All Drives]", and the text read back from an item is the plain path, though
// the menu reads some of its characters as a submenu, a divider, a shortcut or an escape.
#include <FL/Fl_Choice.H>

#include <algorithm>

#include "platform/text.h"
#include "store/host_selection.h"
#include "tests/fuzz/fuzz_support.h"
#include "wizard/folder_browser.h"
#include "wizard/folder_page.h"

namespace {

bool IsSeparator(char c) {
  return c == '/' || c == '\\';
}

// The folder, as the page keeps it: cut to its buffer, and ending in a separator unless empty.
std::string FolderOf(const std::uint8_t* data, std::size_t size) {
  std::string folder = AllOf(data, size).c_str();
  folder.resize(std::min(folder.size(), kFolderSize - 2));
  if (!folder.empty() && !IsSeparator(folder.back())) folder += '/';
  return folder;
}

std::vector<std::string> Expected(const std::string& folder) {
  std::vector<std::string> items;
  for (std::size_t length = folder.size(); length > 0; --length) {
    if (length == folder.size() || IsSeparator(folder[length - 1])) {
      items.push_back(folder.substr(0, length));
    }
  }
  items.emplace_back("[All Drives]");
  return items;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (PathChoice == nullptr) PathChoice = new Fl_Choice(0, 0, 436, 30);
  const std::string folder = FolderOf(data, size);
  FormatBounded(BrowsedFolder, sizeof BrowsedFolder, "%s", folder.c_str());

  rebuild_path_choice();

  Require(folder == BrowsedFolder, "the folder itself stays");
  const std::vector<std::string> expected = Expected(folder);
  Require(PathChoice->value() == 0, "the first item is the one shown");
  Require(static_cast<std::size_t>(PathChoice->size()) == expected.size() + 1,
          "there is one item for the folder, each parent and the drives");
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const Fl_Menu_Item& item = PathChoice->menu()[i];
    Require(item.text != nullptr && expected[i] == item.text, "an item's text is the plain path");
    Require(item.flags == 0 && item.shortcut() == 0 && item.callback() == path_choice_callback,
            "an item is no submenu, divider or shortcut, and can be picked");
  }
  return 0;
}
