// quirloduino-pack as a whole program: streams, exit status and what stands on the disk.
#include <sys/stat.h>

#include <filesystem>

#include "tests/packager/payload_fixture.h"

namespace fs = std::filesystem;

namespace {

using PackProgram = PayloadTest;

const char kTable[] =
    "4\tquirlo.exe\n"
    "8\tarm/bin/arm-none-eabi-c++.exe\n"
    "0\tarm/bin/arm-none-eabi-g++.exe --> arm/bin/arm-none-eabi-c++.exe\n"
    "76\t1.8.13/WINDOWS/directory_criteria.txt\n"
    "296\t1.8.13/WINDOWS/locations.txt\n"
    "15\t1.8.13/WINDOWS/pde.jar/processing/app/Base$18.class\n"
    "76\t1.8.19/WINDOWS/directory_criteria.txt\n"
    "296\t1.8.19/WINDOWS/locations.txt\n"
    "15\t1.8.19/WINDOWS/pde.jar/processing/app/Base$18.class\n"
    "76\t1.8.5/WINDOWS/directory_criteria.txt\n"
    "296\t1.8.5/WINDOWS/locations.txt\n"
    "14\t1.8.5/WINDOWS/pde.jar/processing/app/Base$18.class\n"
    "8\tcores/keywords.txt\n"
    "4\tcores/quirlo3/main.cpp\n"
    "5\tlibraries/Servo/Servo.h\n"
    "16\t1.8.13/boards.txt\n"
    "18\t1.8.13/platform.txt\n"
    "16\t1.8.19/boards.txt\n"
    "18\t1.8.19/platform.txt\n"
    "15\t1.8.5/boards.txt\n"
    "17\t1.8.5/platform.txt\n"
    "10\tquirloduino.txt\n";

std::map<std::string, std::string> Three(const std::string& folder) {
  return {{"payload.zst", ReadFile(folder + "/payload.zst")},
          {"payload.tbl", ReadFile(folder + "/payload.tbl")},
          {"payload_tables.cpp", ReadFile(folder + "/payload_tables.cpp")}};
}

TEST_F(PackProgram, WritesThreeFilesAndNothingElse) {
  ExpectPacked();
  EXPECT_EQ(ReadTree(output()), Three(output()));
  const std::string length = std::to_string(ReadFile(output() + "/payload.zst").size());
  EXPECT_EQ(ReadFile(output() + "/payload.tbl"),
            "quirloduino payload 1\n"
            "entries 22\n"
            "frame " +
                length + "\ncontent 1299\n" + kTable);
}

TEST_F(PackProgram, MakesTheOutputFolderAndThoseAboveIt) {
  const ProgramResult result = RunPack({"pack", tree(), "--output", dir_ / "a/b/c"});
  EXPECT_EQ(result.status, 0) << result.error;
  EXPECT_EQ(ReadTree(dir_ / "a/b/c").size(), 3U);
}

TEST_F(PackProgram, GivesTheSameBytesForACopyMadeInOtherOrderAndPlace) {
  ExpectPacked();
  const std::map<std::string, std::string> files = SoundPayload();
  const std::string copy = dir_ / "elsewhere, far away/the copy";
  for (auto file = files.rbegin(); file != files.rend(); ++file) {
    WriteFile(copy + "/" + file->first, file->second);
    fs::last_write_time(copy + "/" + file->first, fs::file_time_type::min());
  }
  ProgramOptions options;
  options.environment = {"LC_ALL=tr_TR.UTF-8", "LANG=de_DE.UTF-8", "TZ=Asia/Tokyo"};
  options.directory = dir_.path();
  const ProgramResult result = RunPack(
      {"pack", "elsewhere, far away/the copy/", "--output", "out2", "--level", "1"}, options);
  ASSERT_EQ(result.status, 0) << result.error;
  EXPECT_EQ(Three(dir_ / "out2"), Three(output()));
}

TEST_F(PackProgram, GivesTheSameBytesForAnyNumberOfThreads) {
  // Enough for several of the compressor's jobs, and neither repetitive nor random.
  std::string large;
  std::uint32_t state = 1;
  while (large.size() < (std::size_t{12} << 20)) {
    state = state * 1664525 + 1013904223;
    large += std::to_string(state >> 20);
  }
  Write("libraries/Servo/large.bin", large);
  ExpectPacked({"--threads", "1"});
  const auto expected = Three(output());
  for (const std::string threads : {"2", "3", "64"}) {
    ExpectPacked({"--threads", threads});
    EXPECT_TRUE(Three(output()) == expected) << threads;
  }
  ExpectPacked();
  EXPECT_TRUE(Three(output()) == expected) << "default";
}

TEST_F(PackProgram, ReplacesAnEarlierResult) {
  ExpectPacked();
  const auto before = Three(output());
  Write("libraries/Servo/Servo.h", "changed");
  ExpectPacked();
  EXPECT_NE(Three(output()), before);
}

TEST_F(PackProgram, PacksOddNamesThatAreNoFault) {
  Write("1.8.13/WINDOWS/arduino-core.jar-1.53", "never installed");
  Write("1.8.13/WINDOWS/pde.jar-1.54b9", "never installed");
  Write("libraries/A B/name with blanks & $, ' ; ^ [x] {y} (z) #1 %2 ~3 `4 !5.h", "");
  Write("libraries/aux_/console.c", "");
  Write("libraries/comic/com10.c", "");
  Write("libraries/.hidden/.gitkeep", "");
  ExpectPacked({"--depfile", output() + "/payload.d"});
  EXPECT_EQ(RunPack({"verify", output(), "--tree", tree()}).status, 0);
}

TEST_F(PackProgram, RefusesOutputWithinTheTree) {
  const auto before = ReadTree(tree());
  const ProgramResult result = RunPack({"pack", tree(), "--output", In("packed")});
  EXPECT_EQ(result.error, "quirloduino-pack: " + In("packed") + ": must not lie within the tree\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(ReadTree(tree()), before);
}

TEST_F(PackProgram, RefusesADependencyFileWithinTheTree) {
  ExpectPacked();
  const ProgramResult result = Pack({"--depfile", In("payload.d")});
  EXPECT_EQ(result.error,
            "quirloduino-pack: " + In("payload.d") + ": must not lie within the tree\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(ReadTree(output()).empty());
}

TEST_F(PackProgram, LeavesNothingWhenTheTreeCanNotBeRead) {
  ExpectPacked();
  fs::permissions(output(), fs::perms::all);
  fs::permissions(In("quirlo.exe"), fs::perms::none);
  ProgramOptions options;
  options.ordinary_user = true;
  const ProgramResult result = RunPack({"pack", tree(), "--output", output()}, options);
  EXPECT_EQ(result.error, "quirloduino-pack: quirlo.exe: can't be opened (Permission denied)\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(ReadTree(output()).empty());
}

TEST_F(PackProgram, SaysWhenAFolderCanNotBeRead) {
  fs::permissions(In("libraries/Servo"), fs::perms::none);
  ProgramOptions options;
  options.ordinary_user = true;
  const ProgramResult result = RunPack({"list", tree()}, options);
  EXPECT_EQ(result.error,
            "quirloduino-pack: " + In("libraries/Servo") + ": can't be read (Permission denied)\n");
  EXPECT_EQ(result.status, 2);
  fs::permissions(In("libraries/Servo"), fs::perms::all);
}

TEST_F(PackProgram, SaysWhenTheOutputFolderCanNotBeMade) {
  WriteFile(output(), "a file");
  const ProgramResult result = Pack();
  EXPECT_EQ(result.error,
            "quirloduino-pack: " + output() + ": can't be created (Not a directory)\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(ReadFile(output()), "a file");
}

TEST_F(PackProgram, SaysWhenAnEarlierResultCanNotBeRemoved) {
  WriteFile(output() + "/payload.tbl/in the way", "");
  WriteFile(output() + "/payload.zst", "old");
  const ProgramResult result = Pack();
  EXPECT_EQ(result.error, "quirloduino-pack: " + output() +
                              "/payload.tbl: can't be removed, though it is out of date\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_FALSE(fs::exists(output() + "/payload.zst"));
}

TEST_F(PackProgram, LeavesNothingWhenTheDiskIsFull) {
  std::string noise;
  std::uint32_t state = 7;
  while (noise.size() < 20000) {
    state = state * 1664525 + 1013904223;
    noise += static_cast<char>(state >> 24);
  }
  Write("libraries/Servo/noise.bin", noise);
  // A limit on the size of files stands for the full disk.
  const ProgramResult result =
      RunProgram("/bin/sh", {"-c", "trap '' XFSZ; ulimit -f 8; exec \"$@\"", "sh", PACK_PROGRAM,
                             "pack", tree(), "--output", output()});
  EXPECT_EQ(result.error, "quirloduino-pack: " + output() +
                              "/payload.zst.part: can't be written (File too large)\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_FALSE(fs::exists(output()));
}

TEST_F(PackProgram, ListsIndexSizeAndName) {
  const ProgramResult result = RunPack({"list", tree()});
  std::string expected;
  std::string rest = kTable;
  for (int index = 0; !rest.empty(); ++index) {
    const std::size_t end = rest.find('\n') + 1;
    expected += std::to_string(index) + "\t" + rest.substr(0, end);
    rest.erase(0, end);
  }
  EXPECT_EQ(result.output, expected);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.status, 0);
}

TEST_F(PackProgram, ListRefusesWhatPackRefuses) {
  Remove("quirloduino.txt");
  const ProgramResult result = RunPack({"list", tree()});
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.error, "quirloduino-pack: quirloduino.txt: the version marker is missing\n");
  EXPECT_EQ(result.status, 2);
}

TEST_F(PackProgram, ListSaysWhenTheStreamIsFull) {
  const ProgramResult result =
      RunProgram("/bin/sh", {"-c", "exec \"$@\" >/dev/full", "sh", PACK_PROGRAM, "list", tree()});
  EXPECT_EQ(result.error,
            "quirloduino-pack: standard output: can't be written (No space left on device)\n");
  EXPECT_EQ(result.status, 2);
}

struct UsageCase {
  std::vector<std::string> arguments;
  std::string line;
};

TEST(PackUsage, EndsWithStatus1AndOneLine) {
  const UsageCase cases[] = {
      {{}, "A subcommand is required"},
      {{"unpack"}, "A subcommand is required"},
      {{"pack"}, "TREE is required"},
      {{"pack", "tree"}, "--output is required"},
      {{"pack", "tree", "--output", "o", "--level", "0"}, "--level: Value 0 not in range 1 to 22"},
      {{"pack", "tree", "--output", "o", "--level", "23"},
       "--level: Value 23 not in range 1 to 22"},
      {{"pack", "tree", "--output", "o", "--threads", "0"},
       "--threads: Value 0 not in range 1 to 64"},
      {{"pack", "tree", "--output"}, "--output: 1 required DIR missing"},
      {{"list"}, "TREE is required"},
      {{"list", "a", "b"}, "The following argument was not expected: b"},
      {{"explain", "a"}, "NAME is required"},
      {{"check", "a"}, "--host is required"},
      {{"check", "--host", "a"}, "TREE is required"},
      {{"verify"}, "DIR is required"},
  };
  for (const UsageCase& usage : cases) {
    const ProgramResult result = RunPack(usage.arguments);
    EXPECT_EQ(result.error, "quirloduino-pack: " + usage.line + "\n");
    EXPECT_EQ(result.output, "") << usage.line;
    EXPECT_EQ(result.status, 1) << usage.line;
  }
}

TEST(PackUsage, HelpIsThereForEachSubcommand) {
  for (const std::string subcommand : {"pack", "list", "explain", "check", "verify"}) {
    const ProgramResult result = RunPack({subcommand, "--help"});
    EXPECT_NE(result.output.find("Usage: quirloduino-pack " + subcommand + " [OPTIONS]"),
              std::string::npos)
        << result.output;
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.status, 0);
  }
  EXPECT_NE(RunPack({"--help"}).output.find("Usage: quirloduino-pack [OPTIONS] SUBCOMMAND"),
            std::string::npos);
}

}  // namespace
