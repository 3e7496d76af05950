#include "recognition/version_file.h"

#include <cstddef>
#include <cstring>

namespace {

constexpr std::size_t kLineSize = 128;
constexpr char kNightly[] = "nightly";

}  // namespace

VersionFile ReadVersionFile(std::FILE* file, ArduinoVersion* version) {
  version->beta = 0;
  if (std::fscanf(file, "%d.%d.%d", &version->major, &version->minor, &version->patch) == 3) {
    return VersionFile::kRead;
  }
  std::rewind(file);
  char line[kLineSize];
  if (std::fgets(line, sizeof line, file) == nullptr) return VersionFile::kMalformed;
  if (std::strncmp(line, kNightly, std::strlen(kNightly)) == 0) return VersionFile::kNightly;
  version->patch = 0;
  return std::sscanf(line, "PR-beta%d.%d-BUILD-%d", &version->major, &version->minor,
                     &version->beta) == 3
             ? VersionFile::kRead
             : VersionFile::kMalformed;
}
