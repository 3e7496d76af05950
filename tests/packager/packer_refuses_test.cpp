// Refusals of `pack` in the forms that no case of mistakes/cases.txt has: bounds, and words of
// which each of several is refused. The one line, the status, and no output left, not even an older
// one.
#include <filesystem>

#include "tests/packager/payload_fixture.h"

namespace fs = std::filesystem;

namespace {

using PackerRefuses = PayloadTest;

const std::string kCriteria = "/WINDOWS/directory_criteria.txt";
const std::string kLocations = "/WINDOWS/locations.txt";

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

TEST_F(PackerRefuses, CharactersThatWindowsForbids) {
  for (const char c : std::string("<>:\"|?*")) {
    const std::string name = std::string("libraries/a") + c + "b.h";
    Write(name, "");
    ExpectRefused(name + ": a name must not hold any of < > : \" | ? *, which Windows forbids");
    Remove(name);
  }
}

TEST_F(PackerRefuses, NamesOfWindowsDevices) {
  for (const std::string component :
       {"CON", "prn.txt", "aux.c", "NUL.tar.gz", "com1", "Com9.h", "LPT1", "lpt9.x", "aux .c"}) {
    const std::string name = "cores/quirlo3/" + component;
    Write(name, "");
    ExpectRefused(name + ": " + Quoted(component) + " is the name of a device on Windows");
    Remove(name);
  }
}

TEST_F(PackerRefuses, FolderNamedLikeAWindowsDevice) {
  Write("libraries/Aux/x.h", "");
  ExpectRefused("libraries/Aux: \"Aux\" is the name of a device on Windows");
}

TEST_F(PackerRefuses, ComponentThatEndsInADotOrBlank) {
  for (const std::string component : {"a.", "a ", "..."}) {
    const std::string name = "libraries/" + component;
    Write(name, "");
    ExpectRefused(name + ": " + Quoted(component) + " ends in a dot or blank, which Windows drops");
    Remove(name);
  }
}

TEST_F(PackerRefuses, FoldersThatDifferOnlyInCase) {
  Write("libraries/servo/other.h", "");
  ExpectRefused(
      "libraries/servo/other.h: \"libraries/servo\" differs only in case from "
      "\"libraries/Servo\"");
}

TEST_F(PackerRefuses, FileAndFolderThatDifferOnlyInCase) {
  Write("libraries/SERVO", "");
  ExpectRefused(
      "libraries/Servo/Servo.h: \"libraries/Servo\" differs only in case from "
      "\"libraries/SERVO\"");
}

TEST_F(PackerRefuses, ReleaseWithoutThreeNumbers) {
  for (const std::string release : {"1.8", "1.8.x", "2-beta", "1.8.99999999999"}) {
    Write(release + kCriteria, "");
    Write(release + kLocations, SoundLocations());
    ExpectRefused(release + ": a release's name must begin with three numbers, as in 1.8.19");
    Remove(release);
  }
}

TEST_F(PackerRefuses, CommentedOutSettingAheadOfTheRealOne) {
  Write("1.8.19" + kLocations, "# TOOL_SUBDIR \"old/\"\n" + SoundLocations());
  ExpectRefused(
      "1.8.19/WINDOWS/locations.txt: TOOL_SUBDIR stands in a comment, where the look-up finds it "
      "first");
}

TEST_F(PackerRefuses, ValueOf255Characters) {
  Write("1.8.19" + kLocations, Replaced(SoundLocations(), "lib/some.jar", std::string(255, 'j')));
  ExpectRefused(
      "1.8.19/WINDOWS/locations.txt: ARDUINO_JAR_FILE1 has a value of 255 characters or more, "
      "which may be cut");
}

// The installer joins the host folder and the value as texts, so "../" would be followed.
TEST_F(PackerRefuses, ValueThatLeadsOutOfTheHostFolder) {
  for (const std::string value : {"../tools/", "hardware/../../tools/", "/opt/tools/", "./tools/",
                                  "C:/tools/", "hardware\\tools/", "/", "hardware//tools/"}) {
    Write("1.8.19" + kLocations, Replaced(SoundLocations(), "folder/", value));
    ExpectRefused("1.8.19" + kLocations +
                  ": TOOL_SUBDIR must name a path below the host folder, not " + Quoted(value));
  }
}

TEST_F(PackerRefuses, ArchiveValueThatLeadsOutOfTheHostFolder) {
  for (const std::string value : {"", "../pde.jar", "lib/pde.jar/"}) {
    Write("1.8.19" + kLocations, Replaced(SoundLocations(), "lib/some.jar", value));
    ExpectRefused("1.8.19" + kLocations +
                  ": ARDUINO_JAR_FILE1 must name a path below the host folder, not " +
                  Quoted(value));
  }
}

TEST_F(PackerRefuses, MalformedZipcksumLine) {
  for (const std::string line : {"zipcksum:lib/pde.jar", "zipcksum:lib/pde.jar 1 a.class",
                                 "zipcksum:lib/pde.jar 1 2 3 a.class", "zipcksum:lib/pde.jar 1 2",
                                 "zipcksum:lib/pde.jar a.class"}) {
    Write("1.8.5" + kCriteria, "version:lib/version.txt\n\n" + line + "\nfile:a\n");
    ExpectRefused("1.8.5/WINDOWS/directory_criteria.txt: line 3 is a malformed zipcksum line");
  }
}

TEST_F(PackerRefuses, ZipcksumLineOf16Pairs) {
  std::string line = "zipcksum:lib/pde.jar";
  for (int i = 0; i < 16; ++i) line += " 1 2";
  Write("1.8.5" + kCriteria, line + " a.class");
  ExpectRefused("1.8.5/WINDOWS/directory_criteria.txt: line 1 is a malformed zipcksum line");
}

TEST_F(PackerRefuses, CriteriaFileThatIsNoReleasesOwn) {
  for (const std::string name :
       {"libraries/Old/WINDOWS/directory_criteria.txt", "1.8.19/WINDOWS/directory_criteria.txt.bak",
        "1.8.19/old/WINDOWS/directory_criteria.txt"}) {
    Write(name, "");
    ExpectRefused(name +
                  ": only a release's own criteria file may have "
                  "\"/WINDOWS/directory_criteria.txt\" in its name");
    Remove(name);
  }
}

TEST_F(PackerRefuses, FolderWithADigitThatIsNoRelease) {
  Write("3rdparty/x.c", "");
  ExpectRefused(
      "3rdparty: a folder whose name begins with a digit must be a release and have a "
      "WINDOWS/directory_criteria.txt");
}

TEST_F(PackerRefuses, EmptyFolderWithADigit) {
  fs::create_directory(In("1.9.0"));
  ExpectRefused(
      "1.9.0: a folder whose name begins with a digit must be a release and have a "
      "WINDOWS/directory_criteria.txt");
}

TEST_F(PackerRefuses, OtherVersionMarker) {
  for (const std::string content : {"1.60-beta4", "1.60-beta5\n", "1.60-beta", ""}) {
    Write("quirloduino.txt", content);
    ExpectRefused(
        "quirloduino.txt: the version marker must hold exactly 1.60-beta5, without a line end");
  }
}

TEST_F(PackerRefuses, OneFileOf4GiB) {
  Write("libraries/large.bin", "");
  fs::resize_file(In("libraries/large.bin"), std::uintmax_t{1} << 32);  // takes no room on the disk
  ExpectRefused("libraries/large.bin: with this file the content reaches 4 GiB");
}

TEST_F(PackerRefuses, FilesOf4GiBTogether) {
  for (const std::string name : {"libraries/a.bin", "libraries/b.bin"}) {
    Write(name, "");
    fs::resize_file(In(name), std::uintmax_t{1} << 31);
  }
  ExpectRefused("libraries/b.bin: with this file the content reaches 4 GiB");
}

TEST_F(PackerRefuses, AliasWithALeftSideOf512Characters) {
  const std::string folder = "arm/" + std::string(250, 'x') + "/" + std::string(250, 'y') + "/";
  const std::string longest = folder + std::string(511 - folder.size(), 'z');
  Write(longest + "z", "compiler");
  ExpectRefused(longest +
                "z --> arm/bin/arm-none-eabi-c++.exe: an alias's left side must not be longer than "
                "511 characters");
}

TEST_F(PackerRefuses, EmptyTree) {
  fs::remove_all(tree());
  fs::create_directories(In("libraries/Servo"));
  ExpectRefused(tree() + ": the payload tree holds no file");
}

TEST_F(PackerRefuses, MissingTree) {
  fs::remove_all(tree());
  ExpectRefused(tree() + ": no such folder");
}

TEST_F(PackerRefuses, TreeThatIsAFile) {
  fs::remove_all(tree());
  WriteFile(tree(), "");
  ExpectRefused(tree() + ": no such folder");
}

}  // namespace
