// The version that a folder names, against the version that an entry's name expects: any text of
// either. The check holds exactly when a second reading of both, written apart, gives the same four
// numbers; its words are the ones for the case; and IdentifyArduino answers with the release's
// number and name, or with 0 and none. The input's first line is the release, the rest the folder's
// version file.
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>

#include "recognition/check_criteria.h"
#include "recognition/identify_arduino.h"
#include "store/host_selection.h"
#include "tests/fuzz/fuzz_support.h"

namespace {

using Numbers = std::array<int, 4>;  // major, minor, patch, beta
constexpr std::size_t kMostLine = 127;
constexpr char kShown[] = "    version: \"version.txt\" ";

// Reads through a text as the system's scanner does: blanks ahead of a number and its sign belong
// to it, and one that doesn't fit an int keeps its lowest bits.
class Scanner {
 public:
  explicit Scanner(const std::string& text) : text_(text) {}

  bool Word(const char* word) {
    for (; *word != '\0'; ++word, ++at_) {
      if (at_ >= text_.size() || text_[at_] != *word) return false;
    }
    return true;
  }

  bool Number(int* number) {
    at_ = std::min(text_.find_first_not_of(" \t\n\v\f\r", at_), text_.size());
    const std::size_t sign = at_ < text_.size() && (text_[at_] == '+' || text_[at_] == '-') ? 1 : 0;
    std::size_t end = at_ + sign;
    while (end < text_.size() && text_[end] >= '0' && text_[end] <= '9') ++end;
    if (end == at_ + sign) return false;
    *number = static_cast<int>(std::strtol(text_.substr(at_, end - at_).c_str(), nullptr, 10));
    at_ = end;
    return true;
  }

 private:
  std::string text_;
  std::size_t at_ = 0;
};

// The three numbers at the head of a text, and the beta behind them where it is asked for.
std::optional<Numbers> ScanRelease(const std::string& text, bool with_beta) {
  Scanner scanner(text);
  Numbers found{};
  if (!scanner.Number(&found[0]) || !scanner.Word(".") || !scanner.Number(&found[1]) ||
      !scanner.Word(".") || !scanner.Number(&found[2])) {
    return std::nullopt;
  }
  int beta = 0;
  if (with_beta && scanner.Word("-beta") && scanner.Number(&beta)) found[3] = beta;
  return found;
}

std::optional<Numbers> ScanTestBuild(const std::string& line) {
  Scanner scanner(line);
  Numbers found{};
  if (!scanner.Word("PR-beta") || !scanner.Number(&found[0]) || !scanner.Word(".") ||
      !scanner.Number(&found[1]) || !scanner.Word("-BUILD-") || !scanner.Number(&found[3])) {
    return std::nullopt;
  }
  return found;
}

struct Verdict {
  int result;
  std::string log;
};

Verdict Expected(const std::string& release, const std::string& file) {
  const std::optional<Numbers> expected = ScanRelease(release, true);
  if (!expected) return {0, ""};
  std::optional<Numbers> found = ScanRelease(file, false);
  const std::string line = file.substr(0, file.find('\n')).substr(0, kMostLine).c_str();
  if (!found && !file.empty()) {
    if (line.starts_with("nightly")) {
      return {0, std::string(kShown) + " Nightly builds are not supported\n"};
    }
    found = ScanTestBuild(line);
  }
  if (!found) return {0, std::string(kShown) + " incorrect version format\n"};
  if (*found == *expected) return {1, std::string(kShown) + " version matches\n"};
  std::string log = std::string(kShown) + " wrong version: " + std::to_string((*found)[0]) + "." +
                    std::to_string((*found)[1]) + "." + std::to_string((*found)[2]);
  if ((*found)[0] == 1 && (*found)[1] == 7) log += "\n    Arduinorg software is not supported\n";
  return {0, log};
}

void CheckIdentity(const std::string& folder, const std::string& release, bool matches) {
  const int number = IdentifyArduino(folder.c_str());
  Require(matches || (number == 0 && HostVersion[0] == '\0'),
          "a folder of another version is no release");
  if (!matches) return;
  const std::string cut = release.substr(0, 63);
  Require(cut == HostVersion && cut.size() == HostVersionLength,
          "the release is known by its name");
  const std::optional<Numbers> scanned = ScanRelease(cut, false);
  if (!scanned) return;  // the cut went through the numbers
  const Numbers& numbers = *scanned;
  for (std::size_t i = 0; i < 3; ++i) {
    if (numbers[i] < 0 || numbers[i] > 99) return;  // no number of theirs tells such a release
  }
  Require(number == numbers[0] * 10000 + numbers[1] * 100 + numbers[2],
          "a release has the number of its three parts");
}

std::string MakeFolder() {
  setenv("HOME", "/nonexistent", 1);  // nobody's settings may put a note into the log
  return WorkFolder() + "/";
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string folder = MakeFolder();
  const TwoTexts input = CutAtLineFeed(AllOf(data, size));
  const std::string release = input.first.c_str();
  if (release.find("/WINDOWS/directory_criteria.txt") != std::string::npos) return -1;
  const FuzzStore store({{release + "/WINDOWS/directory_criteria.txt", "version:version.txt"}});
  PutFile(folder + "version.txt", input.rest);
  const int descriptor = LowestFreeDescriptor();
  const Verdict expected = Expected(release + "/WINDOWS", input.rest);

  StartLog();
  const int result = CheckCriteria(folder.c_str(), 0);
  Require(result == expected.result, "a folder matches exactly where all four numbers do");
  Require(LogText() == expected.log, "the words are those of the case");
  CheckIdentity(folder, release, expected.result == 1);
  Require(LowestFreeDescriptor() == descriptor, "the file is closed again");
  return 0;
}
