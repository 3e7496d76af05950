// The packager over any tree: what it accepts, the installer's store expands and lists identically,
// packs to the same bytes again, and passes its own verification; what it refuses leaves nothing
// behind. The tree is a small sound one, changed line by line as the input says:
//
//   PATH <tab> CONTENT   a file; \n in the content stands for a line feed, \t for a tab
//   PATH/                a folder
//   -PATH                takes a file or folder of the tree away
#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <utility>

#include "packager/pack_commands.h"
#include "packager/refusal.h"
#include "packager/table_files.h"
#include "packager/verification.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "store/location_keys.h"
#include "store/payload_format.h"
#include "tests/fuzz/fuzz_support.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

using Tree = std::map<std::string, std::string>;  // path to content, files alone

constexpr char kSeparator[] = " --> ";
constexpr std::size_t kMostLines = 40;

std::string SoundLocations() {
  std::string text;
  for (const std::string key : kLocationKeys) {
    text += key + "\t\"" + (key.ends_with("_SUBDIR") ? "folder/" : "lib/some.jar") + "\"\n";
  }
  return text;
}

const Tree& SoundTree() {
  static const Tree tree = {
      {"quirlo.exe", "tool"},
      {"arm/bin/c++.exe", "compiler"},
      {"arm/bin/g++.exe", "compiler"},
      {"1.8.19/WINDOWS/directory_criteria.txt",
       "version:lib/version.txt\nzipcksum:lib/some.jar 1 2 processing/app/Editor.class\n"},
      {"1.8.19/WINDOWS/locations.txt", SoundLocations()},
      {"1.8.19/WINDOWS/pde.jar/processing/app/Base.class", "class"},
      {"1.8.19/boards.txt", "boards"},
      {"1.8.19/platform.txt", "platform"},
      {"quirloduino.txt", "1.60-beta5"},
  };
  return tree;
}

std::string Unescaped(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '\\' && i + 1 < text.size();
    if (escape && text[i + 1] == 'n') {
      result += '\n', ++i;
    } else if (escape && text[i + 1] == 't') {
      result += '\t', ++i;
    } else {
      result += text[i];
    }
  }
  return result;
}

// A path below the tree that a disk can hold. The packager's own rules are narrower.
bool CanBeMade(const std::string& path) {
  if (path.empty() || path.size() > 600 || path.find('\0') != std::string::npos) return false;
  for (const fs::path& part : fs::path(path)) {
    if (part == "/" || part == "." || part == ".." || part.native().size() > 255) return false;
  }
  return true;
}

// One line of the input done to the tree on the disk. What the disk can't hold is left out.
void Apply(const std::string& root, const std::string& line) {
  std::error_code error;
  const bool takes_away = line.starts_with('-');
  const std::size_t tab = line.find('\t');
  const std::string path = line.substr(takes_away ? 1 : 0, tab - (takes_away ? 1 : 0));
  if (!CanBeMade(path)) return;
  const fs::path place = fs::path(root) / path;
  if (takes_away) {
    fs::remove_all(place, error);
  } else if (path.ends_with('/')) {
    fs::create_directories(place, error);
  } else {
    fs::create_directories(place.parent_path(), error);
    if (error || fs::is_directory(place)) return;
    PutFile(place, Unescaped(tab == std::string::npos ? "" : line.substr(tab + 1)));
  }
}

void MakeTree(const std::string& root, std::string input) {
  for (const auto& [path, content] : SoundTree()) {
    fs::create_directories((fs::path(root) / path).parent_path());
    PutFile(root + "/" + path, content);
  }
  for (std::size_t i = 0; i < kMostLines && !input.empty(); ++i) {
    const TwoTexts texts = CutAtLineFeed(input);
    Apply(root, texts.first);
    input = texts.rest;
  }
}

Tree FilesOf(const std::string& root) {
  Tree files;
  for (const auto& [path, content] : ReadTree(root)) {
    if (!path.ends_with('/')) files[path] = content;
  }
  return files;
}

std::string BytesAt(int index) {
  const PayloadEntry entry = EntryAt(static_cast<std::uint32_t>(index));
  return {reinterpret_cast<const char*>(entry.data), entry.size};
}

// The path that the entry stands for and the bytes that the installer would write there.
std::pair<std::string, std::string> InstalledFile(int index) {
  const std::string name = Store.names[index];
  const std::size_t separator = name.find(kSeparator);
  if (separator == std::string::npos) return {name, BytesAt(index)};
  Require(Store.sizes[index] == 0 && name.starts_with("arm/"), "an alias is empty and under arm/");
  const std::string target = name.substr(separator + sizeof kSeparator - 1);
  const int found = FindEntryByName(target.c_str());
  Require(found >= 0 && found < index, "an alias comes behind its target");
  Require(target.find(kSeparator) == std::string::npos, "an alias's target is none itself");
  return {name.substr(0, separator), BytesAt(found)};
}

void CheckReleases(const Tree& tree) {
  std::set<std::string> releases;
  for (const auto& [path, content] : tree) {
    if (path.ends_with("/WINDOWS/directory_criteria.txt"))
      releases.insert(path.substr(0, path.find('/')));
  }
  Require(SupportedVersionCount() == std::min<std::size_t>(releases.size(), 20),
          "the store lists the releases of the tree");
  for (std::size_t i = 0; i < SupportedVersionCount(); ++i) {
    const std::string release = SupportedVersionAt(i);
    Require(releases.count(release) == 1, "a listed release is one of the tree");
    SelectRelease(release.c_str());
    for (const char* key : kLocationKeys) {
      Require(LookupLocation(key) != nullptr, "every release yields every location");
    }
    for (const auto& [path, content] : tree) {
      Require(InSelectedRelease(path.c_str()) == path.starts_with(release + "/"),
              "no release claims what belongs to another");
    }
  }
}

void CheckStore(const Tree& tree) {
  Require(LoadEmbeddedFiles(), "the store expands");
  Tree installed;
  for (int i = 0; i < static_cast<int>(Store.entry_count); ++i) {
    Require(installed.insert(InstalledFile(i)).second, "no file stands twice in the table");
  }
  Require(installed == tree, "the store holds the files of the tree, byte for byte");
  Require(std::string(Store.names[Store.entry_count - 1]) == "quirloduino.txt",
          "the version marker is the last entry");
  CheckReleases(tree);
}

void CheckPacked(const std::string& root, const std::string& output) {
  const std::string table_text = GetFile(output + "/" + kTableName);
  const PayloadTable table = ParseTableText(kTableName, table_text);
  std::vector<std::string> names;
  std::vector<std::uint32_t> sizes;
  for (const PayloadFile& entry : table.entries) {
    names.push_back(entry.name);
    sizes.push_back(static_cast<std::uint32_t>(entry.size));
  }
  const PackedStore store(names, sizes, GetFile(output + "/" + kFrameName));
  CheckStore(FilesOf(root));

  const PackedPayload packed = ReadPackedPayload(
      {output + "/" + kFrameName, output + "/" + kTableName, output + "/" + kTableSourceName});
  CheckPackedPayload(packed);
  CompareWithTree(packed, PlanPayload(root));
}

// False when the packager refuses, which must leave nothing behind.
bool Pack(const std::string& root, const std::string& output) {
  try {
    PackTree({root, output, "", {kLowestLevel, 1}});
    return true;
  } catch (const Refusal& refusal) {
    Require(std::string(refusal.what()).find('\n') == std::string::npos, "a refusal is one line");
    Require(!fs::exists(output) || fs::is_empty(output), "a refusal leaves nothing behind");
    return false;
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string root = WorkFolder() + "/tree";
  static const std::string output = WorkFolder() + "/output";
  static const std::string again = WorkFolder() + "/again";
  for (const std::string& folder : {root, output, again}) fs::remove_all(folder);
  MakeTree(root, AllOf(data, size));

  if (!Pack(root, output)) {
    Require(!Pack(root, again), "a tree that is refused is refused again");
    return 0;
  }
  try {
    CheckPacked(root, output);
  } catch (const Refusal& refusal) {
    Require(false, refusal.what());
  }
  Require(Pack(root, again) && ReadTree(output) == ReadTree(again),
          "the same tree gives the same bytes");
  return 0;
}
