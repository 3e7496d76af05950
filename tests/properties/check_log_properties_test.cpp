// What must hold of every check of a folder, whatever it holds and whatever the criteria ask: the
// verdict and the log are those that the lines' own truth gives, the same twice, and nothing is
// changed or left open.
#include <FL/Fl_Text_Buffer.H>
#include <gtest/gtest.h>
#include <unistd.h>
#include <zip.h>

#include <cstring>
#include <filesystem>
#include <iterator>

#include "recognition/check_log.h"
#include "recognition/identify_arduino.h"
#include "store/host_selection.h"
#include "tests/properties/forked_case.h"
#include "tests/properties/random_host.h"
#include "tests/properties/random_source.h"
#include "tests/properties/watched_calls.h"
#include "tests/support/jars.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

namespace fs = std::filesystem;

namespace {

enum Figure { kReleases, kLines, kMatches, kDowngrades, kLogBytes };

struct Version {
  int major;
  int minor;
  int patch;
  int beta;
  bool operator==(const Version&) const = default;
};

// A version text and what it says: a version, or the words of its refusal.
struct VersionText {
  std::string text;
  Version version;
  const char* refusal;
};
const std::vector<VersionText> kVersionTexts = {
    {"1.8.19\n", {1, 8, 19, 0}, nullptr},
    {"1.8.19-beta2", {1, 8, 19, 0}, nullptr},
    {"\n 1.8.5", {1, 8, 5, 0}, nullptr},
    {"1.7.11\n", {1, 7, 11, 0}, nullptr},
    {"PR-beta1.9-BUILD-120\n", {1, 9, 0, 120}, nullptr},
    {"nightly 2026\n", {}, " Nightly builds are not supported\n"},
    {"1.8\n", {}, " incorrect version format\n"},
    {"junk", {}, " incorrect version format\n"},
    {"", {}, " incorrect version format\n"}};

struct Release {
  std::string name;
  Version version;
  bool is_versioned;
};
const std::vector<Release> kReleaseNames = {
    {"1.8.19", {1, 8, 19, 0}, true},     {"1.8.5", {1, 8, 5, 0}, true},
    {"1.7.11", {1, 7, 11, 0}, true},     {"1.9.0-beta120", {1, 9, 0, 120}, true},
    {"2.0.7 extra", {2, 0, 7, 0}, true}, {"9 lives", {}, false}};

struct Marker {
  const char* text;
  const char* refused_as;  // null for one that lets the install go ahead
};
const std::vector<Marker> kMarkers = {
    {"1.60-beta5", nullptr}, {"1.59\n", nullptr}, {"junk", nullptr}, {"", nullptr},
    {"1.100", nullptr},      {"1.61", "1.61"},    {"1.7\n", "1.70"}, {" 2.5-beta1", "2.50"}};

const std::vector<std::string> kNames = {
    "lib",  "arduino.exe",     "two words",  "lib/a.jar", "lib/b.jar", "lib/c.jar",
    "%s%n", "lib/version.txt", "lib/deeper", "missing",   ""};
const std::vector<std::string> kMembers = {"a/Base.class", "two words.class", "%s", "missing"};

bool IsSoundArchive(const std::string& path) {
  zip_t* archive = zip_open(path.c_str(), ZIP_CHECKCONS, nullptr);
  if (archive == nullptr) return false;
  zip_discard(archive);
  return true;
}

class CheckCase {
 public:
  explicit CheckCase(Random* random) : random_(*random) {
    host_ = dir_ / "host/";
    fs::create_directories(host_ + "lib/deeper");
    if (random_.OneIn(2)) fs::create_directories(host_ + "two words");
    if (random_.OneIn(2)) WriteFile(host_ + "arduino.exe", "x");
    if (random_.OneIn(2)) WriteFile(host_ + "%s%n", "x");
    MakeJars();
    version_ = random_.Of(kVersionTexts);
    has_version_ = !random_.OneIn(6);
    if (has_version_) WriteFile(host_ + "lib/version.txt", version_.text);
    marker_ = random_.Of(kMarkers);
    has_marker_ = random_.OneIn(2);
    if (has_marker_) WriteFile(host_ + "lib/quirloduino.txt", marker_.text);
    setenv("HOME", dir_.path().c_str(), 1);
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME"}) unsetenv(name);
    MakeAppPreferences();
  }

  CaseReport Check() {
    std::vector<TestEntry> entries;
    std::string expected = note_ + "Directory: " + host_ + "\n";
    std::string winner;
    int number = 0;
    for (std::size_t i = random_.Below(5); i > 0; --i) {
      const Release release = random_.Of(kReleaseNames);
      const auto [criteria, log, holds] = MakeCriteriaFile(release);
      entries.push_back({release.name + "/WINDOWS/directory_criteria.txt", criteria});
      ++report_.figures[kReleases];
      if (!winner.empty()) continue;  // the walk has ended
      expected += "  Checking Arduino " + release.name + ":\n" + log;
      if (!holds) {
        expected += "    Does not match Arduino " + release.name + "\n";
        continue;
      }
      expected += "    Found Arduino " + release.name + "\n";
      if (has_marker_ && marker_.refused_as != nullptr) {
        ++report_.figures[kDowngrades];
        expected += std::string("     Quirloduino ") + marker_.refused_as +
                    " is installed in this copy of Arduino !!!\n"
                    "     This installer can not be used to downgrade, because it\n"
                    "     is not able to anticipate and delete files added by future\n"
                    "     versions.  To downgrade, please extract a fresh copy of\n"
                    "     Arduino, then run this installer on the fresh copy.\n";
        continue;
      }
      winner = release.name;
      number = release.version.major * 10000 + release.version.minor * 100 + release.version.patch;
      ++report_.figures[kMatches];
    }
    Compare(entries, expected, winner, number);
    return report_;
  }

 private:
  struct CriteriaFile {
    std::string text;
    std::string log;
    bool holds;
  };
  struct Line {
    std::string text;
    std::string log;
    bool holds;
  };

  void MakeJars() {
    for (const char* jar : {"lib/a.jar", "lib/b.jar"}) {
      if (random_.OneIn(5)) continue;
      JarMembers members = {{"other", "other"}};
      for (const std::string& member : kMembers) {
        if (member != "missing" && !random_.OneIn(4)) members[member] = random_.Bytes(9000);
      }
      WriteJar(host_ + jar, members);
      jars_[jar] = members;
    }
    WriteFile(host_ + "lib/c.jar", random_.OneIn(2) ? "" : random_.Bytes(200));
  }

  void MakeAppPreferences() {
    if (!random_.OneIn(3)) return;
    const bool is_app = random_.OneIn(2);
    WriteFile(dir_ / "ArduinoData/preferences.txt",
              std::string("board=uno\nhardwarepath=C:\\Program Files\\") +
                  (is_app ? "WindowsApps\\ArduinoLLC" : "Arduino") + "\\x\n");
    if (!is_app) return;
    note_ =
        "Quirloduino can not work with the Windows App\n"
        "version of Arduino.  The regular installer &\n"
        "non-admin ZIP versions are supported.\n\n";
  }

  // One line, what the log says of it in this host, and whether it holds.
  Line DirLine(const std::string& name) const {
    const bool holds = fs::is_directory(host_ + name);
    return {"dir:" + name, "    dir: \"" + name + "\" " + (holds ? " present\n" : " missing\n"),
            holds};
  }
  Line FileLine(const std::string& name) const {
    const bool holds = fs::is_regular_file(host_ + name);
    return {"file:" + name, "    file: \"" + name + "\" " + (holds ? " present\n" : " missing\n"),
            holds};
  }
  Line ZipLine(const std::string& name) const {
    const bool holds = IsSoundArchive(host_ + name);
    return {"zipfile:" + name,
            "    zip file: \"" + name + "\" " + (holds ? " present\n" : " missing or corrupt\n"),
            holds};
  }
  Line VersionLine(const Version& wanted) const {
    Line line = {"version:lib/version.txt", "    version: \"lib/version.txt\" ", false};
    if (!has_version_) {
      line.log += " file missing\n";
    } else if (version_.refusal != nullptr) {
      line.log += version_.refusal;
    } else if (version_.version == wanted) {
      line.log += " version matches\n";
      line.holds = true;
    } else {
      const Version& found = version_.version;
      line.log += " wrong version: " + std::to_string(found.major) + "." +
                  std::to_string(found.minor) + "." + std::to_string(found.patch);
      if (found.major == 1 && found.minor == 7) {
        line.log += "\n    Arduinorg software is not supported\n";
      }
    }
    return line;
  }
  Line ChecksumLine() {
    const std::string jar = random_.Of({"lib/a.jar", "lib/b.jar", "lib/c.jar", "lib/none.jar"});
    const std::string member = random_.Of(kMembers);
    const auto found = jars_.find(jar);
    const bool has_member = found != jars_.end() && found->second.contains(member);
    const std::string content = has_member ? found->second.at(member) : "";
    const std::uint32_t size = static_cast<std::uint32_t>(content.size());
    const std::uint32_t sum = Checksum(content);

    std::vector<std::pair<std::uint32_t, std::uint32_t>> pairs;
    for (std::size_t i = random_.Below(3); i > 0; --i) {
      pairs.emplace_back(random_.OneIn(2) ? sum : 1, random_.OneIn(2) ? size : size + 1);
    }
    if (!random_.OneIn(4)) pairs.emplace_back(sum, size);
    if (random_.OneIn(30)) pairs.resize(random_.OneIn(2) ? 15 : 16, {1, size});
    Line line = {"zipcksum:" + jar, "    java: \"" + jar + "\" ", false};
    bool listed_size = false;
    for (const auto& [listed_sum, listed] : pairs) {
      line.text +=
          random_.Of({" ", "   "}) + std::to_string(listed_sum) + " " + std::to_string(listed);
      listed_size = listed_size || listed == size;
      line.holds = line.holds || (listed == size && listed_sum == sum);
    }
    const bool is_odd = random_.OneIn(20);
    if (is_odd) line.text += " 5";
    line.text += " " + member;
    if (is_odd || pairs.empty() || pairs.size() > 15) {
      line.holds = false;
      line.log += " INTERNAL ERROR, This is never supposed to happen! :(\n";
      return line;
    }
    if (!IsSoundArchive(host_ + jar)) {
      line.log += "missing\n";
    } else {
      line.log += "object: \"" + member + "\" ";
      if (!has_member) {
        line.log += "missing\n";
      } else if (!listed_size) {
        line.log += "wrong size, unsupported Arduino version\n";
      } else {
        line.log +=
            line.holds ? "checksum match\n" : "checksum mismatch, unsupported Arduino version\n";
      }
    }
    line.holds = line.holds && has_member;
    return line;
  }
  Line SomeLine(const Version& wanted) {
    const std::string name = random_.Of(kNames);
    switch (random_.Below(8)) {
      case 0:
        return DirLine(random_.OneIn(2) ? "lib" : name);
      case 1:
        return FileLine(random_.OneIn(2) ? "lib/c.jar" : name);
      case 2:
        return ZipLine(random_.OneIn(2) ? "lib/a.jar" : name);
      case 3:
      case 4:
      case 5:
        return ChecksumLine();
      case 6:
        return VersionLine(wanted);
      default:
        return {random_.Of({"", "# comment", " dir:missing", "DIR:missing", "java:x", "%s%n", "dir",
                            "\r"}),
                "", true};
    }
  }

  CriteriaFile MakeCriteriaFile(const Release& release) {
    // Nothing is read for a name that doesn't begin with three numbers.
    CriteriaFile file = {"", "", release.is_versioned};
    for (std::size_t i = random_.Below(6); i > 0; --i) {
      const bool is_first = file.text.empty();  // where most files have their version line
      const Line line =
          is_first && random_.OneIn(2) ? VersionLine(release.version) : SomeLine(release.version);
      ++report_.figures[kLines];
      file.text += line.text + (i > 1 || random_.OneIn(2) ? "\n" : "");
      if (!file.holds) continue;  // the rest of the file is not read
      file.log += line.log;
      file.holds = line.holds;
    }
    return file;
  }

  void Compare(const std::vector<TestEntry>& entries, const std::string& expected,
               const std::string& winner, int number) {
    const TestStore store(entries);
    Fl_Text_Buffer log(64);
    LogBuffer = &log;
    const auto before = ReadTree(dir_.path());
    for (const char* which : {"first", "second"}) {
      const std::size_t open_before = OpenDescriptors();
      const ScopedWatch watch;
      const int result = IdentifyArduino(host_.c_str());
      report_.Expect(watch.changed().empty(), std::string(which) + " check changes the disk");
      report_.Expect(OpenDescriptors() == open_before, "a check leaves descriptors open");
      report_.Expect(result == number, "the check gave " + std::to_string(result));
      report_.Expect(HostVersion == winner, std::string("the release is ") + HostVersion);
      char* text = log.text();
      report_.Expect(text == expected,
                     std::string(which) + " log is\n" + text + "for\n" + expected);
      report_.figures[kLogBytes] += std::strlen(text);
      std::free(text);
    }
    LogBuffer = nullptr;
    report_.Expect(ReadTree(dir_.path()) == before, "the checks changed a file");
  }

  static std::size_t OpenDescriptors() {
    const fs::directory_iterator list("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(list), end(list)));
  }

  Random& random_;
  TempDir dir_;
  std::string host_;
  std::string note_;
  VersionText version_;
  Marker marker_;
  bool has_version_ = false;
  bool has_marker_ = false;
  std::map<std::string, JarMembers> jars_;
  CaseReport report_;
};

TEST(CheckLogProperties, VerdictAndLogAreThoseOfTheLinesAndTheSameTwice) {
  const RunReport run = RunCases(CaseCount(200, 4000), [](std::uint64_t seed) {
    Random random(seed);
    return CheckCase(&random).Check();
  });
  const auto& f = run.figures;
  if (run.cases >= 100) {
    for (const Figure figure : {kMatches, kDowngrades}) EXPECT_GT(f[figure], 0U) << figure;
  }
  std::printf(
      "harden: properties of the check log: %zu cases from seed %llu, each checked twice; %llu "
      "releases with %llu lines, %llu matches, %llu refused as downgrades, %llu bytes of log\n",
      run.cases, static_cast<unsigned long long>(run.first_seed),
      static_cast<unsigned long long>(f[kReleases]), static_cast<unsigned long long>(f[kLines]),
      static_cast<unsigned long long>(f[kMatches]), static_cast<unsigned long long>(f[kDowngrades]),
      static_cast<unsigned long long>(f[kLogBytes]));
}

}  // namespace
