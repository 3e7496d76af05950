// Links in the old libraries that an install from the wizard removes at its end.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "engine/library_removal.h"
#include "store/host_selection.h"
#include "tests/support/arduino_host.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

namespace fs = std::filesystem;

namespace {

class HardenOldLibraryLink : public testing::Test {
 protected:
  HardenOldLibraryLink() {
    SelectRelease("1.8.19");
    fs::create_directories(old_);
    WriteFile(dir_ / "outside/deep/file", "somebody's");
  }

  TestStore store_{ControlEntries1819()};
  TempDir dir_;
  std::string libraries_ = dir_ / "host/hardware/quirlo/avr/libraries/";
  std::string old_ = libraries_ + "openGLCD";
};

TEST_F(HardenOldLibraryLink, ToAFileGoesAndTheFileStays) {
  fs::create_symlink(dir_ / "outside/deep/file", old_ + "/link");
  RemoveOldLibraries((dir_ / "host/").c_str());
  EXPECT_FALSE(fs::exists(old_));
  EXPECT_EQ(ReadFile(dir_ / "outside/deep/file"), "somebody's");
}

// What counts as a folder is what a look through the link finds: the removal goes in and empties
// it. Only links that somebody has put into one of the six folders are followed so.
TEST_F(HardenOldLibraryLink, ToAFolderIsFollowedAndTheFolderIsEmptied) {
  fs::create_directory_symlink(dir_ / "outside", old_ + "/link");
  RemoveOldLibraries((dir_ / "host/").c_str());
  EXPECT_TRUE(fs::is_symlink(old_ + "/link"));
  EXPECT_TRUE(fs::is_empty(dir_ / "outside"));
}

// The removal ends all the same: it empties what the loop leads round to, and every round is
// deeper.
TEST_F(HardenOldLibraryLink, ToItsOwnFolderEnds) {
  WriteFile(old_ + "/file", "old");
  fs::create_directory_symlink(".", old_ + "/link");
  RemoveOldLibraries((dir_ / "host/").c_str());
  EXPECT_FALSE(fs::exists(old_ + "/file"));
}

}  // namespace
