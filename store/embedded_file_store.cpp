#include "store/embedded_file_store.h"

#include <zstd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "platform/memory.h"
#include "store/host_selection.h"
#include "store/payload_format.h"

namespace {

constexpr std::size_t kVersionsTextSize = 256;

unsigned char* payload;  // the expanded content, for the life of the process
char* releases[kMostReleases];
std::size_t release_count;
char versions_text[kVersionsTextSize];

std::uint32_t ContentSize() {
  std::uint32_t total = 0;
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) total += Store.sizes[i];
  return total;
}

void FillDataTable() {
  const unsigned char* position = payload;
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    Store.data[i] = position;
    position += Store.sizes[i];
  }
}

// A heap copy of the first `length` characters, or null when memory runs out.
char* CopyText(const char* text, std::size_t length) {
  char* copy = static_cast<char*>(std::malloc(length + 1));
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, text, length);
  copy[length] = '\0';
  return copy;
}

void GatherReleases() {
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    const char* name = Store.names[i];
    const char* ending = std::strstr(name, kCriteriaFileEnding);
    if (ending == nullptr || ending == name) continue;
    if (release_count == kMostReleases) return;
    char* copy = CopyText(name, static_cast<std::size_t>(ending - name));
    if (copy == nullptr) return;  // what was gathered so far stands
    releases[release_count++] = copy;
  }
}

struct ReleaseNumber {
  int part[3];
};

bool ScanRelease(const char* text, ReleaseNumber* number) {
  return std::sscanf(text, "%d.%d.%d", &number->part[0], &number->part[1], &number->part[2]) == 3;
}

// By number where both texts have three that differ, otherwise by text.
int CompareReleases(const char* first, const char* second) {
  ReleaseNumber a;
  ReleaseNumber b;
  if (ScanRelease(first, &a) && ScanRelease(second, &b)) {
    for (int i = 0; i < 3; ++i) {
      if (a.part[i] != b.part[i]) return a.part[i] < b.part[i] ? -1 : 1;
    }
  }
  return std::strcmp(first, second);
}

void SortReleases() {
  for (std::size_t pass = 0; pass < release_count; ++pass) {
    for (std::size_t i = 0; i + 1 < release_count; ++i) {
      if (CompareReleases(releases[i], releases[i + 1]) >= 0) {
        std::swap(releases[i], releases[i + 1]);
      }
    }
  }
}

// A text that doesn't fit ends the joining and leaves the separator before it in place.
void JoinReleases() {
  std::size_t length = 0;
  for (std::size_t i = 0; i < release_count; ++i) {
    if (i > 0) {
      if (length + 2 > kVersionsTextSize - 1) return;
      std::memcpy(versions_text + length, ", ", 3);
      length += 2;
    }
    const std::size_t name_length = std::strlen(releases[i]);
    if (length + name_length > kVersionsTextSize - 1) return;
    std::memcpy(versions_text + length, releases[i], name_length + 1);
    length += name_length;
  }
}

}  // namespace

bool LoadEmbeddedFiles() {
  const std::uint32_t total = ContentSize();
  payload = static_cast<unsigned char*>(std::malloc(total));
  if (payload == nullptr) return false;
  ExpectWrites(payload, total);
  // An error code is never equal to the total, so one comparison answers for both.
  if (ZSTD_decompress(payload, total, Store.frame, Store.frame_length) != total) return false;
  FillDataTable();
  return true;
}

int FindEntryByName(const char* name) {
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    if (std::strcmp(Store.names[i], name) == 0) return static_cast<int>(i);
  }
  return -1;
}

bool InSelectedRelease(const char* text) {
  return std::strncmp(text, HostVersion, HostVersionLength) == 0;
}

const char* SupportedVersions() {
  if (versions_text[0] != '\0') return versions_text;
  release_count = 0;  // texts of an earlier list stay: callers may hold them for the whole run
  GatherReleases();
  SortReleases();
  JoinReleases();
  return versions_text;
}

std::size_t SupportedVersionCount() {
  SupportedVersions();
  return release_count;
}

const char* SupportedVersionAt(std::size_t index) {
  SupportedVersions();
  return index < release_count ? releases[index] : "";
}

void ResetEmbeddedFileStore() {
  std::free(payload);
  payload = nullptr;
  for (std::size_t i = 0; i < release_count; ++i) std::free(releases[i]);
  release_count = 0;
  versions_text[0] = '\0';
}
