#include "tests/properties/install_model.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "tests/support/temp_dir.h"
#include "tests/support/text_lines.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestPath = 259;
constexpr std::size_t kLongestError = 511;
constexpr std::size_t kLongestAliasName = 511;
constexpr std::size_t kLongestComponent = 255;  // of this system's names

// Where a name that begins with `prefix` goes. "@" is the release. What follows the prefix goes
// below the folder; an exact name goes there as `file`, or as it is when `file` is empty.
struct PlainRule {
  const char* prefix;
  bool exact;
  const char* key;  // "" for the host folder itself
  const char* below;
  const char* file;
};

constexpr const char* kTools[] = {
    "quirlo_reboot.exe",  "quirlo_size.exe",    "quirlo_restart.exe",  "quirlo_post_compile.exe",
    "quirlo_cleanup.exe", "quirlo_gateway.exe", "quirlo_ports.exe",    "quirlo_serialmon.exe",
    "quirlo_secure.exe",  "mktinyfat.exe",      "stdout_redirect.exe", "precompile_helper.exe",
    "pre_uninstall.bat",  "quirlo.exe"};

constexpr PlainRule kBeforeToolchain[] = {
    {"@/boards.txt", true, "BOARDS_SUBDIR", "", "boards.txt"},
    {"@/platform.txt", true, "BOARDS_SUBDIR", "", "platform.txt"},
    {"Q4Security.jar", true, "PLUGIN_SUBDIR", "Q4Security/tool/", ""},
    {"otherlibs/WINDOWS/", false, "TOOL_SUBDIR", "", ""},
    {"quirloduino.txt", true, "VERSION_SUBDIR", "", ""}};

constexpr PlainRule kBeforeJars[] = {
    {"@/keywords.txt", true, "KEYWORDS_SUBDIR", "", "keywords.txt"},
    {"@/keywords_quirlo.txt", true, "KEYWORDS_SUBDIR", "", "keywords_quirlo.txt"},
    {"@/theme.txt", true, "VERSION_SUBDIR", "theme/", "theme.txt"}};

constexpr PlainRule kAfterCores[] = {{"@/libraries/", false, "LIBRARY_SUBDIR", "", ""},
                                     {"examples/", false, "EXAMPLES_SUBDIR", "", ""},
                                     {"armlib/", false, "ARMLIB_SUBDIR", "", ""},
                                     {"@/examples/", false, "EXAMPLES_SUBDIR", "", ""}};

// The components of a path as the system reads it.
std::vector<std::string> Components(const std::string& path) {
  std::vector<std::string> components(1);
  for (const char c : path) {
    if (c == '/' || c == '\\') {
      if (!components.back().empty()) components.emplace_back();
    } else {
      components.back() += c;
    }
  }
  if (components.back().empty()) components.pop_back();
  return components;
}

std::string Joined(const std::vector<std::string>& components) {
  std::string path;
  for (const std::string& component : components) path += (path.empty() ? "" : "/") + component;
  return path;
}

bool EndsInSeparator(const std::string& path) {
  return path.ends_with('/') || path.ends_with('\\');
}

class Model {
 public:
  Model(const std::vector<TestEntry>& entries, const InstallRequest& request, ModelDisk* disk)
      : entries_(entries), request_(request), disk_(*disk) {}

  Outcome Dispose(std::size_t index);

  void Close() {
    if (open_.empty()) return;
    const std::string path = Below(open_);
    for (const auto& [name, content] : pending_) disk_.jars[path][name] = content;
    disk_.rewritten.insert(path);
    open_.clear();
    pending_.clear();
  }

  const std::string& error() const { return error_; }

 private:
  // A path text below the host folder, as the disk's maps have it.
  std::string Below(const std::string& path) const {
    return Joined(Components(path.substr(request_.host_folder.size())));
  }

  bool IsFolder(const std::string& path) const {
    if (path.size() <= request_.host_folder.size()) return true;
    const std::string below = Below(path);
    return below.empty() || disk_.folders.contains(below);
  }

  // Whether a new name can stand in the path's folder.
  bool HasRoom(const std::string& below) const {
    const std::size_t slash = below.rfind('/');
    const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
    return !below.empty() && below.size() - begin <= kLongestComponent &&
           (begin == 0 || disk_.folders.contains(below.substr(0, slash)));
  }

  bool MakeFolder(const std::string& path) {
    const std::string below = Below(path);
    if (!HasRoom(below) || disk_.files.contains(below) || disk_.folders.contains(below)) {
      return false;
    }
    disk_.folders.insert(below);
    return true;
  }

  bool Ensure(const std::string& path) {
    if (IsFolder(path)) return true;
    for (std::size_t slash = path.find('/', request_.host_folder.size());
         slash != std::string::npos; slash = path.find('/', slash + 1)) {
      const std::string level = path.substr(0, slash + 1);
      if (!IsFolder(level) && !MakeFolder(level)) {
        return Fail("Unable to create directory \"" + level + "\".");
      }
    }
    return IsFolder(path) || Fail("Could not create directory \"" + path + "\"!");
  }

  bool Fail(const std::string& error) {
    error_ = error.substr(0, kLongestError);
    return false;
  }

  std::optional<std::string> Location(const std::string& key) const {
    const auto found = request_.locations.find(key);
    if (found == request_.locations.end()) return std::nullopt;
    return found->second;
  }

  bool WriteFile(const std::string& folder, const std::string& name, const std::string& content) {
    Close();
    const std::string start = request_.host_folder + folder;
    if (!Ensure(start.substr(0, kLongestPath))) return false;
    if (start.size() > kLongestPath) {
      return Fail("Could not create directory \"" + start.substr(0, kLongestPath) + "\"!");
    }
    for (std::size_t slash = name.find('/'); slash != std::string::npos;
         slash = name.find('/', slash + 1)) {
      if (!Ensure((start + name.substr(0, slash + 1)).substr(0, kLongestPath))) return false;
    }
    const std::string path = (start + name).substr(0, kLongestPath);
    const std::string below = Below(path);
    if (EndsInSeparator(path) || !HasRoom(below) || disk_.folders.contains(below)) {
      return Fail("Unable to write file \"" + folder + name + "\".");
    }
    disk_.files[below] = content;
    disk_.jars.erase(below);
    disk_.rewritten.erase(below);
    return true;
  }

  bool WriteObject(const std::string& archive, const std::string& object,
                   const std::string& content) {
    const std::string path = request_.host_folder + archive;
    if (open_ != path) {
      Close();
      if (EndsInSeparator(path) || !disk_.jars.contains(Below(path))) {
        return Fail("Unable to open file \"" + path + "\".");
      }
      open_ = path;
    }
    pending_[object] = content;
    return true;
  }

  // A path that is no file counts as removed.
  void RemoveFile(const std::string& path) {
    if (EndsInSeparator(path)) return;
    disk_.files.erase(Below(path));
    disk_.jars.erase(Below(path));
    disk_.rewritten.erase(Below(path));
  }

  Outcome Plain(const std::string& key, const std::string& below, const std::string& file,
                const std::string& content) {
    const std::optional<std::string> folder = key.empty() ? "" : Location(key);
    if (!folder) return Outcome::kFailed;
    return WriteFile(*folder + below, file, content) ? Outcome::kWrittenFile : Outcome::kFailed;
  }

  template <std::size_t count>
  std::optional<Outcome> Apply(const PlainRule (&rules)[count], const TestEntry& entry) {
    for (const PlainRule& rule : rules) {
      std::string prefix = rule.prefix;
      if (prefix[0] == '@') prefix.replace(0, 1, request_.release);
      if (rule.exact ? entry.name != prefix : !entry.name.starts_with(prefix)) continue;
      std::string file = rule.exact ? entry.name : entry.name.substr(prefix.size());
      if (*rule.file != '\0') file = rule.file;
      return Plain(rule.key, rule.below, file, entry.content);
    }
    return std::nullopt;
  }

  Outcome Toolchain(std::size_t index);
  Outcome Jar(const std::string& rest, const std::string& content);
  Outcome Cores(const std::string& rest, const std::string& content);
  Outcome Library(const std::string& rest, const std::string& content);

  const std::vector<TestEntry>& entries_;
  const InstallRequest& request_;
  ModelDisk& disk_;
  std::string error_;
  std::string open_;  // the path text of the archive that is open; empty for none
  JarMembers pending_;
};

Outcome Model::Dispose(std::size_t index) {
  const TestEntry& entry = entries_[index];
  const std::string& name = entry.name;
  const std::string& release = request_.release;
  if (!name.empty() && name[0] >= '0' && name[0] <= '9' && !name.starts_with(release)) {
    return Outcome::kPassedOver;
  }
  if (name.ends_with(".inf")) return Outcome::kPassedOver;
  if (std::count(std::begin(kTools), std::end(kTools), name) != 0) {
    return Plain("TOOL_SUBDIR", "", name, entry.content);
  }
  if (const auto outcome = Apply(kBeforeToolchain, entry)) return *outcome;
  for (const char* tree : {"arm-none-eabi/", "arm/", "avrquirlo/"}) {
    if (name.starts_with(tree)) return Toolchain(index);
  }
  if (name.starts_with(release + "/") && name.ends_with(".java")) {
    return Plain("", "src/", name.substr(release.size() + 1), entry.content);
  }
  if (const auto outcome = Apply(kBeforeJars, entry)) return *outcome;
  const std::string jars = release + "/WINDOWS/";
  if (name.starts_with(jars)) return Jar(name.substr(jars.size()), entry.content);
  if (name.starts_with("cores/")) return Cores(name.substr(6), entry.content);
  if (const auto outcome = Apply(kAfterCores, entry)) return *outcome;
  if (name.starts_with("libraries/")) return Library(name.substr(10), entry.content);
  return Outcome::kPassedOver;
}

Outcome Model::Toolchain(std::size_t index) {
  const TestEntry& entry = entries_[index];
  const std::size_t separator = entry.name.find(" --> ");
  if (separator == std::string::npos) {
    return Plain("TOOL_SUBDIR", "", entry.name, entry.content);
  }
  if (separator > kLongestAliasName) return Outcome::kFailed;
  const std::string target = entry.name.substr(separator + 5);
  for (std::size_t i = 0; i < index; ++i) {
    if (entries_[i].name != target) continue;
    return Plain("TOOL_SUBDIR", "", entry.name.substr(0, separator), entries_[i].content);
  }
  Fail("internal file reference error!!");
  return Outcome::kFailed;
}

Outcome Model::Jar(const std::string& rest, const std::string& content) {
  if (!rest.ends_with(".class")) return Outcome::kPassedOver;
  for (const auto& [tree, key] : {std::pair{"pde.jar/", "ARDUINO_JAR_FILE1"},
                                  std::pair{"arduino-core.jar/", "ARDUINO_JAR_FILE2"}}) {
    if (!rest.starts_with(tree)) continue;
    const std::optional<std::string> archive = Location(key);
    if (!archive) return Outcome::kFailed;
    const std::string object = rest.substr(std::string(tree).size());
    return WriteObject(*archive, object, content) ? Outcome::kWrittenObject : Outcome::kFailed;
  }
  return Outcome::kPassedOver;
}

Outcome Model::Cores(const std::string& rest, const std::string& content) {
  const bool is_marked = content.size() == 28 && content.starts_with("// this file no longer used");
  const bool is_old =
      (rest == "quirlo/Udp.h" || rest == "quirlo/Server.h" || rest == "quirlo/Client.h") &&
      (std::string("0022/").starts_with(request_.release) ||
       std::string("0023/").starts_with(request_.release));
  const std::optional<std::string> cores = Location("CORES_SUBDIR");
  if (is_marked || is_old) {
    if (!cores) return Outcome::kFailed;
    RemoveFile((request_.host_folder + *cores + rest).substr(0, kLongestPath));
    return Outcome::kRemoved;
  }
  if (rest == "keywords.txt") return Plain("BOARDS_SUBDIR", "", rest, content);
  const std::size_t slash = rest.rfind('/');
  if (slash == std::string::npos || !cores) return Outcome::kFailed;
  return Plain("CORES_SUBDIR", rest.substr(0, slash + 1), rest.substr(slash + 1), content);
}

Outcome Model::Library(const std::string& rest, const std::string& content) {
  const std::size_t slash = rest.find('/');
  if (slash == std::string::npos || slash > 255) return Outcome::kPassedOver;
  if (request_.libraries && !request_.libraries->contains(rest.substr(0, slash))) {
    return Outcome::kPassedOver;
  }
  return Plain("LIBRARY_SUBDIR", "", rest, content);
}

bool OpensAsArchive(const std::string& path) {
  zip_t* archive = zip_open(path.c_str(), 0, nullptr);
  if (archive == nullptr) return false;
  zip_discard(archive);
  return true;
}

}  // namespace

ModelDisk ReadDisk(const std::string& path) {
  ModelDisk disk;
  for (auto& [name, content] : ReadTree(path)) {
    if (name.ends_with('/')) {
      disk.folders.insert(name.substr(0, name.size() - 1));
      continue;
    }
    disk.files[name] = std::move(content);
    if (!name.ends_with(".jar") || !OpensAsArchive(path + "/" + name)) continue;
    try {
      disk.jars[name] = ReadJar(path + "/" + name);
    } catch (const std::exception&) {
      disk.jars[name] = {};  // opens, and isn't sound
    }
  }
  return disk;
}

std::vector<std::string> Differences(const ModelDisk& expected, const ModelDisk& found) {
  std::vector<std::string> differences;
  for (const std::string& folder : expected.folders) {
    if (!found.folders.contains(folder)) differences.push_back("no folder " + folder);
  }
  for (const std::string& folder : found.folders) {
    if (!expected.folders.contains(folder)) differences.push_back("a folder too many: " + folder);
  }
  for (const auto& [name, content] : expected.files) {
    const auto other = found.files.find(name);
    if (other == found.files.end()) {
      differences.push_back("no file " + name);
    } else if (expected.rewritten.contains(name)) {
      const auto jar = found.jars.find(name);
      if (jar == found.jars.end() || jar->second != expected.jars.at(name)) {
        differences.push_back("other members in " + name);
      }
    } else if (other->second != content) {
      differences.push_back("other bytes in " + name);
    }
  }
  for (const auto& [name, content] : found.files) {
    if (!expected.files.contains(name)) differences.push_back("a file too many: " + name);
  }
  return differences;
}

ModelRun PredictInstall(const std::vector<TestEntry>& entries, const InstallRequest& request,
                        WalkEnd end, ModelDisk* disk) {
  Model model(entries, request, disk);
  ModelRun run{{}, {}, false};
  for (std::size_t i = 0; i < entries.size(); ++i) {
    run.outcomes.push_back(model.Dispose(i));
    run.errors.push_back(model.error());
    if (run.outcomes.back() != Outcome::kFailed) continue;
    run.failed = true;
    if (end != WalkEnd::kEveryEntry) return run;
  }
  if (end != WalkEnd::kProgram) model.Close();
  return run;
}

std::string PredictPreferences(const std::string& text) {
  struct Setting {
    std::string key;
    std::string ours;
    std::set<std::string> accepted;
    bool seen = false;
    bool right = false;
  };
  std::array<Setting, 3> settings = {
      Setting{"board=",
              "quirlo31",
              {"quirlo31", "quirlo35", "quirlo36", "quirlo40", "quirlo41", "quirloMM", "quirlo30",
               "quirloLC", "quirlo2", "quirlopp2"}},
      Setting{"target_package=", "quirlo", {"quirlo"}},
      Setting{"target_platform=", "avr", {"avr"}}};
  std::string rewritten;
  for (const std::string& line : LinesOf(text)) {
    std::string written = line;
    for (Setting& setting : settings) {
      if (line.size() <= setting.key.size() || !line.starts_with(setting.key)) continue;
      std::string value = line.substr(setting.key.size());
      const bool ended = value.ends_with('\n');
      if (ended) value.pop_back();
      if (ended && value.ends_with('\r')) value.pop_back();
      setting.seen = true;
      setting.right = ended && setting.accepted.contains(value);
      written = setting.key + setting.ours + "\r\n";
    }
    rewritten += written;
  }
  std::string head;
  bool all_right = true;
  for (const Setting& setting : settings) {
    all_right = all_right && setting.right;
    if (!setting.seen) head += setting.key + setting.ours + "\r\n";
  }
  return all_right ? text : head + rewritten;
}

void PredictLibraryRemoval(const InstallRequest& request, ModelDisk* disk) {
  const auto libraries = request.locations.find("LIBRARY_SUBDIR");
  if (libraries == request.locations.end()) return;
  for (const char* old :
       {"Adafruit_GFX", "Adafruit_CC3000", "Adafruit_RA8875", "openGLCD", "ST7565", "SD/utility"}) {
    const std::string folder = Joined(Components(libraries->second + old));
    if (!disk->folders.contains(folder)) continue;
    const auto is_inside = [&](const std::string& path) {
      return path == folder || path.starts_with(folder + "/");
    };
    std::erase_if(disk->folders, is_inside);
    std::erase_if(disk->files, [&](const auto& file) { return is_inside(file.first); });
  }
}
