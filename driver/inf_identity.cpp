#include "driver/inf_identity.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "driver/driver_platform.h"
#include "driver/driver_text.h"

namespace {

// The system's list of INF files, or null. The caller frees it.
char* FetchInfFileList(std::uint32_t* size) {
  if (!GetInfFileList(nullptr, 0, size)) return nullptr;
  // Two zeros behind the list: one without its end, or of no size at all, ends all the same.
  char* list = static_cast<char*>(std::calloc(std::size_t{*size} + 2, 1));
  if (list == nullptr) return nullptr;
  if (GetInfFileList(list, *size, nullptr)) return list;
  std::free(list);
  return nullptr;
}

// The name in `list` whose file has this [Version] text, or null.
const char* FindInList(const char* list, const char* staged_path, const char* wanted, int length) {
  char text[kVersionTextSize];
  for (const char* name = list; *name != '\0'; name += std::strlen(name) + 1) {
    if (find_substring_nocase(name, "oem") == nullptr && !equal_nocase(name, staged_path)) continue;
    if (read_inf_version_text(name, text) != length) continue;
    if (std::memcmp(text, wanted, static_cast<std::size_t>(length)) == 0) return name;
  }
  return nullptr;
}

}  // namespace

int read_inf_version_text(const char* name, char* buffer) {
  buffer[0] = '\0';
  InfFile* file = OpenInfFile(name);
  if (file == nullptr) return 0;
  std::size_t length = 0;
  InfContext line = {};
  for (bool more = FindFirstInfLine(file, "Version", &line); more; more = FindNextInfLine(&line)) {
    const std::size_t room = kVersionTextSize - length;
    if (GetInfLineText(&line, buffer + length, static_cast<std::uint32_t>(room))) {
      length += std::strlen(buffer + length);
    }
  }
  CloseInfFile(file);
  return static_cast<int>(length);
}

char* find_installed_inf(const char* staged_path) {
  char wanted[kVersionTextSize];
  const int length = read_inf_version_text(staged_path, wanted);
  if (length <= 0) return nullptr;
  std::uint32_t size = 0;
  char* list = FetchInfFileList(&size);
  if (list == nullptr) return nullptr;
  const char* found = FindInList(list, staged_path, wanted, length);
  char* name = found == nullptr ? nullptr : duplicate_text(found);
  std::free(list);
  return name;
}
