// The inner parts of the program over a store of the delivered shape: 13,570 names in the delivered
// order of groups. Contents are tiny but for the control files, since none of these parts reads
// another. Prints a table of times; judges nothing.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "engine/host_preferences.h"
#include "recognition/check_criteria.h"
#include "recognition/cksum.h"
#include "recognition/identify_arduino.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "store/location_keys.h"
#include "tests/support/arduino_host.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

namespace {

constexpr std::size_t kEntryCount = 13570;
constexpr int k1819 = 10819;

// As the table orders them: by text, not by number.
constexpr std::array<const char*, 6> kReleases = {"1.8.13", "1.8.15", "1.8.16",
                                                  "1.8.19", "1.8.5",  "1.8.9"};

void Add(std::vector<TestEntry>* entries, const std::string& prefix, int count) {
  for (int i = 0; i < count; ++i) {
    const std::string folder = "part" + std::to_string(i / 40);
    entries->push_back({prefix + folder + "/source_file_" + std::to_string(i) + ".h", "x"});
  }
}

// A release's classes stand on both sides of its control files.
void AddControlTree(std::vector<TestEntry>* entries, const std::string& release) {
  Add(entries, release + "/WINDOWS/arduino-core.jar/processing/app/", 8);
  entries->push_back({release + "/WINDOWS/directory_criteria.txt", kCriteria1819});
  entries->push_back({release + "/WINDOWS/locations.txt", kLocations});
  Add(entries, release + "/WINDOWS/pde.jar/processing/app/", 54);
}

std::vector<TestEntry> DeliveredShape() {
  std::vector<TestEntry> entries;
  Add(&entries, "quirlo_", 17);
  Add(&entries, "arm/arm-none-eabi/include/", 1726);
  for (int i = 0; i < 368; ++i) {
    const std::string name = entries[17 + static_cast<std::size_t>(i)].name;
    entries.push_back({"arm/alias/" + std::to_string(i) + " --> " + name, ""});
  }
  Add(&entries, "cdcacm", 2);
  for (const char* release : kReleases) AddControlTree(&entries, release);
  for (const char* release : kReleases) Add(&entries, std::string(release) + "/libraries/", 965);
  Add(&entries, "examples/", 99);
  Add(&entries, "cores/quirlo4/", 401);
  // The remainder is the common libraries, but for the last twelve and the marker.
  Add(&entries, "libraries/", static_cast<int>(kEntryCount - entries.size() - 13));
  for (const char* release : kReleases) {
    entries.push_back({std::string(release) + "/boards.txt", "boards"});
    entries.push_back({std::string(release) + "/platform.txt", "platform"});
  }
  entries.push_back({"quirloduino.txt", "1.60-beta5"});
  if (entries.size() != kEntryCount) throw std::logic_error("the shape has another count");
  return entries;
}

// The store, and a folder that holds release 1.8.19; made once, before the first measurement.
struct Scene {
  Scene() : store(DeliveredShape()), folder(dir / "arduino"), slash(folder + "/") {
    MakeArduino1819(folder);
    if (IdentifyArduino(slash.c_str()) != k1819) throw std::logic_error("the host isn't known");
  }
  TestStore store;
  TempDir dir;
  std::string folder;
  std::string slash;  // with the separator that recognition wants
};

const Scene& TheScene() {
  static const Scene scene;
  return scene;
}

// The result of a part that was asked for something that is there.
void Expect(benchmark::State& state, bool holds) {
  if (!holds) state.SkipWithError("the part gave another answer");
}

void LookupLocationOfLastKey(benchmark::State& state) {
  TheScene();
  SelectRelease("1.8.19");
  for (auto _ : state) {
    const char* value = LookupLocation("ARDUINO_JAR_FILE2");
    benchmark::DoNotOptimize(value);
    if (value == nullptr) Expect(state, false);
  }
}
BENCHMARK(LookupLocationOfLastKey)->Unit(benchmark::kMicrosecond);

void FindEntryByNameAtLastIndex(benchmark::State& state) {
  TheScene();
  for (auto _ : state) {
    const int index = FindEntryByName("quirloduino.txt");
    benchmark::DoNotOptimize(index);
    if (index != static_cast<int>(kEntryCount) - 1) Expect(state, false);
  }
}
BENCHMARK(FindEntryByNameAtLastIndex)->Unit(benchmark::kMicrosecond);

// From a member's last piece to a whole class file; a check reads 4,356 bytes at a time.
void CksumUpdateOverBytes(benchmark::State& state) {
  const std::string bytes(static_cast<std::size_t>(state.range(0)), 'q');
  std::uint32_t crc = 0;
  for (auto _ : state) {
    crc = CksumUpdate(crc, bytes.data(), bytes.size());
    benchmark::DoNotOptimize(crc);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(CksumUpdateOverBytes)->Arg(7)->Arg(64)->Arg(4356)->Arg(66872);

void CheckCriteriaOfMatchingFolder(benchmark::State& state) {
  const Scene& scene = TheScene();
  const int index = FindEntryByName("1.8.19/WINDOWS/directory_criteria.txt");
  for (auto _ : state) {
    if (CheckCriteria(scene.slash.c_str(), static_cast<std::uint32_t>(index)) != 1) {
      Expect(state, false);
    }
  }
}
BENCHMARK(CheckCriteriaOfMatchingFolder)->Unit(benchmark::kMicrosecond);

void IdentifyArduinoOfMatchingFolder(benchmark::State& state) {
  const Scene& scene = TheScene();
  for (auto _ : state) {
    if (IdentifyArduino(scene.slash.c_str()) != k1819) Expect(state, false);
  }
}
BENCHMARK(IdentifyArduinoOfMatchingFolder)->Unit(benchmark::kMicrosecond);

// All names are walked, and each release reads the version file that isn't there.
void IdentifyArduinoOfEmptyFolder(benchmark::State& state) {
  const std::string folder = TheScene().dir.path() + "/";
  for (auto _ : state) {
    if (IdentifyArduino(folder.c_str()) != 0) Expect(state, false);
  }
  SelectRelease("1.8.19");
}
BENCHMARK(IdentifyArduinoOfEmptyFolder)->Unit(benchmark::kMicrosecond);

// A file of a person who has used the IDE for some years, in the host's own portable folder.
std::string Preferences(const char* board) {
  std::string text;
  for (int i = 0; i < 300; ++i) {
    text += "custom.setting_" + std::to_string(i) + "=some value of it\r\n";
    if (i == 120) text += std::string("board=") + board + "\r\n";
  }
  return text + "target_package=quirlo\r\ntarget_platform=avr\r\n";
}

void UpdatePreferencesThatAreRight(benchmark::State& state) {
  const Scene& scene = TheScene();
  WriteFile(scene.folder + "/portable/preferences.txt", Preferences("quirlo41"));
  for (auto _ : state) UpdatePreferences(scene.slash.c_str(), k1819);
  Expect(state, ReadFile(scene.folder + "/portable/preferences.txt") == Preferences("quirlo41"));
}
BENCHMARK(UpdatePreferencesThatAreRight)->Unit(benchmark::kMicrosecond);

// The foreign file is put back between the measurements.
void UpdatePreferencesOfForeignBoard(benchmark::State& state) {
  const Scene& scene = TheScene();
  const std::string path = scene.folder + "/portable/preferences.txt";
  const std::string foreign = Preferences("uno");
  for (auto _ : state) {
    state.PauseTiming();
    WriteFile(path, foreign);
    state.ResumeTiming();
    UpdatePreferences(scene.slash.c_str(), k1819);
  }
  Expect(state, ReadFile(path) == Preferences("quirlo31"));
}
BENCHMARK(UpdatePreferencesOfForeignBoard)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
