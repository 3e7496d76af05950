#include "tests/engine/engine_test.h"

#include <sys/stat.h>

#include <filesystem>
#include <random>
#include <utility>

#include "engine/file_disposition.h"
#include "engine/install_error.h"
#include "engine/writers.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "tests/support/arduino_host.h"

namespace fs = std::filesystem;

namespace {

std::size_t OpenFiles() {
  const fs::directory_iterator descriptors("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

}  // namespace

EngineTest::EngineTest() : host_(dir_ / "host/"), open_files_(OpenFiles()) {
  fs::create_directory(host_);
  fs::permissions(host_, fs::perms::all);  // also for a test that drops root's rights
  AntivirusHint = false;
  ResetInstallError();
}

EngineTest::~EngineTest() {
  CloseOpenArchive();
}

void EngineTest::TearDown() {
  CloseOpenArchive();
  EXPECT_EQ(OpenFiles(), open_files_) << "a file was left open";
}

void EngineTest::Load(std::vector<TestEntry> entries, const std::string& release) {
  CloseOpenArchive();
  store_.reset();
  entries.push_back({release + "/WINDOWS/locations.txt", kLocations});
  store_ = std::make_unique<TestStore>(std::move(entries));
  SelectRelease(release.c_str());
}

int EngineTest::Dispose(const std::string& name) const {
  const int index = FindEntryByName(name.c_str());
  EXPECT_GE(index, 0) << name;
  return DisposeEntry(host(), static_cast<std::uint32_t>(index));
}

std::map<std::string, std::string> EngineTest::Files() const {
  std::map<std::string, std::string> files = ReadTree(host_);
  std::erase_if(files, [](const auto& file) { return file.first.back() == '/'; });
  return files;
}

ScopedReadOnlyFolder::ScopedReadOnlyFolder(const std::string& path) : path_(path) {
  chmod(path_.c_str(), 0555);
}

ScopedReadOnlyFolder::~ScopedReadOnlyFolder() {
  chmod(path_.c_str(), 0777);
}

std::string Noise(std::size_t size) {
  std::minstd_rand generator;
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(generator() >> 8);
  return bytes;
}
