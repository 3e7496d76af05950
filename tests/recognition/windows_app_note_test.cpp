// The note on the Windows App at the head of the check log.
#include <gtest/gtest.h>

#include <string>

#include "recognition/downgrade_guard.h"
#include "recognition/identify_arduino.h"
#include "tests/recognition/recognition_test.h"
#include "tests/support/special_file.h"

namespace {

const char kNote[] =
    "Quirloduino can not work with the Windows App\n"
    "version of Arduino.  The regular installer &\n"
    "non-admin ZIP versions are supported.\n\n";

const char kAppLine[] =
    "runtime.hardwarepath=C:\\Program Files\\WindowsApps\\ArduinoLLC.ArduinoIDE_1.8.57.0\\hardware";

class WindowsAppNote : public RecognitionTest {
 protected:
  WindowsAppNote() { SetUserDirs("XDG_DOCUMENTS_DIR=\"" + dir_.path() + "/Documents\"\n"); }

  void SetUserDirs(const std::string& text) { WriteFile(user_ / ".config/user-dirs.dirs", text); }
  void SetPreferences(const std::string& text) {
    WriteFile(dir_ / "Documents/ArduinoData/preferences.txt", text);
  }
  std::string Note() {
    NoteWindowsApp();
    return Log();
  }

  TempDir user_;
  ScopedEnvironment home_variable_{"HOME", user_.path()};
};

TEST_F(WindowsAppNote, WhatIsNoFileInTheFilesPlaceGivesNone) {
  const std::string path = dir_ / "Documents/ArduinoData/preferences.txt";
  for (const SpecialFile& special : kSpecialFiles) {
    special.make(path);
    EXPECT_EQ(Note(), "") << special.kind;
    std::filesystem::remove(path);
  }
}

TEST_F(WindowsAppNote, HardwarePathInTheAppGivesTheNote) {
  SetPreferences(std::string("board=uno\r\n") + kAppLine + "\r\nzoom=100\r\n");
  EXPECT_EQ(Note(), kNote);
}

TEST_F(WindowsAppNote, LastLineNeedsNoLineEnd) {
  SetPreferences(kAppLine);
  EXPECT_EQ(Note(), kNote);
}

TEST_F(WindowsAppNote, SeveralSuchLinesGiveOneNote) {
  SetPreferences(std::string(kAppLine) + "\n" + kAppLine + "\n");
  EXPECT_EQ(Note(), kNote);
}

TEST_F(WindowsAppNote, MissingPreferencesGiveNone) {
  EXPECT_EQ(Note(), "");
}

TEST_F(WindowsAppNote, EmptyPreferencesGiveNone) {
  SetPreferences("");
  EXPECT_EQ(Note(), "");
}

TEST_F(WindowsAppNote, NoDocumentsFolderGivesNone) {
  SetPreferences(kAppLine);
  const ScopedEnvironment home("HOME", "");
  EXPECT_EQ(Note(), "");
}

TEST_F(WindowsAppNote, PreferencesElsewhereAreNotRead) {
  SetPreferences(kAppLine);
  SetUserDirs("XDG_DOCUMENTS_DIR=\"$HOME/Elsewhere\"\n");
  EXPECT_EQ(Note(), "");
}

TEST_F(WindowsAppNote, HomeFolderServesWhereNoDocumentsFolderIsSet) {
  SetUserDirs("");
  WriteFile(user_ / "ArduinoData/preferences.txt", kAppLine);
  EXPECT_EQ(Note(), kNote);
}

TEST_F(WindowsAppNote, HardwarePathWithoutTheAppIsPassedOverAndReadingGoesOn) {
  SetPreferences("runtime.hardwarepath=C:\\arduino\\hardware\n");
  EXPECT_EQ(Note(), "");
  SetPreferences(std::string("runtime.hardwarepath=C:\\arduino\\hardware\n") + kAppLine + "\n");
  EXPECT_EQ(Note(), kNote);
}

TEST_F(WindowsAppNote, AppPathOnAnotherLineThanTheKeyGivesNone) {
  SetPreferences("last.sketch=C:\\WindowsApps\\ArduinoLLC\\a.ino\nruntime.hardwarepath=C:\\a\n");
  EXPECT_EQ(Note(), "");
}

TEST_F(WindowsAppNote, AppPathAheadOfTheKeyInTheSameLineGivesTheNote) {
  SetPreferences("x=WindowsApps\\ArduinoLLC hardwarepath\n");
  EXPECT_EQ(Note(), kNote);
}

TEST_F(WindowsAppNote, OtherCaseOrOtherSeparatorGivesNone) {
  SetPreferences(
      "hardwarepath=C:/WindowsApps/ArduinoLLC\nhardwarepath=C:\\windowsapps\\arduinollc\n"
      "HardwarePath=C:\\WindowsApps\\ArduinoLLC\n");
  EXPECT_EQ(Note(), "");
}

// Lines beyond 32,767 characters come in pieces, and each piece is judged by itself.
constexpr std::size_t kPiece = 32767;

TEST_F(WindowsAppNote, KeyAndPathInTheSecondPieceOfALongLineGiveTheNote) {
  SetPreferences(std::string(kPiece, 'x') + kAppLine + "\n");
  EXPECT_EQ(Note(), kNote);
}

TEST_F(WindowsAppNote, KeyAndPathAtTheVeryEndOfAPieceGiveTheNote) {
  const std::string tail = "hardwarepath=WindowsApps\\ArduinoLLC";
  SetPreferences(std::string(kPiece - tail.size(), 'x') + tail + "more\n");
  EXPECT_EQ(Note(), kNote);
}

TEST_F(WindowsAppNote, PathCutByThePiecesEndGivesNone) {
  const std::string tail = "hardwarepath=WindowsApps\\ArduinoLLC";
  SetPreferences(std::string(kPiece - tail.size() + 1, 'x') + tail + "more\n");
  EXPECT_EQ(Note(), "");
}

TEST_F(WindowsAppNote, KeyAndPathInDifferentPiecesGiveNone) {
  SetPreferences("hardwarepath=" + std::string(kPiece, 'x') + "WindowsApps\\ArduinoLLC\n");
  EXPECT_EQ(Note(), "");
}

// A Documents folder of exactly this many characters, which exists.
std::string LongDocuments(const TempDir& dir, std::size_t length) {
  std::string path = dir / "";
  while (path.size() + 100 < length) path += std::string(98, 'd') + "/";
  return path + std::string(length - path.size(), 'd');
}

TEST_F(WindowsAppNote, PathOf259CharactersIsOpened) {
  const std::string documents = LongDocuments(dir_, 259 - 28);
  WriteFile(documents + "/ArduinoData/preferences.txt", kAppLine);
  SetUserDirs("XDG_DOCUMENTS_DIR=\"" + documents + "\"\n");
  EXPECT_EQ(Note(), kNote);
}

TEST_F(WindowsAppNote, PathOf260CharactersIsCutAndGivesNone) {
  const std::string documents = LongDocuments(dir_, 260 - 28);
  WriteFile(documents + "/ArduinoData/preferences.txt", kAppLine);
  SetUserDirs("XDG_DOCUMENTS_DIR=\"" + documents + "\"\n");
  EXPECT_EQ(Note(), "");
}

TEST_F(WindowsAppNote, WithoutALogNothingHappens) {
  LogBuffer = nullptr;
  SetPreferences(kAppLine);
  EXPECT_EQ(Note(), "");
}

TEST_F(WindowsAppNote, StandsAboveTheDirectoryInEveryLogAndTheFolderStillMatches) {
  SetPreferences(kAppLine);
  const TestStore store({{"quirlo.exe", "tool"}, {"1.8.5/WINDOWS/directory_criteria.txt", ""}});
  for (int call = 0; call < 2; ++call) {
    EXPECT_EQ(IdentifyArduino(Folder().c_str()), 10805);
    EXPECT_EQ(Log(), kNote + ("Directory: " + Folder()) +
                         "\n"
                         "  Checking Arduino 1.8.5:\n"
                         "    Found Arduino 1.8.5\n");
  }
}

}  // namespace
