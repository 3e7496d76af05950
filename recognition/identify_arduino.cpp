#include "recognition/identify_arduino.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/text.h"
#include "recognition/check_criteria.h"
#include "recognition/check_log.h"
#include "recognition/downgrade_guard.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "store/payload_format.h"

namespace {

// The release that the entry's name stands for, cut to 63 characters; false for any other entry.
bool ReleaseOfCriteriaFile(const char* name, char (&release)[kHostVersionSize]) {
  const char* ending = std::strstr(name, kCriteriaFileEnding);
  if (ending == nullptr) return false;
  const std::size_t length =
      std::min(static_cast<std::size_t>(ending - name), kHostVersionSize - 1);
  std::memcpy(release, name, length);
  release[length] = '\0';
  return true;
}

// Computed without a sign, which may wrap: a release name of absurd numbers is nobody's, but it
// must not end the program.
int ReleaseNumber(const char* release) {
  int major = 0;
  int minor = 0;
  int patch = 0;
  std::sscanf(release, "%d.%d.%d", &major, &minor, &patch);
  return static_cast<int>(static_cast<unsigned>(major) * 10000U +
                          static_cast<unsigned>(minor) * 100U + static_cast<unsigned>(patch));
}

void BeginLog(const char* dir) {
  LogClear();
  NoteWindowsApp();
  LogPrintf("Directory: %s\n", dir);
}

int AnswerNone() {
  SelectRelease("");
  return 0;
}

}  // namespace

int IdentifyArduino(const char* dir) {
  // The empty text is the list of drives, no folder. Joined with it, each path of the criteria
  // would be relative, and the folder that the process happens to be in judged instead.
  if (dir[0] == '\0') return RefuseFolder(dir, "  No folder is selected\n");
  BeginLog(dir);
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    char release[kHostVersionSize];
    if (!ReleaseOfCriteriaFile(Store.names[i], release)) continue;
    LogPrintf("  Checking Arduino %s:\n", release);
    if (CheckCriteria(dir, i) == 0) {
      LogPrintf("    Does not match Arduino %s\n", release);
      continue;
    }
    LogPrintf("    Found Arduino %s\n", release);
    // A folder with a newer package goes through the remaining releases like any other.
    if (CheckDowngrade(dir) == 0) continue;
    SelectRelease(release);
    return ReleaseNumber(HostVersion);
  }
  return AnswerNone();
}

int RefuseFolder(const char* dir, const char* reason) {
  BeginLog(dir);
  LogPrintf("%s", reason);
  return AnswerNone();
}
