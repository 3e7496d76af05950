// The Windows sources of platform/, called under Wine through platform_probe.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"
#include "tests/windows/planted_libraries.h"
#include "tests/windows/run_in_wine.h"
#include "tests/windows/without_utf8.h"

namespace fs = std::filesystem;

namespace {

const std::string kFaraway =
    "\xE3\x83\xA6\xE3\x83\xBC\xE3\x82\xB6 \xD0\xBC\xD0\xB8\xD1\x80";  // ユーザ мир
const std::string kNearby = "\xC3\xA9 \xC3\xBC \xC3\x9F";             // é ü ß

using Lines = std::vector<std::string>;

Lines Split(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

Lines Probe(const std::vector<std::string>& arguments,
            const std::string& program = PLATFORM_PROBE) {
  const ProgramResult result = RunProgram(program, arguments);
  EXPECT_EQ(result.status, 0);
  return Split(result.output);
}

// How a folder may be written at its end.
const char* const kEndings[] = {"", "/", "\\", "//", "\\\\", "/\\", "\\/"};

TEST(WindowsFiles, FolderIsFoundWithUpToTwoSeparatorsOfEitherKindBehindIt) {
  const TempDir dir;
  fs::create_directory(dir / "folder");
  std::vector<std::string> arguments;
  for (const char* ending : kEndings) {
    for (const char* operation : {"exists", "stat"}) {
      arguments.push_back(operation);
      arguments.push_back(dir / "folder" + ending);
    }
  }
  Lines expected;
  for (std::size_t i = 0; i < std::size(kEndings); ++i) {
    expected.insert(expected.end(), {"yes", "folder"});
  }
  EXPECT_EQ(Probe(arguments), expected);
}

TEST(WindowsFiles, FileAndMissingPathAreNoFolders) {
  const TempDir dir;
  WriteFile(dir / "file", "12345");
  EXPECT_EQ(Probe({"exists", dir / "file", "exists", dir / "none", "exists", "", "list",
                   dir / "file", "stat", dir / "none", "stat", dir / "file"}),
            (Lines{"no", "no", "no", "no folder", "nothing", "5"}));
}

TEST(WindowsFiles, FolderIsRefusedAsAFile) {
  const TempDir dir;
  EXPECT_EQ(Probe({"read", dir.path(), "read-binary", dir.path(), "write", dir.path()}),
            (Lines{"no, EACCES", "no, EACCES", "no, EACCES"}));
}

TEST(WindowsFiles, FoldersAndFilesAreMadeAndRemoved) {
  const TempDir dir;
  EXPECT_EQ(Probe({"make", dir / "one", "make", dir / "one", "make", dir / "none/two", "write",
                   dir / "one\\file", "remove-folder", dir / "one", "remove", dir / "one", "remove",
                   dir / "one/file", "remove-folder", dir / "one\\"}),
            (Lines{"yes", "no, another reason", "no, another reason", "yes", "no, another reason",
                   "no, EACCES", "yes", "yes"}));
  EXPECT_TRUE(ReadTree(dir.path()).empty());
}

TEST(WindowsFiles, BytesThatAreNoUtf8NameNothing) {
  const TempDir dir;
  // As a path cut inside a character ends. The text can't come in by the command line.
  EXPECT_EQ(Probe({"write", dir / kNearby, "list", dir.path()}),
            (Lines{"yes", ".|..|" + kNearby + "|"}));
}

// What a listing names is reached through the listed folder, not through the current one.
TEST(WindowsFiles, ListedNamesAreReachedThroughTheirFolder) {
  const TempDir dir;
  WriteFile(dir / "host/file", "12345");
  WriteFile(dir / "host/folder/inner", "");
  const std::string host = dir / "host";
  EXPECT_EQ(Probe({"stat-listed",   host + "|file",   "stat-listed",          host + "|folder",
                   "stat-listed",   host + "|fil",    "stat-listed",          host + "/|.",
                   "list-listed",   host + "|folder", "list-listed",          host + "|file",
                   "list-listed",   host + "|none",   "remove-listed",        host + "|none",
                   "remove-listed", host + "|folder", "remove-listed-folder", host + "|file",
                   "remove-listed", host + "\\|file", "remove-listed-folder", host + "|folder"}),
            (Lines{"5", "folder", "nothing", "folder", ".|..|inner|", "no folder", "no folder",
                   "no, another reason", "no, EACCES", "no, another reason", "yes",
                   "no, another reason"}));
  EXPECT_EQ(ReadTree(host).size(), 2U) << "only the file is gone";
  EXPECT_EQ(
      Probe({"remove-listed", host + "/folder/|inner", "remove-listed-folder", host + "\\|folder"}),
      (Lines{"yes", "yes"}));
  EXPECT_TRUE(ReadTree(host).empty());
}

class CodePage : public testing::TestWithParam<bool> {
 protected:
  // The probe with its manifest's code page, or with that of the system.
  std::string Program() {
    return GetParam() ? PLATFORM_PROBE : WithoutUtf8(PLATFORM_PROBE, dir_ / "probe.exe");
  }
  TempDir dir_;
};

TEST_P(CodePage, IsUtf8WithTheManifestAlone) {
  EXPECT_EQ(Probe({"code-page", ""}, Program()), Lines{GetParam() ? "65001" : "1252"});
}

TEST_P(CodePage, NamesOfEveryScriptAreReached) {
  for (const std::string& name : {kNearby, kFaraway}) {
    const TempDir dir;
    fs::create_directory(dir / name);
    EXPECT_EQ(Probe({"exists", dir / name + "\\", "write", dir / name + "/" + name, "stat",
                     dir / name + "\\" + name, "list", dir / name},
                    Program()),
              (Lines{"yes", "yes", "0", ".|..|" + name + "|"}));
    EXPECT_EQ(ReadFile(dir / name + "/" + name), "");
  }
}

TEST_P(CodePage, ListedNamesOfEveryScriptAreReached) {
  for (const std::string& name : {kNearby, kFaraway}) {
    const TempDir dir;
    const std::string outer = dir / name;
    WriteFile(outer + "/" + name + "/" + name, "123");
    EXPECT_EQ(Probe({"stat-listed", outer + "|" + name, "list-listed", outer + "|" + name,
                     "stat-listed", outer + "/" + name + "|" + name, "remove-listed",
                     outer + "/" + name + "|" + name, "remove-listed-folder", outer + "|" + name},
                    Program()),
              (Lines{"folder", ".|..|" + name + "|", "3", "yes", "yes"}));
    EXPECT_TRUE(ReadTree(outer).empty());
  }
}

TEST_P(CodePage, NarrowCallsOfTheSystemReachTheSameFile) {
  const TempDir dir;
  const std::string path = dir / kNearby + "/" + kNearby;
  WriteFile(path, "");
  EXPECT_EQ(Probe({"write-in-code-page", path}, Program()), Lines{path});
  EXPECT_EQ(ReadTree(dir.path()).size(), 2U);
}

TEST_P(CodePage, NarrowCallsReachAFileOfAnotherScriptByItsShortName) {
  const TempDir dir;
  const std::string path = dir / kFaraway + "/" + kFaraway;
  WriteFile(path, "");
  const Lines answer = Probe({"write-in-code-page", path}, Program());
  ASSERT_EQ(answer.size(), 1U);
  if (GetParam()) {
    EXPECT_EQ(answer[0], path);
  }
  EXPECT_NE(answer[0], "no equivalent");
  EXPECT_NE(answer[0], "not opened");
  EXPECT_EQ(ReadTree(dir.path()).size(), 2U) << "another file was made";
}

INSTANTIATE_TEST_SUITE_P(Either, CodePage, testing::Bool(), [](const auto& test) {
  return test.param ? "OfTheManifest" : "OfTheSystem";
});

TEST(WindowsFolders, AreThoseOfTheUser) {
  const Lines folders =
      Probe({"special", "5", "special", "16", "special", "28", "special", "38", "special", "42"});
  ASSERT_EQ(folders.size(), 5U);
  EXPECT_EQ(folders[0], "C:\\users\\root\\Documents");
  EXPECT_EQ(folders[1], "C:\\users\\root\\Desktop");
  EXPECT_EQ(folders[2], "C:\\users\\root\\AppData\\Local");
  EXPECT_EQ(folders[3], "C:\\Program Files");
}

// Asks for each library by its bare name, by a copy of the probe in `folder`.
void LoadAll(const std::string& folder, const std::string& preparation,
             const std::vector<std::string>& names) {
  fs::copy(PLATFORM_PROBE, folder + "/probe.exe", fs::copy_options::skip_existing);
  std::vector<std::string> arguments = {preparation, ""};
  for (const std::string& name : names) arguments.insert(arguments.end(), {"load", name});
  WineOverrides = PreferPlantedLibraries();
  Probe(arguments, folder + "/probe.exe");
  WineOverrides.clear();
}

TEST(LibrarySearch, PlantedLibraryIsLoadedOnlyWithoutThePreparation) {
  const TempDir dir;
  fs::copy(RECORDING_LIBRARY, dir / "msimg32.dll");
  LoadAll(dir.path(), "none", {"msimg32.dll"});
  EXPECT_EQ(LoadedPlantedLibraries(dir.path()), "msimg32.dll ") << "nothing is recorded";
  const TempDir other;
  PlantLibraries(other.path());
  LoadAll(other.path(), "prepared", PlantedLibraries());
  EXPECT_EQ(LoadedPlantedLibraries(other.path()), "");
}

// There the program's folder stays in the search, so all depends on what is loaded by then. Wine
// hasn't all that Windows has.
TEST(LibrarySearch, OlderWindowsHasTheLateLibrariesBeforeAnyPlantedOneIsFound) {
  const TempDir dir;
  std::vector<std::string> names;
  for (const std::string& name : PlantedLibraries()) {
    if (!fs::exists(WinePrefix() + "/drive_c/windows/system32/" + name)) continue;
    if (IsLoadedLate(name)) names.push_back(name);
  }
  EXPECT_GT(names.size(), 8U);
  PlantLibraries(dir.path());
  LoadAll(dir.path(), "prepared-without-the-rule", names);
  EXPECT_EQ(LoadedPlantedLibraries(dir.path()), "");
}

TEST(LibrarySearch, OlderWindowsLeavesTheCurrentFolderOut) {
  const TempDir current;
  fs::copy(RECORDING_LIBRARY, current / "elsewhere.dll");
  ProgramOptions there;
  there.directory = current.path();
  const auto load = [&](const char* preparation) {
    return Split(
               RunProgram(PLATFORM_PROBE, {preparation, "", "load", "elsewhere.dll"}, there).output)
        .back();
  };
  EXPECT_NE(load("none"), "not loaded");
  EXPECT_EQ(load("prepared-without-the-rule"), "not loaded");
}

// Also on a Windows without the rule, and for a name that no Windows has.
TEST(LibrarySearch, LinkedLibraryFindsNothingButTheSystemsOwn) {
  const TempDir dir;
  fs::copy(PLATFORM_PROBE, dir / "probe.exe");
  for (const char* name : {"msimg32.dll", "elsewhere.dll"}) {
    fs::copy(RECORDING_LIBRARY, dir / name);
  }
  const std::string how = "load-as-a-linked-library-does";
  EXPECT_EQ(Probe({"none", "", how, "msimg32.dll", how, "elsewhere.dll"}, dir / "probe.exe"),
            (Lines{"no such operation", "C:\\windows\\system32\\msimg32.dll", "not loaded"}));
  EXPECT_FALSE(fs::exists(dir / "elsewhere.dll.loaded"));
}

TEST(ErrorMode, NoQuestionsAreAskedAndWhatTheProcessWasStartedWithStays) {
  EXPECT_EQ(Probe({"error-mode", "0", "error-mode", "2"}), (Lines{"1", "3"}));
}

}  // namespace
