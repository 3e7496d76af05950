#include "platform/special_folders.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/files.h"
#include "platform/text.h"

namespace {

const char* Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && value[0] != '\0' ? value : nullptr;
}

// An absolute path from the environment, or the default below the home folder. The XDG base
// directory rules tell a reader to ignore a relative value.
bool BaseDirectory(const char* variable, const char* below_home, char* path) {
  const char* value = Environment(variable);
  const char* home = Environment("HOME");
  std::size_t length = 0;
  if (value != nullptr && value[0] == '/') {
    length = FormatBounded(path, kSpecialFolderSize, "%s", value);
  } else if (home != nullptr) {
    length = FormatBounded(path, kSpecialFolderSize, "%s/%s", home, below_home);
  }
  return length > 0 && length < kSpecialFolderSize;
}

// Reads one line of user-dirs.dirs, of the form XDG_DOCUMENTS_DIR="$HOME/Documents": a path below
// $HOME or an absolute one, shell-quoted, where a backslash keeps the next character. False when
// the line sets another key or has another form.
bool ParseUserDirectory(const char* line, const char* key, const char* home, char* path) {
  line += std::strspn(line, " \t");
  const std::size_t key_length = std::strlen(key);
  if (std::strncmp(line, key, key_length) != 0) return false;
  line += key_length;
  line += std::strspn(line, " \t");
  if (*line++ != '=') return false;
  line += std::strspn(line, " \t");
  if (*line++ != '"') return false;

  std::size_t length = 0;
  if (std::strncmp(line, "$HOME", 5) == 0 && (line[5] == '/' || line[5] == '"')) {
    length = FormatBounded(path, kSpecialFolderSize, "%s", home);
    line += 5;
  } else if (*line != '/') {
    return false;
  }
  for (; *line != '\0' && *line != '"'; ++line) {
    if (*line == '\\' && line[1] != '\0') ++line;
    if (length + 1 >= kSpecialFolderSize) return false;
    path[length++] = *line;
  }
  if (length >= kSpecialFolderSize || *line != '"') return false;
  path[length] = '\0';
  return length > 0;
}

// The last line that sets `key` wins, as in the shell that the format is made for.
bool UserDirectory(const char* key, const char* default_below_home, char* path) {
  const char* home = Environment("HOME");
  if (home == nullptr) return false;
  // What stands when the user has set nothing: Desktop below the home folder, for every other
  // directory the home folder itself.
  bool found = FormatBounded(path, kSpecialFolderSize, "%s%s", home, default_below_home) <
               kSpecialFolderSize;
  char file_name[kLibraryPathSize];
  char config[kSpecialFolderSize];
  if (!BaseDirectory("XDG_CONFIG_HOME", ".config", config)) return found;
  FormatBounded(file_name, sizeof file_name, "%s/user-dirs.dirs", config);
  std::FILE* file = OpenFile(file_name, "r");
  if (file == nullptr) return found;
  char line[1024];
  char parsed[kSpecialFolderSize];
  bool begins_line = true;  // an overlong line comes in pieces, of which only the first counts
  while (std::fgets(line, sizeof line, file) != nullptr) {
    const bool is_rest = !begins_line;
    begins_line = std::strchr(line, '\n') != nullptr;
    if (is_rest || !ParseUserDirectory(line, key, home, parsed)) continue;
    std::memcpy(path, parsed, sizeof parsed);
    found = true;
  }
  std::fclose(file);
  return found;
}

bool FindFolder(SpecialFolder folder, char* path) {
  switch (folder) {
    case SpecialFolder::kPersonal:
      return UserDirectory("XDG_DOCUMENTS_DIR", "", path);
    case SpecialFolder::kDesktopDirectory:
      return UserDirectory("XDG_DESKTOP_DIR", "/Desktop", path);
    case SpecialFolder::kLocalAppData:
      return BaseDirectory("XDG_DATA_HOME", ".local/share", path);
    case SpecialFolder::kProgramFiles:
    case SpecialFolder::kProgramFilesX86:
      return false;
  }
  return false;
}

}  // namespace

bool SpecialFolderPath(SpecialFolder folder, char* path) {
  path[0] = '\0';
  if (!FindFolder(folder, path)) {
    path[0] = '\0';
    return false;
  }
  for (std::size_t length = std::strlen(path); length > 1 && path[length - 1] == '/';) {
    path[--length] = '\0';
  }
  return true;
}
