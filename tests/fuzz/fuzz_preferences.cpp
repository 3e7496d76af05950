// The preferences edit over any file: a second pass changes nothing, other lines stay byte for byte
// and in their order, a file that is right isn't touched at all, and the result is the one that a
// second reading of the rules, written apart, gives. The input's first byte chooses the release's
// number, the rest is the file.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <set>

#include "engine/host_preferences.h"
#include "tests/fuzz/fuzz_support.h"
#include "tests/support/text_lines.h"

namespace {

struct Release {
  int number;
  const char* file;  // below the work folder; null where none is looked for
};
constexpr Release kReleases[] = {{10819, "host//portable/preferences.txt"},
                                 {10600, "data/Arduino15/preferences.txt"},
                                 {10550, "data/Arduino15/preferences.txt"},
                                 {10498, "data/Arduino/preferences.txt"},
                                 {10499, nullptr},
                                 {0, nullptr}};
constexpr const char* kFolders[] = {"host", "host/portable", "data", "data/Arduino",
                                    "data/Arduino15"};
const std::array<std::string, 3> kKeys = {"board=", "target_package=", "target_platform="};
const std::array<std::string, 3> kReplacements = {"board=quirlo31\r\n", "target_package=quirlo\r\n",
                                                  "target_platform=avr\r\n"};
const std::array<std::set<std::string>, 3> kRight = {
    std::set<std::string>{"quirlo31", "quirlo35", "quirlo36", "quirlo40", "quirlo41", "quirloMM",
                          "quirlo30", "quirloLC", "quirlo2", "quirlopp2"},
    {"quirlo"},
    {"avr"}};

// The number of the line's key, 3 for any other line.
std::size_t KeyOf(const std::string& line) {
  std::size_t key = 0;
  while (key < 3 && !(line.starts_with(kKeys[key]) && line.size() > kKeys[key].size())) ++key;
  return key;
}

bool IsRight(const std::string& line, std::size_t key) {
  if (!line.ends_with('\n')) return false;
  std::string value = line.substr(kKeys[key].size(), line.size() - kKeys[key].size() - 1);
  if (value.ends_with('\r')) value.pop_back();
  return kRight[key].count(value) != 0;
}

std::string Expected(const std::string& text) {
  std::array<bool, 3> seen{};
  std::array<bool, 3> right{};
  std::string body;
  for (const std::string& line : LinesOf(text)) {
    const std::size_t key = KeyOf(line);
    body += key < 3 ? kReplacements[key] : line;
    if (key == 3) continue;
    seen[key] = true;
    right[key] = IsRight(line, key);
  }
  if (right[0] && right[1] && right[2]) return text;
  std::string head;
  for (std::size_t key = 0; key < 3; ++key) {
    if (!seen[key]) head += kReplacements[key];
  }
  return head + body;
}

std::vector<std::string> OtherLines(const std::string& text) {
  std::vector<std::string> others;
  for (const std::string& line : LinesOf(text)) {
    if (KeyOf(line) == 3) others.push_back(line);
  }
  return others;
}

void MakeFolders() {
  for (const char* folder : kFolders) {
    Require(mkdir((WorkFolder() + "/" + folder).c_str(), 0777) == 0, "the work folder is new");
  }
  setenv("XDG_DATA_HOME", (WorkFolder() + "/data").c_str(), 1);
}

// One update of a file whose time is long past, by which a write shows.
bool Update(const std::string& path, int release) {
  static const std::string host = WorkFolder() + "/host/";
  constexpr timespec kPast[2] = {{1000000000, 0}, {1000000000, 0}};
  Require(utimensat(AT_FDCWD, path.c_str(), kPast, 0) == 0, "the file is there");
  UpdatePreferences(host.c_str(), release);
  struct stat status;
  Require(stat(path.c_str(), &status) == 0, "the file stays");
  return status.st_mtim.tv_sec != kPast[0].tv_sec;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return -1;
  static const bool made = (MakeFolders(), true);
  Require(made, "the folders are made once");
  // A digit chooses, so that a seed can be read.
  const Release& release = kReleases[data[0] % std::size(kReleases)];
  const std::string text = AllOf(data + 1, size - 1);
  const std::string path =
      WorkFolder() + "/" + (release.file == nullptr ? kReleases[0].file : release.file);
  PutFile(path, text);
  const int descriptor = LowestFreeDescriptor();

  const bool written = Update(path, release.number);
  const std::string first = GetFile(path);
  const bool written_again = Update(path, release.number);

  Require(LowestFreeDescriptor() == descriptor, "the file is closed again");
  Require(!written_again && GetFile(path) == first, "a second pass changes nothing");
  const std::string expected = release.file == nullptr ? text : Expected(text);
  Require(first == expected, "the three keys are right, and nothing else has changed");
  Require(written == (expected != text), "a file that is right is not written");
  Require(OtherLines(first) == OtherLines(text), "other lines stay byte for byte");
  unlink(path.c_str());
  return 0;
}
