#include "recognition/check_criteria.h"

#include <zip.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/files.h"
#include "platform/text.h"
#include "recognition/check_log.h"
#include "recognition/cksum.h"
#include "recognition/criteria_line.h"
#include "recognition/version_file.h"
#include "recognition/zipcksum_line.h"

namespace {

constexpr std::size_t kPathSize = 4356;
constexpr std::size_t kFolderLimit = 4315;  // characters of the folder that enter the path
constexpr std::size_t kJoinedLimit = 4354;  // characters of folder and argument together
constexpr std::size_t kShownSize = 1024;

// What one check works with. The path buffer holds the folder, then the line's argument behind it,
// and serves as the read buffer once a jar's member is open.
struct Check {
  ArduinoVersion expected;
  char path[kPathSize];
  std::size_t folder_length;
  char shown[kShownSize];
};

bool ScanExpected(const char* name, ArduinoVersion* version) {
  if (std::sscanf(name, "%d.%d.%d-beta%d", &version->major, &version->minor, &version->patch,
                  &version->beta) == 4) {
    return true;
  }
  version->beta = 0;
  return std::sscanf(name, "%d.%d.%d", &version->major, &version->minor, &version->patch) == 3;
}

// Copies the argument, which has no terminator, to the shown name and behind the folder.
void TakeArgument(Check* check, const char* text, std::size_t length) {
  const std::size_t shown = std::min(length, kShownLimit);
  std::memcpy(check->shown, text, shown);
  check->shown[shown] = '\0';
  const std::size_t joined = std::min(length, kJoinedLimit - check->folder_length);
  std::memcpy(check->path + check->folder_length, text, joined);
  check->path[check->folder_length + joined] = '\0';
}

bool CheckDirLine(Check* check) {
  LogPrintf("    dir: \"%s\" ", check->shown);
  if (!DirectoryExists(check->path)) {
    LogPrintf(" missing\n");
    return false;
  }
  LogPrintf(" present\n");
  return true;
}

bool CheckFileLine(Check* check) {
  LogPrintf("    file: \"%s\" ", check->shown);
  std::FILE* file = OpenFile(check->path, "r");
  if (file == nullptr) {
    LogPrintf(" missing\n");
    return false;
  }
  LogPrintf(" present\n");
  std::fclose(file);
  return true;
}

bool CheckVersionLine(Check* check) {
  LogPrintf("    version: \"%s\" ", check->shown);
  std::FILE* file = OpenFile(check->path, "r");
  if (file == nullptr) {
    LogPrintf(" file missing\n");
    return false;
  }
  ArduinoVersion found;
  const VersionFile result = ReadVersionFile(file, &found);
  std::fclose(file);
  if (result == VersionFile::kNightly) LogPrintf(" Nightly builds are not supported\n");
  if (result == VersionFile::kMalformed) LogPrintf(" incorrect version format\n");
  if (result != VersionFile::kRead) return false;

  if (found == check->expected) {
    LogPrintf(" version matches\n");
    return true;
  }
  // No line feed, on purpose: the word of IdentifyArduino runs on in the same line.
  LogPrintf(" wrong version: %d.%d.%d", found.major, found.minor, found.patch);
  // These two numbers are all that tells the other vendor's fork.
  if (found.major == 1 && found.minor == 7)
    LogPrintf("\n    Arduinorg software is not supported\n");
  return false;
}

// Null when the archive is missing or fails the library's consistency check.
zip_t* OpenChecked(const char* path) {
  char library_path[kLibraryPathSize];
  if (!LibraryPath(path, library_path, sizeof library_path)) return nullptr;
  return zip_open(library_path, ZIP_CHECKCONS, nullptr);
}

bool CheckZipfileLine(Check* check) {
  LogPrintf("    zip file: \"%s\" ", check->shown);
  zip_t* archive = OpenChecked(check->path);
  if (archive == nullptr) {
    LogPrintf(" missing or corrupt\n");
    return false;
  }
  zip_close(archive);
  LogPrintf(" present\n");
  return true;
}

bool ListsSize(const ZipcksumLine& line, zip_uint64_t size) {
  for (std::size_t i = 0; i < line.count; i += 2) {
    if (line.numbers[i + 1] == size) return true;
  }
  return false;
}

// Checksum and size must stand in the same pair.
bool ListsPair(const ZipcksumLine& line, std::uint32_t checksum, zip_uint64_t size) {
  for (std::size_t i = 0; i < line.count; i += 2) {
    if (line.numbers[i] == checksum && line.numbers[i + 1] == size) return true;
  }
  return false;
}

// Reads the member through `buffer`. False when the library can't read on.
bool ReadChecksum(zip_file_t* member, zip_uint64_t size, char (&buffer)[kPathSize],
                  std::uint32_t* checksum) {
  std::uint32_t crc = 0;
  zip_uint64_t left = size;
  while (left > 0) {
    const zip_int64_t count =
        zip_fread(member, buffer, std::min<zip_uint64_t>(left, sizeof buffer));
    if (count < 0) return false;
    if (count == 0) break;
    crc = CksumUpdate(crc, buffer, static_cast<std::size_t>(count));
    left -= static_cast<zip_uint64_t>(count);
  }
  // With the size of the directory record, not the count of bytes read.
  *checksum = CksumFinish(crc, size);
  return true;
}

// The test of one member in an open archive. `buffer` is where the member's name stands, and is
// overwritten once the member is open.
bool CheckMember(zip_t* archive, const ZipcksumLine& line, char (&buffer)[kPathSize]) {
  LogPrintf("object: \"%s\" ", line.member);
  const zip_int64_t located = zip_name_locate(archive, line.member, 0);
  if (located < 0) {
    LogPrintf("missing\n");
    return false;
  }
  const auto index = static_cast<zip_uint64_t>(located);
  zip_stat_t record;
  // Size first: a member of a foreign size is refused without being decompressed.
  if (zip_stat_index(archive, index, 0, &record) != 0 || !ListsSize(line, record.size)) {
    LogPrintf("wrong size, unsupported Arduino version\n");
    return false;
  }
  zip_file_t* member = zip_fopen_index(archive, index, 0);
  if (member == nullptr) {
    LogPrintf("unable to read\n");
    return false;
  }
  std::uint32_t checksum = 0;
  const bool read = ReadChecksum(member, record.size, buffer, &checksum);
  zip_fclose(member);
  if (!read) return false;  // without a further word
  if (!ListsPair(line, checksum, record.size)) {
    LogPrintf("checksum mismatch, unsupported Arduino version\n");
    return false;
  }
  LogPrintf("checksum match\n");
  return true;
}

// Takes its line apart by itself: the archive's name ends at the first blank, for the log as for
// the path.
bool CheckZipcksumLine(Check* check, const char* text, std::size_t length) {
  const std::size_t joined = std::min(length, kPathSize - 1 - check->folder_length);
  char* argument = check->path + check->folder_length;
  std::memcpy(argument, text, joined);
  argument[joined] = '\0';

  std::size_t shown = 0;
  while (shown < length && shown < kShownSize - 1 && text[shown] != ' ' && text[shown] != '\0') {
    check->shown[shown] = text[shown];
    ++shown;
  }
  check->shown[shown] = '\0';
  LogPrintf("    java: \"%s\" ", check->shown);

  ZipcksumLine line;
  if (!SplitZipcksumLine(argument, &line)) {
    LogPrintf(" INTERNAL ERROR, This is never supposed to happen! :(\n");
    return false;
  }
  zip_t* archive = OpenChecked(check->path);
  if (archive == nullptr) {
    LogPrintf("missing\n");
    return false;
  }
  const bool holds = CheckMember(archive, line, check->path);
  zip_close(archive);
  return holds;
}

struct Test {
  CriteriaKeyword keyword;
  bool (*holds)(Check* check);
};
constexpr Test kTests[] = {{CriteriaKeyword::kDir, CheckDirLine},
                           {CriteriaKeyword::kFile, CheckFileLine},
                           {CriteriaKeyword::kVersion, CheckVersionLine},
                           {CriteriaKeyword::kZipfile, CheckZipfileLine}};

// A line that begins with no keyword holds.
bool LineHolds(Check* check, const CriteriaLine& line) {
  if (line.keyword == CriteriaKeyword::kZipcksum) {
    return CheckZipcksumLine(check, line.argument, line.argument_length);
  }
  for (const Test& test : kTests) {
    if (test.keyword != line.keyword) continue;
    TakeArgument(check, line.argument, line.argument_length);
    return test.holds(check);
  }
  return true;
}

}  // namespace

int CheckCriteriaText(const char* dir, const char* name, const char* text, std::size_t size) {
  Check check;
  if (!ScanExpected(name, &check.expected)) return 0;

  const char* position = text;
  const char* const end = text + size;
  CriteriaLine line;
  while (TakeCriteriaLine(&position, end, &line)) {
    // Anew for each line, as a jar's member may have been read over it.
    check.folder_length =
        std::min(FormatBounded(check.path, kFolderLimit + 1, "%s", dir), kFolderLimit);
    if (!LineHolds(&check, line)) return 0;
  }
  return 1;
}
