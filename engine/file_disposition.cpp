#include "engine/file_disposition.h"

#include <cstdio>
#include <cstring>

#include "engine/install_error.h"
#include "engine/library_query.h"
#include "engine/writers.h"
#include "platform/files.h"
#include "platform/text.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "store/location_keys.h"

bool AntivirusHint;

namespace {

constexpr int kWritten = 1;
constexpr int kNothingToDo = 0;
constexpr int kFailed = -1;
static_assert(kWritten == 1 && kNothingToDo == 0 && kFailed < 0);

constexpr std::size_t kFolderBound = 520;
constexpr std::size_t kAliasSize = 512;
constexpr std::size_t kLibraryNameSize = 256;

constexpr char kAliasSeparator[] = " --> ";
constexpr char kRemovalMark[] = "// this file no longer used";
constexpr std::uint32_t kRemovalSize = 28;  // the mark and its line end

// The order is that of the tests; the list is exact.
constexpr const char* kTools[] = {
    "quirlo_reboot.exe",  "quirlo_size.exe",    "quirlo_restart.exe",  "quirlo_post_compile.exe",
    "quirlo_cleanup.exe", "quirlo_gateway.exe", "quirlo_ports.exe",    "quirlo_serialmon.exe",
    "quirlo_secure.exe",  "mktinyfat.exe",      "stdout_redirect.exe", "precompile_helper.exe",
    "pre_uninstall.bat",  "quirlo.exe"};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool Equals(const char* text, const char* other) {
  return std::strcmp(text, other) == 0;
}

bool IsTool(const char* name) {
  for (const char* tool : kTools) {
    if (Equals(name, tool)) return true;
  }
  return false;
}

// The entry under way: what every rule looks at.
struct Disposal {
  const char* host_folder;
  std::uint32_t index;
  const char* name;
};

// Whether the entry is `rest` of the selected release.
bool IsOfRelease(const Disposal& entry, const char* rest) {
  return Equals(entry.name, ScratchConcat(HostVersion, rest));
}

// What follows the selected release's name and `rest` in the entry's name, or null.
const char* AfterRelease(const Disposal& entry, const char* rest) {
  return AfterPrefix(entry.name, ScratchConcat(HostVersion, rest));
}

int WriteTo(const Disposal& entry, const char* folder, const char* file) {
  return WriteEntryToFile(entry.host_folder, folder, file, entry.index);
}

// Writes into the folder that `key` names. The packager refuses a release that lacks a key; a
// payload that has got by all the same must not spill its files into the host's root.
int WriteToKey(const Disposal& entry, const char* key, const char* file) {
  const char* folder = LookupLocation(key);
  return folder == nullptr ? kFailed : WriteTo(entry, folder, file);
}

// The same for a fixed folder below the one that `key` names.
int WriteBelowKey(const Disposal& entry, const char* key, const char* below, const char* file) {
  const char* value = LookupLocation(key);
  if (value == nullptr) return kFailed;
  char folder[kFolderBound];
  FormatBounded(folder, sizeof folder, "%s%s", value, below);
  return WriteTo(entry, folder, file);
}

int WriteObject(const Disposal& entry, const char* object, const char* key) {
  AntivirusHint = true;
  const char* archive = LookupLocation(key);
  if (archive == nullptr) return kFailed;
  return WriteEntryToArchive(entry.host_folder, object, entry.index, archive);
}

// An alias gets the content of an earlier entry: a full, independent copy, no link of any kind.
int DisposeAlias(const Disposal& entry, const char* separator) {
  const auto left_length = static_cast<std::size_t>(separator - entry.name);
  if (left_length > kAliasSize - 1) return kFailed;
  char left[kAliasSize];
  std::memcpy(left, entry.name, left_length);
  left[left_length] = '\0';

  const char* target = separator + std::strlen(kAliasSeparator);
  for (std::uint32_t i = 0; i < entry.index; ++i) {
    if (!Equals(Store.names[i], target)) continue;
    return WriteToKey({entry.host_folder, i, target}, "TOOL_SUBDIR", left);
  }
  SetInstallError("internal file reference error!!");
  return kFailed;
}

// The name is kept whole, with its first component. Only here is the alias separator looked for.
int DisposeToolchain(const Disposal& entry) {
  const char* separator = std::strstr(entry.name, kAliasSeparator);
  if (separator != nullptr) return DisposeAlias(entry, separator);
  return WriteToKey(entry, "TOOL_SUBDIR", entry.name);
}

int DisposeJarTree(const Disposal& entry, const char* rest) {
  if (EndsWith(rest, ".class")) {
    const char* object = AfterPrefix(rest, "pde.jar/");
    if (object != nullptr) return WriteObject(entry, object, "ARDUINO_JAR_FILE1");
    object = AfterPrefix(rest, "arduino-core.jar/");
    if (object != nullptr) return WriteObject(entry, object, "ARDUINO_JAR_FILE2");
    return kNothingToDo;
  }
  // Recognised and never installed; the hint stays set all the same.
  if (EndsWith(entry.name, "/Info.plist") || EndsWith(entry.name, "/JavaApplicationStub") ||
      EndsWith(entry.name, "/CodeResources")) {
    AntivirusHint = true;
  }
  return kNothingToDo;
}

// Removes what an earlier version of the package installed. An absent file is as good as removed.
int RemoveFromCores(const Disposal& entry, const char* rest) {
  const char* cores = LookupLocation("CORES_SUBDIR");
  if (cores == nullptr) return kFailed;
  char path[260];
  FormatBounded(path, sizeof path, "%s%s%s", entry.host_folder, cores, rest);
  std::FILE* file = OpenFile(path, "r");
  if (file == nullptr) return kNothingToDo;
  std::fclose(file);
  if (RemoveFile(path)) return kNothingToDo;
  SetInstallError("Unable to delete \"%s%s\".", cores, rest);
  return kFailed;
}

bool HoldsRemovalMark(std::uint32_t index) {
  return Store.sizes[index] == kRemovalSize &&
         std::memcmp(Store.data[index], kRemovalMark, std::strlen(kRemovalMark)) == 0;
}

// Three headers that the oldest releases brought themselves. The literals ask whether the selected
// release is that one.
bool IsOldNetworkHeader(const char* rest) {
  return (Equals(rest, "quirlo/Udp.h") || Equals(rest, "quirlo/Server.h") ||
          Equals(rest, "quirlo/Client.h")) &&
         (InSelectedRelease("0022/") || InSelectedRelease("0023/"));
}

int DisposeCores(const Disposal& entry, const char* rest) {
  if (IsOldNetworkHeader(rest)) return RemoveFromCores(entry, rest);
  // Only here does the mark remove. An entry elsewhere with the same content is written, which
  // blanks the host's own copy; the two are not to be unified.
  if (HoldsRemovalMark(entry.index)) return RemoveFromCores(entry, rest);
  // Beside the board files, not into the cores folder.
  if (Equals(rest, "keywords.txt")) return WriteToKey(entry, "BOARDS_SUBDIR", rest);

  const char* last_slash = std::strrchr(rest, '/');
  if (last_slash == nullptr) return kFailed;
  const char* cores = LookupLocation("CORES_SUBDIR");
  if (cores == nullptr) return kFailed;
  char folder[kFolderBound];
  FormatBounded(folder, sizeof folder, "%s%.*s", cores, static_cast<int>(last_slash + 1 - rest),
                rest);
  return WriteTo(entry, folder, last_slash + 1);
}

int DisposeLibrary(const Disposal& entry, const char* rest) {
  const char* slash = std::strchr(rest, '/');
  if (slash == nullptr) return kNothingToDo;  // a description or picture, for the library page
  const auto length = static_cast<std::size_t>(slash - rest);
  if (length > kLibraryNameSize - 1) return kNothingToDo;
  char library[kLibraryNameSize];
  std::memcpy(library, rest, length);
  library[length] = '\0';
  if (LibrarySelected(library) == 0) return kNothingToDo;
  return WriteToKey(entry, "LIBRARY_SUBDIR", rest);
}

bool IsToolchain(const char* name) {
  return AfterPrefix(name, "arm-none-eabi/") != nullptr || AfterPrefix(name, "arm/") != nullptr ||
         AfterPrefix(name, "avrquirlo/") != nullptr;
}

// The ordered list of tests. The first that matches decides; the order is the design.
int ApplyRules(const Disposal& entry) {
  const char* name = entry.name;
  const char* rest = nullptr;

  // Another release's entry. The driver's INF is handled by the driver page, in every group.
  if (IsDigit(name[0]) && !InSelectedRelease(name)) return kNothingToDo;
  if (EndsWith(name, ".inf")) return kNothingToDo;

  if (IsOfRelease(entry, "/boards.txt")) return WriteToKey(entry, "BOARDS_SUBDIR", "boards.txt");
  if (IsOfRelease(entry, "/platform.txt")) {
    return WriteToKey(entry, "BOARDS_SUBDIR", "platform.txt");
  }
  if (IsTool(name)) {
    AntivirusHint = true;
    return WriteToKey(entry, "TOOL_SUBDIR", name);
  }
  if (Equals(name, "Q4Security.jar")) {
    return WriteBelowKey(entry, "PLUGIN_SUBDIR", "Q4Security/tool/", name);
  }
  if ((rest = AfterPrefix(name, "otherlibs/WINDOWS/")) != nullptr) {
    return WriteToKey(entry, "TOOL_SUBDIR", rest);
  }
  if (Equals(name, "quirloduino.txt")) return WriteToKey(entry, "VERSION_SUBDIR", name);
  if (IsToolchain(name)) return DisposeToolchain(entry);
  // The one folder that comes from no key.
  if ((rest = AfterRelease(entry, "/")) != nullptr && EndsWith(name, ".java")) {
    return WriteTo(entry, "src/", rest);
  }
  if (IsOfRelease(entry, "/keywords.txt")) {
    return WriteToKey(entry, "KEYWORDS_SUBDIR", "keywords.txt");
  }
  if (IsOfRelease(entry, "/keywords_quirlo.txt")) {
    return WriteToKey(entry, "KEYWORDS_SUBDIR", "keywords_quirlo.txt");
  }
  if (IsOfRelease(entry, "/theme.txt")) {
    return WriteBelowKey(entry, "VERSION_SUBDIR", "theme/", "theme.txt");
  }
  if ((rest = AfterRelease(entry, "/WINDOWS/")) != nullptr) return DisposeJarTree(entry, rest);
  if ((rest = AfterPrefix(name, "cores/")) != nullptr) return DisposeCores(entry, rest);
  // The user's ticks don't apply to a release's own libraries.
  if ((rest = AfterRelease(entry, "/libraries/")) != nullptr) {
    return WriteToKey(entry, "LIBRARY_SUBDIR", rest);
  }
  if ((rest = AfterPrefix(name, "examples/")) != nullptr) {
    return WriteToKey(entry, "EXAMPLES_SUBDIR", rest);
  }
  if ((rest = AfterPrefix(name, "armlib/")) != nullptr) {
    return WriteToKey(entry, "ARMLIB_SUBDIR", rest);
  }
  if ((rest = AfterRelease(entry, "/examples/")) != nullptr) {
    return WriteToKey(entry, "EXAMPLES_SUBDIR", rest);
  }
  if ((rest = AfterPrefix(name, "libraries/")) != nullptr) return DisposeLibrary(entry, rest);
  return kNothingToDo;
}

}  // namespace

int DisposeEntry(const char* host_folder, std::uint32_t index) {
  AntivirusHint = false;
  if (index >= Store.entry_count) return kFailed;
  return ApplyRules({host_folder, index, Store.names[index]});
}
