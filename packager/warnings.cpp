#include "packager/warnings.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>

#include "packager/description_fit.h"
#include "packager/entry_names.h"
#include "packager/picture_rules.h"
#include "store/payload_format.h"
#include "wizard/picture_room.h"

namespace {

// Names, in lower case, that version control, file managers and systems leave in folders.
constexpr std::string_view kLeftovers[] = {".git",      ".gitignore",  ".gitattributes",
                                           ".svn",      ".hg",         ".ds_store",
                                           "thumbs.db", "desktop.ini", "__macosx"};
// The endings of copies that editors and patches keep.
constexpr std::string_view kBackupEndings[] = {"~", ".bak", ".orig", ".rej", ".swp", ".swo"};

// Programs that Windows runs by their ending; no bit says so there.
constexpr std::string_view kProgramEndings[] = {".exe", ".dll", ".bat", ".cmd", ".com"};

template <std::size_t N>
bool EndsInOneOf(std::string_view text, const std::string_view (&endings)[N]) {
  return std::any_of(std::begin(endings), std::end(endings),
                     [text](std::string_view ending) { return text.ends_with(ending); });
}

bool IsLeftover(std::string_view component) {
  const std::string folded = FoldCase(component);
  return std::find(std::begin(kLeftovers), std::end(kLeftovers), folded) != std::end(kLeftovers) ||
         EndsInOneOf(folded, kBackupEndings) || folded.starts_with("._") ||
         folded.starts_with(".#") || (folded.starts_with('#') && folded.ends_with('#'));
}

void AddLeftovers(const PayloadTree& tree, std::vector<Warning>* warnings) {
  std::set<std::string_view> told;  // a folder counts once, whatever it holds
  for (const PayloadFile& file : tree.files) {
    const std::string_view path = LeftoverPath(file.name);
    if (path.empty() || !told.insert(path).second) continue;
    warnings->push_back({std::string(path), "was left by a tool and is no part of a payload"});
  }
}

// The file of this name, or null.
const PayloadFile* Find(const std::vector<PayloadFile>& files, std::string_view name) {
  const auto position = std::lower_bound(
      files.begin(), files.end(), name,
      [](const PayloadFile& file, std::string_view wanted) { return file.name < wanted; });
  return position != files.end() && position->name == name ? &*position : nullptr;
}

// A text or picture beside the libraries, without its ending; nothing for any other file.
std::string_view CompanionOf(std::string_view name, std::string_view ending) {
  if (!name.starts_with(kLibrariesFolder) || !name.ends_with(ending)) return {};
  if (AfterFirstComponent(name).find('/') != std::string_view::npos) return {};
  return name.substr(0, name.size() - ending.size());
}

void AddCompanionsOfNobody(const PayloadTree& tree, std::vector<Warning>* warnings) {
  for (const PayloadFile& file : tree.files) {
    for (const std::string_view ending :
         {std::string_view(kDescriptionEnding), std::string_view(kPictureEnding)}) {
      const std::string_view library = CompanionOf(file.name, ending);
      if (library.empty() ||
          std::binary_search(tree.folders.begin(), tree.folders.end(), library)) {
        continue;
      }
      warnings->push_back({file.name, "there is no library of this name, so nobody sees this"});
    }
  }
}

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < ' ' && c != '\n' && c != '\t') || byte == 0x7F;
}

// FLTK takes what follows an "@" in a label for the name of a drawing, and "@@" for the sign.
bool HasDrawing(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '@') continue;
    if (i + 1 == text.size() || text[i + 1] != '@') return true;
    ++i;
  }
  return false;
}

void AddToDescription(const PayloadFile& file, const std::string& text, int picture_height,
                      std::vector<Warning>* warnings) {
  if (text.size() > kDescriptionLength) {
    warnings->push_back({file.name, "has " + std::to_string(text.size()) +
                                        " bytes, of which the library page shows " +
                                        std::to_string(kDescriptionLength)});
  }
  const int lines = DescriptionLines(text);
  const int room = RoomForLines(picture_height);
  if (lines > room) {
    warnings->push_back(
        {file.name, "takes " + std::to_string(lines) + " lines of the library page, which has " +
                        std::to_string(room) + (picture_height > 0 ? " below the picture" : "")});
  }
  if (std::any_of(text.begin(), text.end(), IsControl)) {
    warnings->push_back(
        {file.name, "holds control characters, such as the carriage return that is shown as ^M"});
  }
  if (HasDrawing(text)) {
    warnings->push_back({file.name, "holds an @ that is taken for a drawing; write it twice"});
  }
}

void AddDescriptions(const PayloadTree& tree, const ContentReader& read,
                     std::vector<Warning>* warnings) {
  for (const PayloadFile& file : tree.files) {
    const std::string_view library = CompanionOf(file.name, kDescriptionEnding);
    if (library.empty()) continue;
    const PayloadFile* picture = Find(tree.files, std::string(library) + kPictureEnding);
    const int height = picture == nullptr ? 0 : PictureHeight(read(*picture));
    AddToDescription(file, read(file), height, warnings);
  }
}

void AddExecutables(const PayloadTree& tree, std::vector<Warning>* warnings) {
  // A file system without such a bit shows it on every file, and nobody means it.
  if (tree.executables.size() == tree.files.size()) return;
  for (const std::string& name : tree.executables) {
    if (EndsInOneOf(FoldCase(name), kProgramEndings)) continue;
    warnings->push_back({name, "loses its execute bit, which a payload doesn't keep"});
  }
}

}  // namespace

std::string_view LeftoverPath(std::string_view path) {
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = std::min(path.find('/', begin), path.size());
    if (IsLeftover(path.substr(begin, end - begin))) return path.substr(0, end);
    if (end == path.size()) return {};
    begin = end + 1;
  }
}

std::vector<Warning> FindWarnings(const PayloadTree& tree, const ContentReader& read) {
  std::vector<Warning> warnings;
  AddLeftovers(tree, &warnings);
  AddCompanionsOfNobody(tree, &warnings);
  AddDescriptions(tree, read, &warnings);
  AddExecutables(tree, &warnings);
  return warnings;
}
