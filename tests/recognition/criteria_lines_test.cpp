// The walk over the lines of a criteria file, and its lines "dir:" and "file:".
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/recognition/recognition_test.h"
#include "tests/support/special_file.h"

namespace fs = std::filesystem;

namespace {

class CriteriaLines : public RecognitionTest {};

TEST_F(CriteriaLines, EmptyFileAcceptsEveryFolder) {
  EXPECT_EQ(Check(""), (Verdict{1, ""}));
}

TEST_F(CriteriaLines, FileOfUnknownKeywordsAcceptsEveryFolder) {
  EXPECT_EQ(Check("java:lib/pde.jar\nobject:Base.class\n#file:none\nFile:none\n file:none\n"
                  "file none\nfile\nfile :none\nzipcksum\nz\nlib/none\n"),
            (Verdict{1, ""}));
}

TEST_F(CriteriaLines, EmptyLinesArePassedOver) {
  WriteFile(dir_ / "a", "");
  EXPECT_EQ(Check("\n\n\nfile:a\n\n"), (Verdict{1, "    file: \"a\"  present\n"}));
}

TEST_F(CriteriaLines, LastLineNeedsNoLineFeed) {
  WriteFile(dir_ / "a", "");
  EXPECT_EQ(Check("file:a\nfile:a"),
            (Verdict{1, "    file: \"a\"  present\n    file: \"a\"  present\n"}));
  EXPECT_EQ(Check("file:a\nfile:b"),
            (Verdict{0, "    file: \"a\"  present\n    file: \"b\"  missing\n"}));
}

TEST_F(CriteriaLines, FirstFailedLineLeavesTheRestUnread) {
  WriteFile(dir_ / "a", "");
  EXPECT_EQ(Check("file:a\nfile:b\nfile:a\n"),
            (Verdict{0, "    file: \"a\"  present\n    file: \"b\"  missing\n"}));
}

TEST_F(CriteriaLines, EveryLineStartsFromTheFolderAgain) {
  WriteFile(dir_ / "lib/long/name", "");
  WriteFile(dir_ / "a", "");
  EXPECT_EQ(Check("file:lib/long/name\ndir:lib\nfile:a\n").result, 1);
}

// Each kind of line that opens something, with the words for what isn't there.
TEST_F(CriteriaLines, WhatIsNoFileInAFilesPlaceIsMissing) {
  for (const SpecialFile& special : kSpecialFiles) {
    special.make(dir_ / "a");
    EXPECT_EQ(Check("file:a"), (Verdict{0, "    file: \"a\"  missing\n"}));
    EXPECT_EQ(Check("dir:a"), (Verdict{0, "    dir: \"a\"  missing\n"}));
    EXPECT_EQ(Check("version:a"), (Verdict{0, "    version: \"a\"  file missing\n"}));
    EXPECT_EQ(Check("zipfile:a"), (Verdict{0, "    zip file: \"a\"  missing or corrupt\n"}));
    EXPECT_EQ(Check("zipcksum:a 1 2 B"), (Verdict{0, "    java: \"a\" missing\n"}));
    fs::remove(dir_ / "a");
  }
}

TEST_F(CriteriaLines, CarriageReturnIsPartOfTheName) {
  WriteFile(dir_ / "a", "");
  EXPECT_EQ(Check("file:a\r\n"), (Verdict{0, "    file: \"a\r\"  missing\n"}));
  WriteFile(dir_ / "a\r", "");
  EXPECT_EQ(Check("file:a\r\n"), (Verdict{1, "    file: \"a\r\"  present\n"}));
}

TEST_F(CriteriaLines, FileThatEndsWithinAKeywordHoldsNoLine) {
  for (const char* text : {"d", "dir", "fil", "version", "zipfile", "zipcksum"}) {
    EXPECT_EQ(Check(text), (Verdict{1, ""})) << text;
  }
}

TEST_F(CriteriaLines, EntryThatDoesNotBeginWithThreeNumbersNeverMatches) {
  for (const char* release : {"", "beta", "1.8", "1.8.", "1.8.x", "v1.8.19", "windows/1.8.19"}) {
    EXPECT_EQ(Check("", release), (Verdict{0, ""})) << release;
  }
}

TEST_F(CriteriaLines, TextBehindTheThreeNumbersOfAnEntryIsIgnored) {
  EXPECT_EQ(Check("", "1.8.19-rc1").result, 1);
  EXPECT_EQ(Check("", "1.8.19.2").result, 1);
}

TEST_F(CriteriaLines, CheckWithoutALogGivesTheSameResult) {
  LogBuffer = nullptr;
  WriteFile(dir_ / "a", "");
  EXPECT_EQ(Check("file:a\n"), (Verdict{1, ""}));
  EXPECT_EQ(Check("file:b\n"), (Verdict{0, ""}));
}

TEST_F(CriteriaLines, FolderWithoutSeparatorMakesEveryPathWrong) {
  WriteFile(dir_ / "a", "");
  EXPECT_EQ(CheckFolder(dir_.path(), "file:a\n"), (Verdict{0, "    file: \"a\"  missing\n"}));
}

TEST_F(CriteriaLines, FolderMayEndInEitherSeparatorOrInSeveral) {
  WriteFile(dir_ / "lib/a", "");
  for (const char* separator : {"/", "\\", "\\\\", "/\\"}) {
    EXPECT_EQ(CheckFolder(dir_.path() + separator, "file:lib/a\nfile:lib\\a\ndir:lib\n").result, 1);
  }
}

TEST_F(CriteriaLines, FolderMayHoldBlanks) {
  WriteFile(dir_ / "my arduino 1.8/lib/a", "");
  EXPECT_EQ(CheckFolder(dir_ / "my arduino 1.8/", "file:lib/a\n").result, 1);
}

class DirLine : public RecognitionTest {};

TEST_F(DirLine, FolderIsPresent) {
  fs::create_directory(dir_ / "hardware");
  EXPECT_EQ(Check("dir:hardware\n"), (Verdict{1, "    dir: \"hardware\"  present\n"}));
}

TEST_F(DirLine, NameMayHoldBlanks) {
  fs::create_directory(dir_ / " my hardware ");
  EXPECT_EQ(Check("dir: my hardware \n"), (Verdict{1, "    dir: \" my hardware \"  present\n"}));
}

TEST_F(DirLine, NoNameIsTheFolderItself) {
  EXPECT_EQ(Check("dir:\n"), (Verdict{1, "    dir: \"\"  present\n"}));
}

TEST_F(DirLine, NothingThereIsMissing) {
  EXPECT_EQ(Check("dir:hardware\n"), (Verdict{0, "    dir: \"hardware\"  missing\n"}));
}

TEST_F(DirLine, FileIsMissing) {
  WriteFile(dir_ / "hardware", "");
  EXPECT_EQ(Check("dir:hardware\n"), (Verdict{0, "    dir: \"hardware\"  missing\n"}));
}

TEST_F(DirLine, FolderThatCannotBeOpenedIsMissing) {
  fs::create_directory(dir_ / "hardware");
  fs::permissions(dir_ / "hardware", fs::perms::none);
  {
    const ScopedOrdinaryUser user;
    EXPECT_EQ(Check("dir:hardware\n"), (Verdict{0, "    dir: \"hardware\"  missing\n"}));
  }
  fs::permissions(dir_ / "hardware", fs::perms::owner_all);  // or it could not be removed
}

class FileLine : public RecognitionTest {};

TEST_F(FileLine, FileIsPresent) {
  WriteFile(dir_ / "arduino.exe", "the IDE");
  EXPECT_EQ(Check("file:arduino.exe\n"), (Verdict{1, "    file: \"arduino.exe\"  present\n"}));
}

TEST_F(FileLine, EmptyFileIsPresent) {
  WriteFile(dir_ / "arduino.exe", "");
  EXPECT_EQ(Check("file:arduino.exe\n").result, 1);
}

TEST_F(FileLine, NameMayHoldBlanks) {
  WriteFile(dir_ / "lib/my file.txt", "");
  EXPECT_EQ(Check("file:lib/my file.txt\n"),
            (Verdict{1, "    file: \"lib/my file.txt\"  present\n"}));
}

TEST_F(FileLine, NothingThereIsMissing) {
  EXPECT_EQ(Check("file:arduino.exe\n"), (Verdict{0, "    file: \"arduino.exe\"  missing\n"}));
}

TEST_F(FileLine, FolderIsMissing) {
  fs::create_directory(dir_ / "arduino.exe");
  EXPECT_EQ(Check("file:arduino.exe\n"), (Verdict{0, "    file: \"arduino.exe\"  missing\n"}));
  EXPECT_EQ(Check("file:\n"), (Verdict{0, "    file: \"\"  missing\n"}));
}

TEST_F(FileLine, FileThatCannotBeReadIsMissing) {
  WriteFile(dir_ / "arduino.exe", "the IDE");
  fs::permissions(dir_ / "arduino.exe", fs::perms::none);
  const ScopedOrdinaryUser user;
  EXPECT_EQ(Check("file:arduino.exe\n"), (Verdict{0, "    file: \"arduino.exe\"  missing\n"}));
}

}  // namespace
