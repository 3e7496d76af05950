// Every refusal of `pack`, as an author meets it: the one line, the status, and no output left.
#include <sys/stat.h>

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

TEST_F(PackerRefuses, NameThatIsNotAscii) {
  Write("libraries/Gr\xC3\xBC\xC3\x9F/x.h", "");
  ExpectRefused("libraries/Gr\\xC3\\xBC\\xC3\\x9F: a name must be printable ASCII");
}

TEST_F(PackerRefuses, NameWithALineEndInOneLine) {
  Write("libraries/a\nb", "");
  ExpectRefused("libraries/a\\x0Ab: a name must be printable ASCII");
}

TEST_F(PackerRefuses, NameWithABackslash) {
  Write("libraries/a\\b.h", "");
  ExpectRefused("libraries/a\\b.h: a name must not hold a backslash");
}

TEST_F(PackerRefuses, NameWithTheAliasMark) {
  Write("arm/a --> b", "");
  ExpectRefused("arm/a --> b: a file's name must not hold \" --> \", the mark of an alias");
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

TEST_F(PackerRefuses, FilesThatDifferOnlyInCase) {
  Write("libraries/Servo/servo.h", "");
  ExpectRefused(
      "libraries/Servo/servo.h: \"libraries/Servo/servo.h\" differs only in case from "
      "\"libraries/Servo/Servo.h\"");
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

TEST_F(PackerRefuses, ReleaseThatIsTheBeginningOfAnother) {
  for (const std::string file :
       {kCriteria.c_str(), kLocations.c_str(), "/boards.txt", "/platform.txt"}) {
    Write("1.8.1" + file, ReadFile(In("1.8.13" + file)));
  }
  ExpectRefused("1.8.1: a release's name must not be the beginning of another's, 1.8.13");
}

TEST_F(PackerRefuses, ReleaseOfMoreThan63Characters) {
  const std::string release = "1.8.2" + std::string(59, 'x');
  Write(release + kCriteria, "");
  Write(release + kLocations, SoundLocations());
  ExpectRefused(release + ": a release's name must not be longer than 63 characters");
}

TEST_F(PackerRefuses, ReleaseWithoutThreeNumbers) {
  for (const std::string release : {"1.8", "1.8.x", "2-beta", "1.8.99999999999"}) {
    Write(release + kCriteria, "");
    Write(release + kLocations, SoundLocations());
    ExpectRefused(release + ": a release's name must begin with three numbers, as in 1.8.19");
    Remove(release);
  }
}

TEST_F(PackerRefuses, ReleaseWithoutALocationsFile) {
  Remove("1.8.19" + kLocations);
  ExpectRefused("1.8.19: a release must have a WINDOWS/locations.txt");
}

TEST_F(PackerRefuses, LocationsFileInOtherCase) {
  Remove("1.8.19" + kLocations);
  Write("1.8.19/WINDOWS/Locations.txt", SoundLocations());
  ExpectRefused("1.8.19: a release must have a WINDOWS/locations.txt");
}

TEST_F(PackerRefuses, MissingKey) {
  Write("1.8.19" + kLocations, Replaced(SoundLocations(), "CORES_SUBDIR", "KERNEL_SUBDIR"));
  ExpectRefused("1.8.19/WINDOWS/locations.txt: CORES_SUBDIR is missing");
}

TEST_F(PackerRefuses, KeyInsideAComment) {
  Write("1.8.19" + kLocations, "# TOOL_SUBDIR comes next\n" + SoundLocations());
  ExpectRefused(
      "1.8.19/WINDOWS/locations.txt: TOOL_SUBDIR stands in a comment, where the look-up finds it "
      "first");
}

TEST_F(PackerRefuses, CommentedOutSettingAheadOfTheRealOne) {
  Write("1.8.19" + kLocations, "# TOOL_SUBDIR \"old/\"\n" + SoundLocations());
  ExpectRefused(
      "1.8.19/WINDOWS/locations.txt: TOOL_SUBDIR stands in a comment, where the look-up finds it "
      "first");
}

TEST_F(PackerRefuses, KeyInsideALongerWord) {
  Write("1.8.19" + kLocations, "MY_TOOL_SUBDIR \"mine/\"\n" + SoundLocations());
  ExpectRefused(
      "1.8.19/WINDOWS/locations.txt: TOOL_SUBDIR stands within other text, where the look-up finds "
      "it first");
}

TEST_F(PackerRefuses, KeyWithoutAValue) {
  Write("1.8.19" + kLocations, "TOOL_SUBDIR tools/\n" + SoundLocations());
  ExpectRefused("1.8.19/WINDOWS/locations.txt: TOOL_SUBDIR has no value in double quotes");
}

TEST_F(PackerRefuses, ValueWithoutAClosingQuote) {
  const std::string sound = "ARDUINO_JAR_FILE2\t\"lib/some.jar\"\n";
  Write("1.8.19" + kLocations,
        Replaced(SoundLocations(), sound, "ARDUINO_JAR_FILE2\t\"lib/some.jar\n"));
  ExpectRefused(
      "1.8.19/WINDOWS/locations.txt: ARDUINO_JAR_FILE2 has a value without a closing quote");
}

TEST_F(PackerRefuses, ValueOf255Characters) {
  Write("1.8.19" + kLocations, Replaced(SoundLocations(), "lib/some.jar", std::string(255, 'j')));
  ExpectRefused(
      "1.8.19/WINDOWS/locations.txt: ARDUINO_JAR_FILE1 has a value of 255 characters or more, "
      "which may be cut");
}

TEST_F(PackerRefuses, FolderValueWithoutASlashAtItsEnd) {
  Write("1.8.13" + kLocations, Replaced(SoundLocations(), "folder/", "folder"));
  ExpectRefused(
      "1.8.13/WINDOWS/locations.txt: TOOL_SUBDIR names a folder, so its value must end in \"/\"");
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

TEST_F(PackerRefuses, CriteriaLineWithACarriageReturn) {
  Write("1.8.5" + kCriteria, "version:lib/version.txt\r\n");
  ExpectRefused("1.8.5/WINDOWS/directory_criteria.txt: line 1 ends in a carriage return");
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

TEST_F(PackerRefuses, RootFileWithADigit) {
  Write("7z.exe", "");
  ExpectRefused("7z.exe: a name that begins with a digit must belong to a release");
}

TEST_F(PackerRefuses, MissingVersionMarker) {
  Remove("quirloduino.txt");
  ExpectRefused("quirloduino.txt: the version marker is missing");
}

TEST_F(PackerRefuses, OtherVersionMarker) {
  for (const std::string content : {"1.60-beta4", "1.60-beta5\n", "1.60-beta", ""}) {
    Write("quirloduino.txt", content);
    ExpectRefused(
        "quirloduino.txt: the version marker must hold exactly 1.60-beta5, without a line end");
  }
}

TEST_F(PackerRefuses, FileDirectlyInCores) {
  Write("cores/notes.txt", "");
  ExpectRefused("cores/notes.txt: no file but keywords.txt may stand directly in cores/");
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

TEST_F(PackerRefuses, SymbolicLinks) {
  fs::create_symlink("quirlo.exe", In("link.exe"));
  ExpectRefused("link.exe: a payload tree must not hold symbolic links");
  Remove("link.exe");
  fs::create_directory_symlink("Servo", In("libraries/Linked"));
  ExpectRefused("libraries/Linked: a payload tree must not hold symbolic links");
  Remove("libraries/Linked");
  fs::create_symlink("nowhere", In("dangling"));
  ExpectRefused("dangling: a payload tree must not hold symbolic links");
}

TEST_F(PackerRefuses, SpecialFiles) {
  ASSERT_EQ(mkfifo(In("pipe").c_str(), 0600), 0);
  ExpectRefused("pipe: a payload tree must not hold special files");
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
