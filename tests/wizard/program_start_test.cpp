// What the start of a silent install leaves in the program's state.
#include "wizard/program_start.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/files.h"
#include "store/host_selection.h"
#include "tests/support/arduino_host.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

namespace {

int Start(std::string argument) {
  char program[] = "quirloduino";
  char* arguments[] = {program, argument.data(), nullptr};
  return StartProgram(2, arguments);
}

// The program itself holds the folder open to its end.
class SilentStart : public testing::Test {
 protected:
  void TearDown() override {
    if (NamedFolder != nullptr) CloseDirectory(NamedFolder);
    NamedFolder = nullptr;
  }
};

TEST_F(SilentStart, BrowsedFolderIsTheArgumentAndHostFolderHasTheSeparator) {
  const TempDir host;
  MakeArduino1819(host.path());
  const TestStore store(SmallPayload1819(), false);  // the program loads it
  EXPECT_EQ(Start("--dir=" + host.path()), 0);
  EXPECT_EQ(BrowsedFolder, host.path());
  EXPECT_EQ(HostFolder, host.path() + "\\");
  EXPECT_EQ(HostVersionNumber, 10819);
}

// For the whole run, so that nobody takes it away meanwhile where the system minds open folders.
TEST_F(SilentStart, NamedFolderStaysOpen) {
  const TempDir host;
  MakeArduino1819(host.path());
  const TestStore store(SmallPayload1819(), false);  // the program loads it
  ASSERT_EQ(Start("--dir=" + host.path()), 0);
  ASSERT_NE(NamedFolder, nullptr);
  int names = 0;
  while (NextDirectoryEntry(NamedFolder) != nullptr) ++names;
  EXPECT_GE(names, 4);  // ".", "..", "lib" and "arduino.exe" at least
}

// The longest is recognised with its whole text. Nothing can be written: there is no room for
// names.
TEST_F(SilentStart, FolderOf258CharactersIsRecognised) {
  const TempDir dir;
  std::string path = dir.path();
  while (path.size() < 158) path += "/" + std::string(50, 'h');
  path += "/" + std::string(258 - path.size() - 1, 'h');
  MakeArduino1819(path);
  const TestStore store(SmallPayload1819(), false);  // the program loads it
  testing::internal::CaptureStderr();
  EXPECT_EQ(Start("--dir=" + path), 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr().substr(0, 7), "Error: ");
  EXPECT_EQ(BrowsedFolder, path);
  EXPECT_EQ(HostFolder, path + "\\");
  EXPECT_EQ(HostVersionNumber, 10819);
}

}  // namespace
