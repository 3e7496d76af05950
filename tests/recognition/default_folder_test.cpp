// The search for a copy of Arduino to open with. Every folder that is looked at, and every one that
// is recognised, is seen on its way to the real functions (linked with --wrap); so are the
// questions for special folders, which a test can answer itself.
#include "recognition/default_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "platform/special_folders.h"
#include "platform/text.h"
#include "store/host_selection.h"
#include "tests/support/arduino_host.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

namespace {

// "" is a folder that the system doesn't have; a folder without an answer is the system's own.
std::map<SpecialFolder, std::string> answers;
std::vector<SpecialFolder> asked;
std::vector<std::string> looked_at;
std::vector<std::string> recognised;

}  // namespace

// The names that the linker gives to the wrapped functions, which are those of the compiler's own
// encoding.
bool RealSpecialFolderPath(SpecialFolder folder,
                           char* path) __asm__("__real__Z17SpecialFolderPath13SpecialFolderPc");
bool WrappedSpecialFolderPath(SpecialFolder folder,
                              char* path) __asm__("__wrap__Z17SpecialFolderPath13SpecialFolderPc");
bool RealDirectoryExists(const char* path) __asm__("__real__Z15DirectoryExistsPKc");
bool WrappedDirectoryExists(const char* path) __asm__("__wrap__Z15DirectoryExistsPKc");
int RealIdentifyArduino(const char* dir) __asm__("__real__Z15IdentifyArduinoPKc");
int WrappedIdentifyArduino(const char* dir) __asm__("__wrap__Z15IdentifyArduinoPKc");

bool WrappedSpecialFolderPath(SpecialFolder folder, char* path) {
  asked.push_back(folder);
  const auto answer = answers.find(folder);
  if (answer == answers.end()) return RealSpecialFolderPath(folder, path);
  FormatBounded(path, kSpecialFolderSize, "%s", answer->second.c_str());
  return !answer->second.empty();
}

bool WrappedDirectoryExists(const char* path) {
  looked_at.emplace_back(path);
  return RealDirectoryExists(path);
}

int WrappedIdentifyArduino(const char* dir) {
  recognised.emplace_back(dir);
  return RealIdentifyArduino(dir);
}

namespace {

// A payload of six releases, of which made hosts match 1.8.19 alone.
std::vector<TestEntry> SixReleases() {
  std::vector<TestEntry> entries = ControlEntries1819();
  for (const char* release : {"1.8.5", "1.8.9", "1.8.13", "1.8.15", "1.8.16"}) {
    entries.push_back(
        {std::string(release) + "/WINDOWS/directory_criteria.txt", "version:lib/version.txt\n"});
  }
  return entries;
}

// The candidates below a base folder, in order.
std::vector<std::string> Below(const std::string& base) {
  std::vector<std::string> candidates;
  for (const char* name : {"arduino/", "arduino-1.8.5/", "arduino-1.8.9/", "arduino-1.8.13/",
                           "arduino-1.8.15/", "arduino-1.8.16/", "arduino-1.8.19/"}) {
    candidates.push_back(base + name);
  }
  return candidates;
}

std::vector<std::string> operator+(std::vector<std::string> left,
                                   const std::vector<std::string>& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

class DefaultFolderTest : public ::testing::Test {
 protected:
  DefaultFolderTest() {
    answers = {{SpecialFolder::kProgramFilesX86, ""},
               {SpecialFolder::kProgramFiles, ""},
               {SpecialFolder::kDesktopDirectory, ""},
               {SpecialFolder::kPersonal, ""}};
    asked.clear();
    looked_at.clear();
    recognised.clear();
  }
  ~DefaultFolderTest() override { answers.clear(); }

  // A special folder of the user that exists, without a trailing separator.
  std::string Have(SpecialFolder folder, const std::string& name) {
    fs::create_directories(dir_ / name);
    answers[folder] = dir_ / name;
    return dir_ / name;
  }

  static std::string Search() {
    looked_at.clear();
    recognised.clear();
    return DefaultFolder();
  }

  TempDir dir_;
  TestStore store_{SixReleases()};
};

// ---- where nothing is found -------------------------------------------------------------------

TEST_F(DefaultFolderTest, WithoutSpecialFoldersItIsTheDriveAfterItsCandidates) {
  EXPECT_EQ(Search(), "C:/");
  EXPECT_THAT(looked_at, ElementsAreArray(Below("C:/")));
  EXPECT_THAT(recognised, IsEmpty());
  EXPECT_EQ(HostVersionNumber, 0);
}

TEST_F(DefaultFolderTest, WithoutAnArduinoItIsTheDocumentsFolderInTheProgramsForm) {
  const std::string documents = Have(SpecialFolder::kPersonal, "Documents");
  answers[SpecialFolder::kPersonal] = dir_.path() + "\\Documents";
  EXPECT_EQ(Search(), documents + "/");
}

TEST_F(DefaultFolderTest, DocumentsFolderThatDoesNotExistGivesTheDrive) {
  answers[SpecialFolder::kPersonal] = dir_ / "Documents";
  EXPECT_EQ(Search(), "C:/");
}

TEST_F(DefaultFolderTest, StepsAreTakenInOrder) {
  const std::string x86 = Have(SpecialFolder::kProgramFilesX86, "x86");
  const std::string programs = Have(SpecialFolder::kProgramFiles, "programs");
  const std::string desktop = Have(SpecialFolder::kDesktopDirectory, "Desktop");
  const std::string documents = Have(SpecialFolder::kPersonal, "Documents");
  asked.clear();
  EXPECT_EQ(Search(), documents + "/");
  EXPECT_THAT(asked, ElementsAre(SpecialFolder::kProgramFilesX86, SpecialFolder::kProgramFiles,
                                 SpecialFolder::kPersonal, SpecialFolder::kDesktopDirectory,
                                 SpecialFolder::kPersonal, SpecialFolder::kPersonal));
  EXPECT_THAT(looked_at,
              ElementsAreArray(Below(x86 + "/") + Below(programs + "/") +
                               Below(dir_.path() + "/Downloads/") + Below(desktop + "/") +
                               Below(documents + "/") + Below("C:/") +
                               std::vector<std::string>{documents + "/"}));
}

TEST_F(DefaultFolderTest, SameFolderTwiceIsSearchedTwice) {
  const std::string programs = Have(SpecialFolder::kProgramFiles, "programs");
  answers[SpecialFolder::kProgramFilesX86] = programs;
  EXPECT_EQ(Search(), "C:/");
  EXPECT_THAT(looked_at,
              ElementsAreArray(Below(programs + "/") + Below(programs + "/") + Below("C:/")));
}

// ---- downloads --------------------------------------------------------------------------------

TEST_F(DefaultFolderTest, DownloadsFolderIsTheDocumentsPathWithTheWordReplaced) {
  answers[SpecialFolder::kPersonal] = "C:\\Users\\me\\Documents";
  Search();
  looked_at.resize(7);
  EXPECT_THAT(looked_at, ElementsAreArray(Below("C:/Users/me/Downloads/")));
}

TEST_F(DefaultFolderTest, EverythingBehindTheWordIsLost) {
  answers[SpecialFolder::kPersonal] = "D:\\Documents\\me\\files";
  Search();
  looked_at.resize(7);
  EXPECT_THAT(looked_at, ElementsAreArray(Below("D:/Downloads/")));
}

TEST_F(DefaultFolderTest, FirstOfTwoWordsIsReplaced) {
  answers[SpecialFolder::kPersonal] = "/a/My Documents/Documents";
  Search();
  looked_at.resize(7);
  EXPECT_THAT(looked_at, ElementsAreArray(Below("/a/My Downloads/")));
}

TEST_F(DefaultFolderTest, PathWithoutTheWordSkipsTheStep) {
  const std::string personal = Have(SpecialFolder::kPersonal, "documents");
  EXPECT_EQ(Search(), personal + "/");
  EXPECT_THAT(looked_at, ElementsAreArray(Below(personal + "/") + Below("C:/") +
                                          std::vector<std::string>{personal + "/"}));
}

// ---- where something is found -----------------------------------------------------------------

TEST_F(DefaultFolderTest, CopyInDownloadsWinsOverOneOnTheDesktop) {
  Have(SpecialFolder::kPersonal, "Documents");
  const std::string desktop = Have(SpecialFolder::kDesktopDirectory, "Desktop");
  MakeArduino1819(dir_ / "Downloads/arduino-1.8.13");
  MakeArduino1819(desktop + "/arduino");
  EXPECT_EQ(Search(), dir_ / "Downloads/arduino-1.8.13/");
  EXPECT_EQ(HostVersionNumber, 10819);
  EXPECT_STREQ(HostVersion, "1.8.19");
}

TEST_F(DefaultFolderTest, CopyInProgramFilesWinsOverTheUsersOwn) {
  const std::string programs = Have(SpecialFolder::kProgramFiles, "programs");
  Have(SpecialFolder::kPersonal, "Documents");
  MakeArduino1819(programs + "/arduino-1.8.19");
  MakeArduino1819(dir_ / "Downloads/arduino");
  EXPECT_EQ(Search(), programs + "/arduino-1.8.19/");
}

TEST_F(DefaultFolderTest, PlainFolderWinsOverANumberedOne) {
  const std::string desktop = Have(SpecialFolder::kDesktopDirectory, "Desktop");
  MakeArduino1819(desktop + "/arduino");
  MakeArduino1819(desktop + "/arduino-1.8.19");
  EXPECT_EQ(Search(), desktop + "/arduino/");
}

TEST_F(DefaultFolderTest, LowerNumberWinsOverAHigherOneWhateverTheFoldersHold) {
  const std::string desktop = Have(SpecialFolder::kDesktopDirectory, "Desktop");
  MakeArduino1819(desktop + "/arduino-1.8.19");
  MakeArduino1819(desktop + "/arduino-1.8.9");
  EXPECT_EQ(Search(), desktop + "/arduino-1.8.9/");
}

TEST_F(DefaultFolderTest, FolderThatFailsItsCriteriaIsPassedOver) {
  const std::string desktop = Have(SpecialFolder::kDesktopDirectory, "Desktop");
  WriteFile(desktop + "/arduino/lib/version.txt", "1.0.1\n");
  fs::create_directories(desktop + "/arduino-1.8.16");
  MakeArduino1819(desktop + "/arduino-1.8.19");
  EXPECT_EQ(Search(), desktop + "/arduino-1.8.19/");
  EXPECT_THAT(recognised, ElementsAre(desktop + "/arduino/", desktop + "/arduino-1.8.16/",
                                      desktop + "/arduino-1.8.19/"));
}

TEST_F(DefaultFolderTest, StateHoldsTheLastCandidateTriedNotTheFolderReturned) {
  const std::string documents = Have(SpecialFolder::kPersonal, "Documents");
  fs::create_directories(documents + "/arduino-1.8.5");
  HostVersionNumber = 10816;
  EXPECT_EQ(Search(), documents + "/");
  EXPECT_EQ(HostVersionNumber, 0);
  EXPECT_STREQ(HostVersion, "");
}

TEST_F(DefaultFolderTest, OnThisSystemTheDesktopsOwnFoldersAreSearched) {
  answers.clear();
  const ScopedEnvironment home("HOME", dir_.path());
  const ScopedEnvironment config("XDG_CONFIG_HOME", dir_ / "config");
  WriteFile(dir_ / "config/user-dirs.dirs",
            "XDG_DOCUMENTS_DIR=\"$HOME/My Documents\"\nXDG_DESKTOP_DIR=\"$HOME/Table\"\n");
  fs::create_directories(dir_ / "My Documents");
  EXPECT_EQ(Search(), dir_ / "My Documents/");
  EXPECT_THAT(looked_at, ElementsAreArray(Below(dir_ / "My Downloads/") + Below(dir_ / "Table/") +
                                          Below(dir_ / "My Documents/") + Below("C:/") +
                                          std::vector<std::string>{dir_ / "My Documents/"}));
  MakeArduino1819(dir_ / "Table/arduino-1.8.19");
  EXPECT_EQ(Search(), dir_ / "Table/arduino-1.8.19/");
}

TEST_F(DefaultFolderTest, PathThatDoesNotFitIsCutAndFailsToExist) {
  answers[SpecialFolder::kDesktopDirectory] = "/" + std::string(255, 'd');
  EXPECT_EQ(Search(), "C:/");
  looked_at.resize(2);
  EXPECT_THAT(looked_at, ElementsAre("/" + std::string(255, 'd') + "/ar",
                                     "/" + std::string(255, 'd') + "/ar"));
}

// ---- the parts --------------------------------------------------------------------------------

std::string Normalized(const std::string& path) {
  char text[kFolderSize];
  FormatBounded(text, sizeof text, "%s", path.c_str());
  NormalizeFolder(text);
  return text;
}

TEST(NormalizeFolder, TurnsBackslashesAndAppendsOneSeparator) {
  EXPECT_EQ(Normalized("C:\\Users\\me"), "C:/Users/me/");
  EXPECT_EQ(Normalized("C:\\Users\\me\\"), "C:/Users/me/");
  EXPECT_EQ(Normalized("/home/me/"), "/home/me/");
  EXPECT_EQ(Normalized("/home//"), "/home//");
  EXPECT_EQ(Normalized(""), "/");
}

TEST(NormalizeFolder, LongestPathHasNoRoomForASeparator) {
  EXPECT_EQ(Normalized(std::string(258, 'a')), std::string(258, 'a') + "/");
  EXPECT_EQ(Normalized(std::string(259, 'a')), std::string(259, 'a'));
}

TEST_F(DefaultFolderTest, ProbeOfABaseReturnsItsOwnBufferOrNothing) {
  char buffer[kFolderSize];
  FormatBounded(buffer, sizeof buffer, "%s", (dir_ / "base\\").c_str());
  EXPECT_EQ(ProbeBase(buffer), nullptr);
  MakeArduino1819(dir_ / "base/arduino-1.8.15");
  FormatBounded(buffer, sizeof buffer, "%s", (dir_ / "base\\").c_str());
  EXPECT_EQ(ProbeBase(buffer), buffer);
  EXPECT_EQ(buffer, dir_ / "base/arduino-1.8.15/");
}

}  // namespace
