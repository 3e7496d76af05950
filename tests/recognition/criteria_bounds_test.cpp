// The bounds of the working buffers of one check. Linked with --wrap on OpenFile, since no path
// that reaches them can be opened.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/recognition/recognition_test.h"
#include "tests/support/jars.h"

namespace {

std::string opened_path;  // of the last call

}  // namespace

std::FILE* RealOpenFile(const char* path, const char* mode) __asm__("__real__Z8OpenFilePKcS0_");
std::FILE* WrappedOpenFile(const char* path, const char* mode) __asm__("__wrap__Z8OpenFilePKcS0_");

std::FILE* WrappedOpenFile(const char* path, const char* mode) {
  opened_path = path;
  return RealOpenFile(path, mode);
}

namespace {

class CriteriaBounds : public RecognitionTest {};

TEST_F(CriteriaBounds, ArgumentIsShownTo1022Characters) {
  EXPECT_EQ(Check("file:" + std::string(1022, 'a') + "\n").log,
            "    file: \"" + std::string(1022, 'a') + "\"  missing\n");
  EXPECT_EQ(Check("file:" + std::string(1022, 'a') + "b\n").log,
            "    file: \"" + std::string(1022, 'a') + "\"  missing\n");
  EXPECT_EQ(opened_path, Folder() + std::string(1022, 'a') + "b") << "only the shown name is cut";
}

TEST_F(CriteriaBounds, EveryKeywordWithAPlainArgumentShows1022Characters) {
  const std::string name(2000, 'a');
  const std::string shown(1022, 'a');
  EXPECT_EQ(Check("dir:" + name).log, "    dir: \"" + shown + "\"  missing\n");
  EXPECT_EQ(Check("version:" + name).log, "    version: \"" + shown + "\"  file missing\n");
  EXPECT_EQ(Check("zipfile:" + name).log, "    zip file: \"" + shown + "\"  missing or corrupt\n");
}

TEST_F(CriteriaBounds, WholePathIsCutAt4354Characters) {
  for (const char* keyword : {"file:", "version:"}) {
    Check(keyword + std::string(5000, 'a') + "\n");
    EXPECT_EQ(opened_path, (Folder() + std::string(5000, 'a')).substr(0, 4354));
  }
}

TEST_F(CriteriaBounds, FolderIsCutAt4315Characters) {
  CheckFolder(std::string(4315, 'f'), "file:a\n");
  EXPECT_EQ(opened_path, std::string(4315, 'f') + "a");
  CheckFolder(std::string(4315, 'f') + "g", "file:a\n");
  EXPECT_EQ(opened_path, std::string(4315, 'f') + "a");
}

TEST_F(CriteriaBounds, LongestFolderLeavesRoomFor39Characters) {
  CheckFolder(std::string(6000, 'f'), "file:" + std::string(100, 'a') + "\n");
  EXPECT_EQ(opened_path, std::string(4315, 'f') + std::string(39, 'a'));
}

TEST_F(CriteriaBounds, ArchiveIsShownTo1023Characters) {
  EXPECT_EQ(Check("zipcksum:" + std::string(1023, 'a') + " 1 2 M\n").log,
            "    java: \"" + std::string(1023, 'a') + "\" missing\n");
  EXPECT_EQ(Check("zipcksum:" + std::string(1023, 'a') + "b 1 2 M\n").log,
            "    java: \"" + std::string(1023, 'a') + "\" missing\n");
}

TEST_F(CriteriaBounds, ZipcksumArgumentIsCutToThePathsRoom) {
  WriteJar(dir_ / "a.jar", {{"M", "m"}});
  // A folder that is long and yet can be opened; the archive's own path stays below the system's
  // limit, and only the member reaches the end of the buffer.
  std::string folder = Folder();
  while (folder.size() < 4000) folder += "./";
  const std::string argument = "a.jar 1 2 " + std::string(400, 'M');
  const std::size_t member = 4355 - folder.size() - 10;
  EXPECT_EQ(
      CheckFolder(folder, "zipcksum:" + argument + "\n"),
      (Verdict{0, "    java: \"a.jar\" object: \"" + std::string(member, 'M') + "\" missing\n"}));
}

TEST_F(CriteriaBounds, ZipcksumArgumentCutWithinItsNumbersIsMalformed) {
  // 40 characters are left, and they end within the sixth number.
  EXPECT_EQ(CheckFolder(std::string(5000, 'f'),
                        "zipcksum:a.jar 111111 222222 333333 444444 555555 666666 M\n")
                .log,
            "    java: \"a.jar\"  INTERNAL ERROR, This is never supposed to happen! :(\n");
}

TEST_F(CriteriaBounds, PathBeyondTheSystemsLimitIsMissing) {
  const std::string folder(4300, 'f');
  EXPECT_EQ(CheckFolder(folder, "dir:a\n").log, "    dir: \"a\"  missing\n");
  EXPECT_EQ(CheckFolder(folder, "zipfile:a\n").log, "    zip file: \"a\"  missing or corrupt\n");
  EXPECT_EQ(CheckFolder(folder, "zipcksum:a 1 2 M\n").log, "    java: \"a\" missing\n");
}

}  // namespace
