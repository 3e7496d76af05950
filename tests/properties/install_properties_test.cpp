// What must hold of every install, whatever the payload and the host: it leaves exactly what the
// rules say, changes nothing outside the host folder, and a second one changes nothing but times.
#include <FL/Fl_Check_Browser.H>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>

#include "engine/command_line_install.h"
#include "engine/file_disposition.h"
#include "engine/host_preferences.h"
#include "engine/install_error.h"
#include "engine/library_query.h"
#include "engine/library_removal.h"
#include "engine/writers.h"
#include "packager/payload_plan.h"
#include "packager/refusal.h"
#include "platform/text.h"
#include "recognition/identify_arduino.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "tests/properties/forked_case.h"
#include "tests/properties/install_model.h"
#include "tests/properties/random_host.h"
#include "tests/properties/random_payload.h"
#include "tests/properties/watched_calls.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"
#include "wizard/program_start.h"

namespace fs = std::filesystem;

namespace {

enum Figure {
  kEntries,
  kAliases,
  kWritten,
  kObjects,
  kRemoved,
  kPassedOver,
  kFailed,
  kUnvisited,
  kInstalls,
  kCompleted,
  kWizard,
  kRefused,
  kChanges
};

// How an install is run: as the program without a window, or entry by entry with the library ticks
// and the last steps of the wizard. A table without a criteria file can't be recognised, so its
// release is selected by the test. Every entry, whatever happened to those before it, shows what
// one alone does.
enum class Mode { kProgram, kLoop, kWizard, kEveryEntry };

// The bytes that come to a descriptor while the object lives.
class ScopedCapture {
 public:
  explicit ScopedCapture(int descriptor)
      : descriptor_(descriptor), kept_(dup(descriptor)), file_(memfd_create("captured", 0)) {
    std::fflush(nullptr);
    dup2(file_, descriptor_);
  }
  ~ScopedCapture() { Restore(); }
  ScopedCapture(const ScopedCapture&) = delete;
  ScopedCapture& operator=(const ScopedCapture&) = delete;

  std::string Text() {
    std::fflush(nullptr);
    std::string text(static_cast<std::size_t>(lseek(file_, 0, SEEK_END)), '\0');
    const ssize_t count = pread(file_, text.data(), text.size(), 0);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return text;
  }

 private:
  void Restore() {
    std::fflush(nullptr);
    dup2(kept_, descriptor_);
    close(kept_);
    close(file_);
  }

  int descriptor_;
  int kept_;
  int file_;
};

std::size_t OpenDescriptors() {
  const fs::directory_iterator list("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(list), end(list)));
}

// A file's content with its mode and the time of its last change.
std::string Described(const std::string& path, const std::string& content) {
  struct stat status {};
  lstat(path.c_str(), &status);
  return content + "\nmode " + std::to_string(status.st_mode) + " at " +
         std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec);
}

// All that an archive's directory says but for times, in its order.
std::string ArchiveTable(const std::string& path) {
  zip_t* archive = zip_open(path.c_str(), ZIP_RDONLY, nullptr);
  if (archive == nullptr) return "none";
  std::string table;
  for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
    zip_stat_t record;
    zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &record);
    table += std::string(record.name) + " " + std::to_string(record.size) + " " +
             std::to_string(record.comp_size) + " " + std::to_string(record.crc) + " " +
             std::to_string(record.comp_method) + "\n";
  }
  zip_discard(archive);
  return table;
}

class InstallCase {
 public:
  InstallCase(Random* random, Mode mode) : random_(*random), mode_(mode) {
    for (const char* folder : {"/home", "/work", "/host", "/host-2"}) {
      fs::create_directories(dir_.path() + folder);
    }
    WriteFile(dir_ / "host-2/lib/version.txt", "beside the host");
    WriteFile(dir_ / "beside", "beside the host");
    if (chdir((dir_ / "work").c_str()) != 0) throw std::runtime_error("chdir failed");
    setenv("HOME", (dir_ / "home").c_str(), 1);
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME"}) unsetenv(name);
    request_.host_folder = host() + (IsSilent() ? "\\" : "/");
  }

  std::string host() const { return dir_ / "host"; }
  const std::string& path() const { return dir_.path(); }
  InstallRequest& request() { return request_; }

  // Ticks about two of three libraries of the payload.
  void TickLibraries(const std::vector<TestEntry>& entries) {
    request_.libraries.emplace();
    list_ = std::make_unique<Fl_Check_Browser>(0, 0, 100, 100);
    std::set<std::string> known;
    for (const TestEntry& entry : entries) {
      const std::size_t slash = entry.name.find('/', 10);
      if (!entry.name.starts_with("libraries/") || slash == std::string::npos) continue;
      const std::string library = entry.name.substr(10, slash - 10);
      if (library.empty() || library.size() > 255 || !known.insert(library).second) continue;
      const bool ticked = !random_.OneIn(3);
      list_->add(library.c_str(), ticked ? 1 : 0);
      if (ticked) request_.libraries->insert(library);
    }
    LibraryList = list_.get();
  }

  // Preferences where the program looks: in the host, in the home folder, in both or nowhere.
  void MakePreferenceFiles() {
    if (random_.OneIn(2))
      WriteFile(host() + "/portable/preferences.txt", MakePreferences(&random_));
    if (random_.OneIn(2)) WriteFile(preferences(), MakePreferences(&random_));
  }

  CaseReport Check(const std::vector<TestEntry>& entries) {
    const TestStore store(entries, mode_ != Mode::kProgram);
    Run(entries, "first install");
    const ModelDisk after = ReadDisk(host());
    const std::map<std::string, std::string> tables = Tables(after);
    const std::map<std::string, std::string> around = Around();
    Run(entries, "second install");
    if (mode_ == Mode::kEveryEntry) return report_;  // what was in the way may be gone
    const ModelDisk again = ReadDisk(host());
    ModelDisk expected = after;
    for (const auto& [jar, members] : after.jars) expected.rewritten.insert(jar);
    Report("the second install changed", Differences(expected, again));
    report_.Expect(Tables(again) == tables, "the second install changed an archive's directory");
    report_.Expect(Around() == around, "the second install changed what lies around the host");
    return report_;
  }

  CaseReport& report() { return report_; }

 private:
  bool IsSilent() const { return mode_ == Mode::kProgram || mode_ == Mode::kLoop; }
  WalkEnd End() const {
    if (mode_ == Mode::kEveryEntry) return WalkEnd::kEveryEntry;
    return IsSilent() ? WalkEnd::kProgram : WalkEnd::kWizard;
  }

  std::string preferences() const { return dir_ / "home/.local/share/Arduino15/preferences.txt"; }

  void Report(const std::string& what, const std::vector<std::string>& differences) {
    for (const std::string& difference : differences) {
      report_.problems.push_back(what + ": " + difference);
    }
  }

  std::map<std::string, std::string> Tables(const ModelDisk& disk) const {
    std::map<std::string, std::string> tables;
    for (const auto& [jar, members] : disk.jars) tables[jar] = ArchiveTable(host() + "/" + jar);
    return tables;
  }

  // Everything outside the host folder, with times and modes.
  std::map<std::string, std::string> Around() const {
    std::map<std::string, std::string> around;
    for (const auto& [name, content] : ReadTree(dir_.path())) {
      if (name.starts_with("host/")) continue;
      around[name] = Described(dir_ / name, content);
    }
    return around;
  }

  void Run(const std::vector<TestEntry>& entries, const std::string& which) {
    ModelDisk expected = ReadDisk(host());
    expected.rewritten.clear();
    const ModelRun predicted = PredictInstall(entries, request_, End(), &expected);
    const bool fails = predicted.failed;
    std::map<std::string, std::string> around = Around();
    const int version = VersionNumber();
    std::string home_preferences = fs::exists(preferences()) ? ReadFile(preferences()) : "";
    if (mode_ == Mode::kWizard && !fails) PredictLastSteps(version, &expected, &home_preferences);

    ForgetEarlierRun();
    const std::size_t open_before = OpenDescriptors();
    {
      ScopedCapture output(STDOUT_FILENO);
      ScopedCapture error(STDERR_FILENO);
      int status = 0;
      {
        const ScopedWatch watch;
        status = IsSilent() ? RunSilently() : RunEntryByEntry(predicted, entries);
        CheckChanges(watch.changed(), which);
      }
      if (IsSilent()) {
        const std::string words = fails ? "Error: " + predicted.errors.back() + "\n" : "";
        const std::string said = error.Text();
        report_.Expect(status == (fails ? 1 : 0), which + " ended with " + std::to_string(status));
        report_.Expect(said == words, which + " said <" + said + "> for <" + words + ">");
        report_.Expect(output.Text().empty(), which + " wrote to the standard output");
      }
    }
    CheckDescriptors(open_before, which);
    Report(which, Differences(expected, ReadDisk(host())));
    if (mode_ == Mode::kWizard && fs::exists(preferences())) {
      report_.Expect(ReadFile(preferences()) == home_preferences, which + ": other preferences");
      around[preferences().substr(dir_.path().size() + 1)] =
          Described(preferences(), home_preferences);
    }
    report_.Expect(Around() == around, which + " changed what lies around the host");
    Count(predicted, entries, fails);
  }

  int VersionNumber() const {
    int major = 0;
    int minor = 0;
    int patch = 0;
    std::sscanf(request_.release.c_str(), "%d.%d.%d", &major, &minor, &patch);
    return major * 10000 + minor * 100 + patch;
  }

  void PredictLastSteps(int version, ModelDisk* disk, std::string* home_preferences) const {
    const auto portable = disk->files.find("portable/preferences.txt");
    if (version >= 10600 && portable != disk->files.end()) {
      portable->second = PredictPreferences(portable->second);
    } else if (version >= 10600 && fs::exists(preferences())) {
      *home_preferences = PredictPreferences(*home_preferences);
    }
    PredictLibraryRemoval(request_, disk);
  }

  // What the end of the earlier run's process has done.
  static void ForgetEarlierRun() {
    if (OpenArchive.handle != nullptr) zip_discard(OpenArchive.handle);
    OpenArchive.handle = nullptr;
    ResetInstallError();
  }

  int RunSilently() {
    if (mode_ == Mode::kLoop) {
      FormatBounded(HostFolder, sizeof HostFolder, "%s", request_.host_folder.c_str());
      SelectRelease(request_.release.c_str());
      return RunCommandLineInstall();
    }
    std::string program = "quirloduino";
    std::string argument = "--dir=" + host();
    char* arguments[] = {program.data(), argument.data(), nullptr};
    return StartProgram(2, arguments);
  }

  // The pump's work without its widgets. Every entry's own result must be the predicted one, and
  // the counts of all results make up the payload.
  int RunEntryByEntry(const ModelRun& predicted, const std::vector<TestEntry>& entries) {
    FormatBounded(HostFolder, sizeof HostFolder, "%s", request_.host_folder.c_str());
    SelectRelease(request_.release.c_str());
    std::size_t counts[3] = {};  // failed, nothing to do, written
    std::size_t visited = 0;
    while (visited < entries.size() && (counts[0] == 0 || mode_ == Mode::kEveryEntry)) {
      const int result = DisposeEntry(HostFolder, static_cast<std::uint32_t>(visited));
      const std::size_t kind = result < 0 ? 0 : result == 0 ? 1 : 2;
      ++counts[kind];
      const std::string& name = entries[visited].name;
      if (visited >= predicted.outcomes.size()) {
        report_.problems.push_back("went on to the entry " + name);
        return 1;
      }
      report_.Expect(result <= 1 && kind == KindOf(predicted.outcomes[visited]),
                     "the entry " + name + " gave " + std::to_string(result));
      report_.Expect(InstallErrorText() == predicted.errors[visited],
                     "after the entry " + name + " the words were <" + InstallErrorText() +
                         "> for <" + predicted.errors[visited] + ">");
      ++visited;
    }
    report_.Expect(visited == predicted.outcomes.size(), "not every entry was visited");
    report_.Expect(counts[0] + counts[1] + counts[2] + (entries.size() - visited) == entries.size(),
                   "the counts don't make up the payload");
    if (counts[0] != 0 && mode_ != Mode::kEveryEntry) return 1;
    report_.Expect(CloseOpenArchive(), "the last archive did not close");
    if (mode_ == Mode::kEveryEntry) return 0;
    UpdatePreferences(HostFolder, VersionNumber());
    RemoveOldLibraries(HostFolder);
    return 0;
  }

  static std::size_t KindOf(Outcome outcome) {
    switch (outcome) {
      case Outcome::kFailed:
        return 0;
      case Outcome::kRemoved:
      case Outcome::kPassedOver:
        return 1;
      case Outcome::kWrittenFile:
      case Outcome::kWrittenObject:
        break;
    }
    return 2;
  }

  void CheckChanges(const std::vector<std::string>& changed, const std::string& which) {
    report_.figures[kChanges] += changed.size();
    for (const std::string& path : changed) {
      const bool is_inside = path.starts_with(host() + "/");
      const bool is_preferences = mode_ == Mode::kWizard && path == preferences();
      report_.Expect(is_inside || is_preferences, which + " went for " + path);
    }
  }

  // Nothing stays open but the folder that the command line named and an archive that no plain file
  // followed: both end with the process.
  void CheckDescriptors(std::size_t before, const std::string& which) {
    const std::size_t meant =
        (mode_ == Mode::kProgram ? 1U : 0U) + (OpenArchive.handle != nullptr ? 1U : 0U);
    report_.Expect(OpenDescriptors() == before + meant, which + " left descriptors open");
  }

  void Count(const ModelRun& predicted, const std::vector<TestEntry>& entries, bool fails) {
    auto& figures = report_.figures;
    for (const Outcome outcome : predicted.outcomes) {
      figures[kWritten] += outcome == Outcome::kWrittenFile;
      figures[kObjects] += outcome == Outcome::kWrittenObject;
      figures[kRemoved] += outcome == Outcome::kRemoved;
      figures[kPassedOver] += outcome == Outcome::kPassedOver;
      figures[kFailed] += outcome == Outcome::kFailed;
    }
    for (const TestEntry& entry : entries) {
      figures[kAliases] += entry.name.find(" --> ") != std::string::npos;
    }
    figures[kEntries] += entries.size();
    figures[kUnvisited] += entries.size() - predicted.outcomes.size();
    figures[kInstalls] += 1;
    figures[kCompleted] += fails ? 0 : 1;
    figures[kWizard] += mode_ == Mode::kWizard;
  }

  Random& random_;
  Mode mode_;
  TempDir dir_;
  InstallRequest request_;
  std::unique_ptr<Fl_Check_Browser> list_;
  CaseReport report_;
};

std::vector<TestEntry> EntriesOf(const Tree& tree) {
  std::vector<TestEntry> entries;
  for (const auto& [name, content] : tree) entries.push_back({name, content});
  return entries;
}

CaseReport RunTreeCase(std::uint64_t seed) {
  Random random(seed);
  const Mode mode = random.OneIn(2) ? Mode::kProgram : Mode::kWizard;
  RandomTree tree = MakeRandomTree(&random);
  InstallCase install(&random, mode);
  install.request().release = tree.release;
  install.request().locations = tree.locations;
  MakeRandomHost(&random, install.host(), install.request(), EntriesOf(tree.files),
                 mode == Mode::kProgram ? HostJars::kSound : HostJars::kAny);
  tree.files[tree.release + "/WINDOWS/directory_criteria.txt"] =
      MakeCriteria(&random, install.host(), install.request(), EntriesOf(tree.files));

  const std::string folder = install.path() + "/tree";
  for (const auto& [name, content] : tree.files) WriteFile(folder + "/" + name, content);
  std::vector<TestEntry> entries;
  try {
    for (const PlannedEntry& entry : PlanPayload(folder).entries) {
      entries.push_back({entry.name, entry.size == 0 ? "" : tree.files.at(entry.source)});
    }
  } catch (const Refusal& refusal) {
    install.report().figures[kRefused] = 1;
    return install.report();
  }
  if (mode == Mode::kWizard) {
    install.TickLibraries(entries);
    install.MakePreferenceFiles();
  }
  return install.Check(entries);
}

CaseReport RunTableCase(std::uint64_t seed) {
  Random random(seed);
  const Mode mode = random.Of(std::vector<Mode>{Mode::kLoop, Mode::kWizard, Mode::kEveryEntry});
  const RandomTable table = MakeRandomTable(&random);
  InstallCase install(&random, mode);
  install.request().release = table.release;
  install.request().locations = table.locations;
  MakeRandomHost(&random, install.host(), install.request(), table.entries, HostJars::kAny);
  if (mode != Mode::kLoop) {
    if (random.OneIn(2)) install.TickLibraries(table.entries);
    install.MakePreferenceFiles();
  }
  return install.Check(table.entries);
}

void Print(const char* what, const RunReport& run) {
  const auto& f = run.figures;
  const auto number = [&](Figure figure) { return static_cast<unsigned long long>(f[figure]); };
  std::printf(
      "harden: properties of %s: %zu cases from seed %llu (%llu refused by the packager), "
      "%llu installs (%llu as the wizard's), %llu without a failure; %llu entries (%llu aliases): "
      "%llu files and %llu objects written, %llu removals, %llu passed over, %llu failed, %llu not "
      "reached; %llu changes of the disk watched\n",
      what, run.cases, static_cast<unsigned long long>(run.first_seed), number(kRefused),
      number(kInstalls), number(kWizard), number(kCompleted), number(kEntries), number(kAliases),
      number(kWritten), number(kObjects), number(kRemoved), number(kPassedOver), number(kFailed),
      number(kUnvisited), number(kChanges));
}

// The figures' own sum, and proof that the cases reach what they are for.
void ExpectSoundFigures(const RunReport& run) {
  const auto& f = run.figures;
  EXPECT_EQ(f[kWritten] + f[kObjects] + f[kRemoved] + f[kPassedOver] + f[kFailed] + f[kUnvisited],
            f[kEntries]);
  if (run.cases < 100) return;
  for (const Figure figure : {kAliases, kWritten, kObjects, kRemoved, kPassedOver, kUnvisited,
                              kCompleted, kFailed, kWizard, kChanges}) {
    EXPECT_GT(f[figure], 0U) << "figure " << figure;
  }
}

TEST(InstallProperties, HoldForRandomTreesThatThePackagerTakes) {
  const RunReport run = RunCases(CaseCount(120, 3000), RunTreeCase);
  ExpectSoundFigures(run);
  EXPECT_LT(run.figures[kRefused] * 10, run.cases) << "too many trees are refused";
  Print("installs of packed trees", run);
}

TEST(InstallProperties, HoldForRandomTablesThatNoPackagerMakes) {
  const RunReport run = RunCases(CaseCount(120, 3000), RunTableCase);
  ExpectSoundFigures(run);
  Print("installs of odd tables", run);
}

}  // namespace
