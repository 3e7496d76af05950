#include "recognition/default_folder.h"

#include <cstring>

#include "platform/files.h"
#include "platform/special_folders.h"
#include "platform/text.h"
#include "recognition/identify_arduino.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"

namespace {

static_assert(kFolderSize >= kSpecialFolderSize);

// Holds the base folder, then each candidate.
char search_buffer[kFolderSize];

bool IsSupportedArduino(const char* path) {
  if (!DirectoryExists(path)) return false;
  HostVersionNumber = IdentifyArduino(path);
  return HostVersionNumber != 0;
}

// One step of the search; a folder that the system doesn't have is skipped.
const char* ProbeSpecialFolder(SpecialFolder folder) {
  return SpecialFolderPath(folder, search_buffer) ? ProbeBase(search_buffer) : nullptr;
}

// There is no platform query for the Downloads folder, so it is made from the Documents path. What
// follows the first "Documents" is lost, which is the whole method.
const char* ProbeDownloads() {
  if (!SpecialFolderPath(SpecialFolder::kPersonal, search_buffer)) return nullptr;
  char* documents = std::strstr(search_buffer, "Documents");
  if (documents == nullptr) return nullptr;
  std::memcpy(documents, "Downloads", sizeof "Downloads");  // as long as what it overwrites
  return ProbeBase(search_buffer);
}

const char* ProbeDrive() {
  FormatBounded(search_buffer, sizeof search_buffer, "C:/");
  return ProbeBase(search_buffer);
}

const char* FindSupportedCopy() {
  const char* found = ProbeSpecialFolder(SpecialFolder::kProgramFilesX86);
  if (found == nullptr) found = ProbeSpecialFolder(SpecialFolder::kProgramFiles);
  if (found == nullptr) found = ProbeDownloads();
  if (found == nullptr) found = ProbeSpecialFolder(SpecialFolder::kDesktopDirectory);
  if (found == nullptr) found = ProbeSpecialFolder(SpecialFolder::kPersonal);
  if (found == nullptr) found = ProbeDrive();
  return found;
}

}  // namespace

const char* DefaultFolder() {
  const char* found = FindSupportedCopy();
  if (found != nullptr) return found;
  if (SpecialFolderPath(SpecialFolder::kPersonal, search_buffer)) {
    NormalizeFolder(search_buffer);
    if (DirectoryExists(search_buffer)) return search_buffer;
  }
  return "C:/";
}

const char* ProbeBase(char* buffer) {
  NormalizeFolder(buffer);
  const std::size_t length = std::strlen(buffer);
  char* tail = buffer + length;
  const std::size_t room = kFolderSize - length;
  FormatBounded(tail, room, "arduino/");
  if (IsSupportedArduino(buffer)) return buffer;
  for (std::size_t i = 0; i < SupportedVersionCount(); ++i) {
    FormatBounded(tail, room, "arduino-%s/", SupportedVersionAt(i));
    if (IsSupportedArduino(buffer)) return buffer;
  }
  return nullptr;
}

void NormalizeFolder(char* path) {
  std::size_t length = 0;
  for (; path[length] != '\0'; ++length) {
    if (path[length] == '\\') path[length] = '/';
  }
  if (length > 0 && path[length - 1] == '/') return;
  if (length + 1 >= kFolderSize) return;
  path[length] = '/';
  path[length + 1] = '\0';
}
