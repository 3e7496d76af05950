#include "engine/file_disposition.h"

#include <cstdio>
#include <cstring>

#include "engine/disposition_rules.h"
#include "engine/install_error.h"
#include "engine/library_query.h"
#include "engine/writers.h"
#include "platform/files.h"
#include "platform/text.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "store/location_keys.h"
#include "store/payload_format.h"

bool AntivirusHint;

namespace {

constexpr int kWritten = 1;
constexpr int kNothingToDo = 0;
constexpr int kFailed = -1;
static_assert(kWritten == 1 && kNothingToDo == 0 && kFailed < 0);

const char* SelectedLocation(const void* /*user*/, const char* key) {
  return LookupLocation(key);
}

int FindEntryBelow(const void* /*user*/, const char* name, std::uint32_t end) {
  for (std::uint32_t i = 0; i < end; ++i) {
    if (std::strcmp(Store.names[i], name) == 0) return static_cast<int>(i);
  }
  return -1;
}

bool IsLibrarySelected(const void* /*user*/, const char* library) {
  return LibrarySelected(library) != 0;
}

// An absent file is as good as removed.
int RemoveFromHost(const char* host_folder, const char* folder, const char* file) {
  char path[260];
  FormatBounded(path, sizeof path, "%s%s%s", host_folder, folder, file);
  std::FILE* present = OpenFile(path, "r");
  if (present == nullptr) return kNothingToDo;
  std::fclose(present);
  if (RemoveFile(path)) return kNothingToDo;
  SetInstallError("Unable to delete \"%s%s\".", folder, file);
  return kFailed;
}

int WriteFile(const char* host_folder, const Disposition& answer) {
  if (answer.file[answer.file_length] == '\0') {
    return WriteEntryToFile(host_folder, answer.place, answer.file, answer.source);
  }
  char left[kLongestAliasLeft + 1];  // an alias's name goes on behind its left side
  std::memcpy(left, answer.file, answer.file_length);
  left[answer.file_length] = '\0';
  return WriteEntryToFile(host_folder, answer.place, left, answer.source);
}

int CarryOut(const char* host_folder, const Disposition& answer) {
  switch (answer.action) {
    case DispositionAction::kPassOver:
      return kNothingToDo;
    case DispositionAction::kWriteFile:
      return WriteFile(host_folder, answer);
    case DispositionAction::kWriteObject:
      return WriteEntryToArchive(host_folder, answer.file, answer.source, answer.place);
    case DispositionAction::kRemove:
      return RemoveFromHost(host_folder, answer.place, answer.file);
    case DispositionAction::kFail:
      break;
  }
  if (answer.error != nullptr) SetInstallError("%s", answer.error);
  return kFailed;
}

}  // namespace

int DisposeEntry(const char* host_folder, std::uint32_t index) {
  AntivirusHint = false;
  if (index >= Store.entry_count) return kFailed;
  const Disposition answer =
      DecideEntry({Store.names[index], index, Store.sizes[index], Store.data[index]},
                  {HostVersion, nullptr, SelectedLocation, FindEntryBelow, IsLibrarySelected});
  AntivirusHint = answer.antivirus_hint;
  return CarryOut(host_folder, answer);
}
