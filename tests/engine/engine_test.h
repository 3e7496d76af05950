// What the engine's tests share: a host folder of their own, a payload for one release, and the
// proof after each test that no file was left open.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

class EngineTest : public testing::Test {
 protected:
  EngineTest();
  ~EngineTest() override;

  void TearDown() override;

  // Makes `entries`, followed by the release's locations.txt with the delivered values, the payload
  // and selects that release.
  void Load(std::vector<TestEntry> entries, const std::string& release = "1.8.19");

  // Disposes of the first entry of that name into the host folder.
  int Dispose(const std::string& name) const;

  // The host folder as the engine gets it, with its separator, and what stands in it.
  const char* host() const { return host_.c_str(); }
  std::string operator/(const std::string& below) const { return host_ + below; }

  // All files below the host folder: relative path to content, without the folders.
  std::map<std::string, std::string> Files() const;

  // Where the delivered release puts things.
  static constexpr char kTools[] = "hardware/tools/";
  static constexpr char kCores[] = "hardware/quirlo/avr/cores/";
  static constexpr char kLibraries[] = "hardware/quirlo/avr/libraries/";

 private:
  TempDir dir_;
  std::string host_;
  std::unique_ptr<TestStore> store_;  // outlives the open archive, which refers to its memory
  std::size_t open_files_;
};

// Takes the right to change what stands in a folder from everybody but root, and gives it back.
class ScopedReadOnlyFolder {
 public:
  explicit ScopedReadOnlyFolder(const std::string& path);
  ~ScopedReadOnlyFolder();
  ScopedReadOnlyFolder(const ScopedReadOnlyFolder&) = delete;
  ScopedReadOnlyFolder& operator=(const ScopedReadOnlyFolder&) = delete;

 private:
  std::string path_;
};

// `size` bytes that no compression makes smaller, the same ones every time.
std::string Noise(std::size_t size);
