#include "tests/properties/random_payload.h"

#include <algorithm>
#include <iterator>

#include "store/payload_format.h"

namespace {

constexpr char kMark[] = "// this file no longer used\n";

// Of a release that no host holds; they name every archive that a release may have.
constexpr char kCriteriaOfOthers[] =
    "version:lib/version.txt\nzipfile:lib/more jars/p%d.jar\nzipfile:lib/pde.jar\n"
    "zipcksum:lib/arduino-core.jar 1 2 none.class\n";

const std::vector<std::string> kComponents = {
    "a",      "b.h",     "Wire",    "main.cpp",   "two words", "100%s", "%n%n",    "x$1",
    "a..b",   "-dash",   "#hash",   "~tilde~",    "it's",      "(1)",   "a,b",     "UPPER",
    "keys.c", "libc.c",  ".hidden", "serial4.c",  "openGLCD",  "SD",    "utility", "ST7565",
    "x.java", "y.class", "z.inf",   "boards.txt", "n=v;",      "[0]",   "{}",      "a&b"};

const std::vector<std::string> kFolders = {"hardware/tools/",
                                           "tools/",
                                           "hardware/quirlo/avr/",
                                           "hardware/quirlo/avr/libraries/",
                                           "examples/",
                                           "place/",
                                           "a place/%s %n/",
                                           "hardware/tools/arm/lib/",
                                           "deep/er/and/deeper/still/",
                                           "~$(x)/"};

const std::vector<std::string> kReleases = {"1.8.19", "1.8.5", "1.6.13", "2.0.7", "0.22.1"};

std::string Component(Random* random) {
  std::string component = random->Of(kComponents);
  if (random->OneIn(12)) component += std::string(random->Below(40), 'w');
  if (random->OneIn(6)) component += std::to_string(random->Below(4));
  return component;
}

std::string Path(Random* random, std::size_t most) {
  std::string path = Component(random);
  for (std::size_t more = random->Below(most); more > 0; --more) path += "/" + Component(random);
  return path;
}

// Few contents are equal by chance, so some are made equal.
std::string Content(Random* random) {
  switch (random->Below(12)) {
    case 0:
      return "";
    case 1:
      return kMark;
    case 2:
      return std::string(kMark) + "\n";
    case 3:
      return std::string(kMark).substr(0, 27);
    case 4:
      return "content " + std::to_string(random->Below(5));
    case 5:
      return random->Bytes(40000);
    default:
      return random->Bytes(600);
  }
}

// Under arm/ equal contents make aliases, under cores/ the mark removes: both happen often.
std::string ContentFor(const std::string& name, Random* random) {
  if (name.starts_with("arm/") && random->OneIn(2)) {
    return "tool " + std::to_string(random->Below(3));
  }
  if (name.starts_with("cores/") && random->OneIn(3)) return kMark;
  return Content(random);
}

std::string ClassFile(Random* random) {
  return random->Of({"processing/app/", "cc/arduino/", "", "quirlo/ide/"}) +
         random->Of({"Base", "Editor", "Editor$1", "Added", "Compiler", "Base%s"}) +
         (random->OneIn(8) ? ".txt" : ".class");
}

// One name of the kind that the rules tell apart. `release` is one of the payload's.
std::string Name(Random* random, const std::string& release) {
  switch (random->Below(22)) {
    case 0:
      return random->Of({"quirlo.exe", "quirlo_reboot.exe", "mktinyfat.exe", "pre_uninstall.bat"});
    case 1:
      return random->Of({"Q4Security.jar", "vscode_plugins.exe", "post_install.bat", "other.bin"});
    case 2:
      return "otherlibs/WINDOWS/" + Path(random, 3);
    case 3:
    case 4:
    case 5:
      return random->Of({"arm/bin/", "arm/lib/", "arm/"}) + Path(random, 3);
    case 6:
      return random->Of({"arm-none-eabi/", "avrquirlo/"}) + Path(random, 3);
    case 7:
      return release + "/" + random->Of({"keywords.txt", "keywords_quirlo.txt", "theme.txt"});
    case 8:
      return release + "/" + Path(random, 2) + ".java";
    case 9:
    case 10:
      return release + "/WINDOWS/pde.jar/" + ClassFile(random);
    case 11:
      return release + "/WINDOWS/arduino-core.jar/" + ClassFile(random);
    case 12:
      return release + "/WINDOWS/" + random->Of({"Info.plist", "other/X.txt", "pde.jar-1.54b9"});
    case 13:
      return release + "/libraries/" + Path(random, 3);
    case 14:
      return release + "/" + random->Of({"examples/", "elsewhere/"}) + Path(random, 2);
    case 15:
      return "examples/" + Path(random, 3);
    case 16:
    case 17:
      return random->OneIn(8) ? "cores/keywords.txt"
                              : "cores/" + Component(random) + "/" + Path(random, 2);
    case 18:
      return "armlib/" + Path(random, 1);
    case 19:
      return release + "/" + random->Of({"boards.txt", "platform.txt"});
    case 20:
      return random->Of({"picture.png", "cdcacm.inf", "cdcacm.cat", "unknown/x"});
    default:
      return "libraries/" +
             (random->OneIn(5) ? Component(random) : Component(random) + "/" + Path(random, 2));
  }
}

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// Whether the tree can take the name: no file where a folder is, no folder where a file is, no two
// paths that differ in case alone.
bool Fits(const Tree& tree, const std::string& name) {
  const std::string folded = Lower(name);
  for (const auto& [other, content] : tree) {
    const std::string other_folded = Lower(other);
    if (folded == other_folded || folded.starts_with(other_folded + "/") ||
        other_folded.starts_with(folded + "/")) {
      return false;
    }
    const auto apart = std::mismatch(name.begin(), name.end(), other.begin(), other.end());
    const std::string rest(apart.first, name.end());
    const std::string other_rest(apart.second, other.end());
    const std::string part = Lower(rest.substr(0, rest.find('/')));
    if (part == Lower(other_rest.substr(0, other_rest.find('/')))) return false;
  }
  return true;
}

Locations SomeLocations(Random* random) {
  const bool usual = random->OneIn(2);
  Locations locations = {{"TOOL_SUBDIR", "hardware/tools/"},
                         {"PLUGIN_SUBDIR", "tools/"},
                         {"ARMLIB_SUBDIR", "hardware/tools/arm/arm-none-eabi/lib/"},
                         {"LIBRARY_SUBDIR", "hardware/quirlo/avr/libraries/"},
                         {"CORES_SUBDIR", "hardware/quirlo/avr/cores/"},
                         {"KEYWORDS_SUBDIR", "lib/"},
                         {"VERSION_SUBDIR", "lib/"},
                         {"EXAMPLES_SUBDIR", "examples/"},
                         {"BOARDS_SUBDIR", "hardware/quirlo/avr/"},
                         {"ARDUINO_JAR_FILE1", "lib/pde.jar"},
                         {"ARDUINO_JAR_FILE2", "lib/arduino-core.jar"}};
  if (usual) return locations;
  for (auto& [key, value] : locations) {
    if (key.ends_with("_SUBDIR") && random->OneIn(3)) value = random->Of(kFolders);
  }
  if (random->OneIn(4)) locations["ARDUINO_JAR_FILE2"] = "lib/pde.jar";
  if (random->OneIn(4)) locations["ARDUINO_JAR_FILE1"] = "lib/more jars/p%d.jar";
  return locations;
}

// A component that no packager lets by; never "." or "..".
std::string OddComponent(Random* random) {
  switch (random->Below(9)) {
    case 0:
      return "";
    case 1:
      return "...";
    case 2:
      return std::string(random->Below(330), 'L');
    case 3:
      return "a\\b";
    case 4:
      return "\\";
    case 5:
      return "a\nb";
    case 6:
      return "\xC3\xBC\xFF";
    case 7:
      return "NUL";
    default:
      return Component(random);
  }
}

std::string OddName(Random* random, const std::string& release) {
  std::string name = Name(random, release);
  if (name.find("/WINDOWS/") != std::string::npos) return name;  // an archive's names stay plain
  if (random->OneIn(5)) name += "/" + OddComponent(random);
  if (random->OneIn(6)) {
    const std::size_t slash = name.find('/');
    if (slash != std::string::npos) name.insert(slash, "/" + OddComponent(random));
  }
  if (random->OneIn(10)) name += "/";
  if (random->OneIn(40))
    name = random->Of({"", "/", "cores/stray.c", "libraries//x", "7", "cores/"});
  return name;
}

}  // namespace

std::string LocationsText(const Locations& locations) {
  std::string text = "# where things go\n";
  for (const auto& [key, value] : locations) text += key + "\t\t\"" + value + "\"\n";
  return text;
}

RandomTree MakeRandomTree(Random* random) {
  std::vector<std::string> releases = kReleases;
  while (releases.size() > 1 + random->Below(3)) {
    releases.erase(releases.begin() + static_cast<std::ptrdiff_t>(random->Below(releases.size())));
  }
  RandomTree tree;
  tree.release = random->Of(releases);
  tree.locations = SomeLocations(random);
  for (const std::string& release : releases) {
    const bool is_own = release == tree.release;
    tree.files[release + "/WINDOWS/locations.txt"] =
        LocationsText(is_own ? tree.locations : SomeLocations(random));
    tree.files[release + "/WINDOWS/directory_criteria.txt"] = is_own ? "" : kCriteriaOfOthers;
    for (const std::string board_file : {"boards.txt", "platform.txt"}) {
      tree.files[release + "/" + board_file] = Content(random);
    }
  }
  tree.files["quirloduino.txt"] = "1.60-beta5";
  for (std::size_t i = random->Below(45); i > 0; --i) {
    const std::string name = Name(random, random->OneIn(3) ? random->Of(releases) : tree.release);
    if (Fits(tree.files, name)) tree.files[name] = ContentFor(name, random);
  }
  return tree;
}

RandomTable MakeRandomTable(Random* random) {
  RandomTable table;
  if (!random->OneIn(12)) table.release = random->Of(kReleases);
  Locations locations = SomeLocations(random);
  if (random->OneIn(4))
    locations.erase(
        random->Of(std::vector<std::string>(std::begin(kLocationKeys), std::end(kLocationKeys))));
  for (std::size_t i = random->Below(40); i > 0; --i) {
    std::string name = OddName(random, table.release);
    std::string content = Content(random);
    if (!table.entries.empty() && random->OneIn(14)) {
      // An alias of an earlier or a later entry, of another alias or of nothing.
      name = random->Of({"arm/", "avrquirlo/", "examples/"}) + Component(random) + " --> " +
             (random->OneIn(5) ? "arm/missing" : random->Of(table.entries).name);
      content = "";
    }
    table.entries.push_back({name, content});
    if (random->OneIn(10)) table.entries.push_back({name, Content(random)});
  }
  for (std::size_t i = table.entries.size(); i > 1; --i) {
    if (random->OneIn(2)) std::swap(table.entries[i - 1], table.entries[random->Below(i)]);
  }
  if (!table.release.empty() && !random->OneIn(15)) {
    table.locations = locations;
    const auto place = table.entries.begin() +
                       static_cast<std::ptrdiff_t>(random->Below(table.entries.size() + 1));
    table.entries.insert(place,
                         {table.release + "/WINDOWS/locations.txt", LocationsText(locations)});
  }
  return table;
}
