// The line language of the criteria over a small host: any text.
//
// Lines are judged each by itself, so a file holds exactly when each of its lines does, and its
// words are those of its lines up to the first that fails. What a line asks is answered as the disk
// itself answers, asked here a second time; a zipcksum: line holds only when its numbers hold a
// pair of the named member. Nothing stays open.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <string_view>

#include "recognition/check_criteria.h"
#include "recognition/cksum.h"
#include "tests/fuzz/fuzz_support.h"
#include "tests/support/jars.h"

namespace {

constexpr char kRelease[] = "1.8.19/WINDOWS/directory_criteria.txt";
constexpr std::size_t kMostLines = 64;  // of an input, to keep it quick

const JarMembers kMembers = {{"processing/app/Base.class", "the genuine Base"},
                             {"with blank.class", "a name that holds a blank"},
                             {"Empty.class", ""}};

// The folder, with its separator.
std::string MakeHost() {
  const std::string host = WorkFolder() + "/";
  Require(mkdir((host + "lib").c_str(), 0777) == 0 && mkdir((host + "a b").c_str(), 0777) == 0,
          "the work folder is new");
  PutFile(host + "arduino.exe", "the IDE");
  PutFile(host + "lib/version.txt", "1.8.19\n");
  PutFile(host + "lib/other.txt", "1.8.5\n");
  PutFile(host + "lib/fork.txt", "1.7.11\n");
  PutFile(host + "lib/nightly.txt", "nightly\n");
  WriteJar(host + "lib/pde.jar", kMembers);
  const std::string jar = GetFile(host + "lib/pde.jar");
  PutFile(host + "lib/cut.jar", jar.substr(0, jar.size() / 2));
  return host;
}

struct Verdict {
  int result;
  std::string log;
};

Verdict Check(const std::string& host, const std::string& criteria) {
  const FuzzStore store({{kRelease, criteria}});
  StartLog();
  const int result = CheckCriteria(host.c_str(), 0);
  return {result, LogText()};
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

// A path leads out of the host where it holds "..", and what it finds there is no case of this.
bool LeadsOut(const std::string& text) {
  return text.find("..") != std::string::npos;
}

// The path that the system is asked for: a text that ends at a zero, and '\' separates as well.
std::string PathOf(const std::string& host, const std::string& argument) {
  std::string path = host + argument.c_str();
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

bool IsFile(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool IsFolder(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool HasVersion(const std::string& path) {
  return IsFile(path) && GetFile(path) == "1.8.19\n";
}

bool IsSoundJar(const std::string& host, const std::string& path) {
  return IsFile(path) && GetFile(path) == GetFile(host + "lib/pde.jar");
}

std::optional<std::string> Argument(const std::string& line, std::string_view keyword) {
  if (!line.starts_with(keyword)) return std::nullopt;
  return line.substr(keyword.size());
}

// The numbers and the member of a zipcksum: line; none for a malformed one.
struct MemberLine {
  std::string archive;
  std::vector<std::uint32_t> numbers;
  std::string member;
};

// A number as the system's scanner takes it: any white space and a sign belong to it, what stands
// behind its digits is ignored, and one that is too large keeps its lowest 32 bits.
bool ScanNumber(const std::string& text, std::uint32_t* number) {
  std::size_t at = text.find_first_not_of(" \t\n\v\f\r");
  if (at == std::string::npos) return false;
  const std::size_t digits = at + (text[at] == '+' || text[at] == '-' ? 1 : 0);
  if (digits >= text.size() || text[digits] < '0' || text[digits] > '9') return false;
  *number = static_cast<std::uint32_t>(std::strtoul(text.c_str() + at, nullptr, 10));
  return true;
}

std::optional<MemberLine> SplitLine(const std::string& argument) {
  std::string rest = argument.c_str();
  MemberLine line;
  std::size_t blank = rest.find(' ');
  line.archive = rest.substr(0, blank);
  while (blank != std::string::npos) {
    const std::size_t token = rest.find_first_not_of(' ', blank);
    rest = token == std::string::npos ? "" : rest.substr(token);
    if (rest.empty() && !line.numbers.empty()) return std::nullopt;  // nothing behind a number
    std::uint32_t number = 0;
    if (!ScanNumber(rest, &number)) {
      line.member = rest;
      const bool pairs = line.numbers.size() >= 2 && line.numbers.size() % 2 == 0;
      return pairs ? std::optional(line) : std::nullopt;
    }
    line.numbers.push_back(number);
    if (line.numbers.size() == 32) return std::nullopt;
    blank = rest.find(' ');
  }
  return std::nullopt;
}

bool MemberHolds(const std::string& host, const MemberLine& line) {
  if (!IsSoundJar(host, PathOf(host, line.archive))) return false;
  const auto member = kMembers.find(line.member);
  if (member == kMembers.end()) return false;
  const std::string& bytes = member->second;
  const std::uint32_t sum = CksumFinish(CksumUpdate(0, bytes.data(), bytes.size()), bytes.size());
  for (std::size_t i = 0; i < line.numbers.size(); i += 2) {
    if (line.numbers[i] == sum && line.numbers[i + 1] == bytes.size()) return true;
  }
  return false;
}

bool LineHolds(const std::string& host, const std::string& line) {
  if (const auto path = Argument(line, "dir:")) return IsFolder(PathOf(host, *path));
  if (const auto path = Argument(line, "file:")) return IsFile(PathOf(host, *path));
  if (const auto path = Argument(line, "version:")) return HasVersion(PathOf(host, *path));
  if (const auto path = Argument(line, "zipfile:")) return IsSoundJar(host, PathOf(host, *path));
  const auto argument = Argument(line, "zipcksum:");
  if (!argument) return true;
  const std::optional<MemberLine> parts = SplitLine(*argument);
  return parts && MemberHolds(host, *parts);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string host = MakeHost();
  const std::string criteria = AllOf(data, size);
  const std::vector<std::string> lines = LinesOf(criteria);
  if (lines.size() > kMostLines || LeadsOut(criteria)) return -1;
  const int descriptor = LowestFreeDescriptor();

  Verdict expected{1, ""};
  for (const std::string& line : lines) {
    const Verdict alone = Check(host, line);
    Require((alone.result == 1) == LineHolds(host, line), "a line holds as the disk tells");
    const auto argument = Argument(line, "zipcksum:");
    // At the end: the line's own words, which come first, may be anything.
    Require(alone.log.ends_with(" INTERNAL ERROR, This is never supposed to happen! :(\n") ==
                (argument && !SplitLine(*argument)),
            "a malformed line, and no other, is called so");
    expected.log += alone.log;
    expected.result = alone.result;
    if (alone.result == 0) break;
  }
  const Verdict whole = Check(host, criteria);
  Require(whole.result == expected.result, "a file holds exactly when each of its lines does");
  Require(whole.log == expected.log, "its words are those of its lines");
  Require(LowestFreeDescriptor() == descriptor, "every file and archive is closed again");
  return 0;
}
