#include "engine/host_preferences.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "platform/files.h"
#include "platform/special_folders.h"
#include "platform/text.h"

namespace {

constexpr std::size_t kPathSize = 260;

// One byte more, the NUL behind the text, and a size of 32 bits would wrap to nothing. The same on
// every build: no preferences are that long.
constexpr std::uint64_t kMostBytes = 0xFFFFFFFE;

constexpr const char* kBoards[] = {"quirlo31", "quirlo35", "quirlo36", "quirlo40", "quirlo41",
                                   "quirloMM", "quirlo30", "quirloLC", "quirlo2",  "quirlopp2"};
constexpr const char* kPackages[] = {"quirlo"};
constexpr const char* kPlatforms[] = {"avr"};

struct Key {
  const char* text;
  const char* const* accepted;  // values that count as right
  std::size_t accepted_count;
  const char* replacement;
};
constexpr Key kKeys[] = {
    {"board=", kBoards, std::size(kBoards), "board=quirlo31\r\n"},
    {"target_package=", kPackages, std::size(kPackages), "target_package=quirlo\r\n"},
    {"target_platform=", kPlatforms, std::size(kPlatforms), "target_platform=avr\r\n"}};
constexpr std::size_t kKeyCount = std::size(kKeys);

// The flags of one run. Of several lines with one key the last counts for right.
struct Verdict {
  bool seen;
  bool right;
};

// A line reaches up to and including its line feed, or to the end of the file.
struct Line {
  const char* text;
  std::size_t length;
};

// Takes the next line from `position`; false at the end.
bool NextLine(const char** position, const char* end, Line* line) {
  if (*position == end) return false;
  const auto room = static_cast<std::size_t>(end - *position);
  const auto* feed = static_cast<const char*>(std::memchr(*position, '\n', room));
  line->text = *position;
  line->length = feed == nullptr ? room : static_cast<std::size_t>(feed - *position) + 1;
  *position += line->length;
  return true;
}

// The key that the line sets, or null. A line that holds nothing behind its key, not even a line
// end, sets none.
const Key* KeyOf(const Line& line) {
  for (const Key& key : kKeys) {
    const std::size_t length = std::strlen(key.text);
    if (line.length > length && std::memcmp(line.text, key.text, length) == 0) return &key;
  }
  return nullptr;
}

bool Equals(const char* bytes, std::size_t length, const char* value, const char* ending) {
  const std::size_t value_length = std::strlen(value);
  const std::size_t ending_length = std::strlen(ending);
  return length == value_length + ending_length && std::memcmp(bytes, value, value_length) == 0 &&
         std::memcmp(bytes + value_length, ending, ending_length) == 0;
}

// The line end is part of what is compared, so an unterminated last line is never right.
bool IsRight(const Key& key, const Line& line) {
  const char* value = line.text + std::strlen(key.text);
  const std::size_t length = line.length - std::strlen(key.text);
  for (std::size_t i = 0; i < key.accepted_count; ++i) {
    if (Equals(value, length, key.accepted[i], "\n")) return true;
    if (Equals(value, length, key.accepted[i], "\r\n")) return true;
  }
  return false;
}

void Judge(const char* text, const char* end, Verdict (&verdicts)[kKeyCount]) {
  Line line;
  while (NextLine(&text, end, &line)) {
    const Key* key = KeyOf(line);
    if (key == nullptr) continue;
    verdicts[key - kKeys] = {true, IsRight(*key, line)};
  }
}

bool AllRight(const Verdict (&verdicts)[kKeyCount]) {
  for (const Verdict& verdict : verdicts) {
    if (!verdict.right) return false;
  }
  return true;
}

// Failures to write aren't looked at: there would be nobody to tell.
void Rewrite(std::FILE* file, const char* text, const char* end,
             const Verdict (&verdicts)[kKeyCount]) {
  for (std::size_t i = 0; i < kKeyCount; ++i) {
    if (!verdicts[i].seen) std::fputs(kKeys[i].replacement, file);
  }
  Line line;
  while (NextLine(&text, end, &line)) {
    const Key* key = KeyOf(line);
    if (key != nullptr) {
      std::fputs(key->replacement, file);
    } else {
      std::fwrite(line.text, 1, line.length, file);
    }
  }
}

// The whole file with a NUL behind it, which the caller frees; null on any failure.
char* ReadWholeFile(const char* path, std::size_t* size) {
  PathStatus status;
  if (!StatPath(path, &status) || status.size > kMostBytes) return nullptr;
  *size = static_cast<std::size_t>(status.size);
  char* text = static_cast<char*>(std::malloc(*size + 1));
  if (text == nullptr) return nullptr;
  std::FILE* file = OpenFile(path, "rb");
  if (file == nullptr) {
    std::free(text);
    return nullptr;
  }
  const std::size_t count = std::fread(text, 1, *size, file);
  std::fclose(file);
  if (count < *size) {
    std::free(text);
    return nullptr;
  }
  text[*size] = '\0';
  return text;
}

bool Exists(const char* path) {
  PathStatus status;
  return StatPath(path, &status);
}

// `path` when preferences.txt stands in that subfolder of the local application data, else null.
const char* FindInLocalAppData(const char* subfolder, char (&path)[kPathSize]) {
  char folder[kSpecialFolderSize];
  if (!SpecialFolderPath(SpecialFolder::kLocalAppData, folder)) return nullptr;
  FormatBounded(path, sizeof path, "%s\\%s\\preferences.txt", folder, subfolder);
  return Exists(path) ? path : nullptr;
}

}  // namespace

const char* FindPreferences(const char* dir, int version) {
  static char path[kPathSize];
  // The gap at 10499 is an exact boundary.
  if (version >= 10000 && version <= 10498) return FindInLocalAppData("Arduino", path);
  if (version >= 10500 && version <= 10599) return FindInLocalAppData("Arduino15", path);
  if (version < 10600 || version > 99999) return nullptr;
  // `dir` ends in a separator; two in a row are as good as one.
  FormatBounded(path, sizeof path, "%s/portable/preferences.txt", dir);
  if (Exists(path)) return path;
  return FindInLocalAppData("Arduino15", path);
}

void UpdatePreferences(const char* dir, int version) {
  const char* path = FindPreferences(dir, version);
  if (path == nullptr) return;
  std::size_t size = 0;
  char* text = ReadWholeFile(path, &size);
  if (text == nullptr) return;
  const char* const end = text + size;
  Verdict verdicts[kKeyCount] = {};
  Judge(text, end, verdicts);
  if (!AllRight(verdicts)) {
    std::FILE* file = OpenFile(path, "wb");
    if (file != nullptr) {
      Rewrite(file, text, end, verdicts);
      std::fclose(file);
    }
  }
  std::free(text);
}
