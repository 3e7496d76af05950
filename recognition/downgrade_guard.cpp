#include "recognition/downgrade_guard.h"

#include <cstdio>
#include <cstring>

#include "platform/files.h"
#include "platform/special_folders.h"
#include "platform/text.h"
#include "recognition/check_log.h"
#include "store/package_version.h"
#include "store/payload_format.h"

namespace {

// The number at the head of a text, single precision on purpose: both sides of the comparison are
// read alike. Everything from the first character that can't belong to a number is ignored.
bool ScanNumber(const char* text, float* number) {
  return std::sscanf(text, "%f", number) == 1;
}

// Blanks ahead of a decimal number and the characters within. Words that a system's reader takes
// for numbers besides ("infinity", hexadecimal) are no version, and must not refuse a folder.
constexpr char kDecimalCharacters[] = " \t\r\n\v\f+-.0123456789eE";

bool ReadInstalledNumber(const char* dir, float* number) {
  char text[1284];  // first the path, then the marker's first line
  FormatBounded(text, sizeof text, "%slib/%s", dir, kVersionMarkerName);
  std::FILE* file = OpenFile(text, "r");
  if (file == nullptr) return false;
  const char* line = std::fgets(text, sizeof text, file);
  std::fclose(file);
  if (line == nullptr) return false;
  text[std::strspn(text, kDecimalCharacters)] = '\0';
  return ScanNumber(text, number);
}

bool NamesWindowsApp(std::FILE* file) {
  char piece[32768];
  while (std::fgets(piece, sizeof piece, file) != nullptr) {
    if (std::strstr(piece, "hardwarepath") == nullptr) continue;
    if (std::strstr(piece, "WindowsApps\\ArduinoLLC") != nullptr) return true;
  }
  return false;
}

}  // namespace

int CheckDowngrade(const char* dir) {
  float own;
  float installed;
  if (!ScanNumber(kPackageVersion, &own)) return 1;
  if (!ReadInstalledNumber(dir, &installed)) return 1;
  // Sum and comparison in double precision, so that the margin isn't lost in rounding.
  if (!(static_cast<double>(installed) > static_cast<double>(own) + 0.0001)) return 1;
  LogPrintf("     Quirloduino %.2f is installed in this copy of Arduino !!!\n",
            static_cast<double>(installed));
  LogPrintf("     This installer can not be used to downgrade, because it\n");
  LogPrintf("     is not able to anticipate and delete files added by future\n");
  LogPrintf("     versions.  To downgrade, please extract a fresh copy of\n");
  LogPrintf("     Arduino, then run this installer on the fresh copy.\n");
  return 0;
}

void NoteWindowsApp() {
  char documents[kSpecialFolderSize];
  if (!SpecialFolderPath(SpecialFolder::kPersonal, documents)) return;
  char path[260];
  FormatBounded(path, sizeof path, "%s\\ArduinoData\\preferences.txt", documents);
  std::FILE* file = OpenFile(path, "r");
  if (file == nullptr) return;
  const bool found = NamesWindowsApp(file);
  std::fclose(file);
  if (!found) return;
  LogPrintf("Quirloduino can not work with the Windows App\n");
  LogPrintf("version of Arduino.  The regular installer &\n");
  LogPrintf("non-admin ZIP versions are supported.\n\n");
}
