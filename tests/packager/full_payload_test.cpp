// scripts/make-full-payload without the making, which takes packages and minutes: its usage, its
// count of a tree, and the choices that it leaves to awk.
#include <sstream>

#include "tests/packager/payload_fixture.h"

namespace {

const std::string kScript = std::string(PROJECT_FOLDER) + "/scripts/make-full-payload";
const std::string kData = std::string(PROJECT_FOLDER) + "/payload/full/";

class FullPayload : public testing::Test {
 protected:
  static ProgramResult Make(const std::vector<std::string>& arguments) {
    return RunProgram(kScript, arguments);
  }

  // The count of a list against figures and names, as the script has it done.
  ProgramResult Count(const std::string& figures, const std::string& names, const std::string& list,
                      const std::string& n = "1", const std::string& d = "1") {
    WriteFile(dir_ / "figures", figures);
    WriteFile(dir_ / "named", names);
    WriteFile(dir_ / "list", list);
    return Awk({"groups.awk", "count.awk"}, {"n=" + n, "d=" + d},
               {dir_ / "figures", dir_ / "named", dir_ / "list"});
  }

  static ProgramResult Awk(const std::vector<std::string>& programs,
                           const std::vector<std::string>& variables,
                           const std::vector<std::string>& files) {
    std::vector<std::string> arguments;
    for (const std::string& program : programs)
      arguments.insert(arguments.end(), {"-f", kData + program});
    for (const std::string& variable : variables)
      arguments.insert(arguments.end(), {"-v", variable});
    arguments.insert(arguments.end(), files.begin(), files.end());
    return RunProgram("/usr/bin/awk", arguments);
  }

  TempDir dir_;
};

const char kFigures[] =
    "1\troot tools\n3\tarm\n12\trelease libraries\n1\tversion marker\n"
    "1\taliases\n17\tentries\n170\tbytes\n";

// Two library files in each of six releases, three of the toolchain, a tool and the marker: 17
// entries.
std::string SoundList() {
  std::ostringstream list;
  list << "0\t40\tquirlo.exe\n1\t100\tarm/bin/c++.exe\n2\t0\tarm/bin/g++.exe --> arm/bin/c++.exe\n"
       << "3\t8\tarm/readme\n";
  int index = 4;
  for (const char* release : {"1.8.13", "1.8.15", "1.8.16", "1.8.19", "1.8.5", "1.8.9"})
    for (const char* file : {"a.h", "b.h"})
      list << index++ << "\t1\t" << release << "/libraries/Servo/" << file << '\n';
  list << "16\t10\tquirloduino.txt\n";
  return list.str();
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos);
  return text.replace(at, from.size(), to);
}

TEST_F(FullPayload, HelpStandsOnTheOutputStream) {
  const ProgramResult result = Make({"--help"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.output.rfind("usage: scripts/make-full-payload ", 0), 0U) << result.output;
}

TEST_F(FullPayload, WrongUsageIsTold) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{}, "which folder?"},
      {{"a", "b"}, "one folder, not two"},
      {{"--nothing", "a"}, "there is no option --nothing"},
      {{"a", "--scale"}, "--scale needs a value"},
      {{"--scale", "1/3", "a"}, "--scale takes 1/8, 1/4, 1/2, 1, 2 or 4"},
  };
  for (const auto& [arguments, line] : cases) {
    const ProgramResult result = Make(arguments);
    EXPECT_EQ(result.status, 1) << line;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error.rfind("make-full-payload: " + line + "\nusage: ", 0), 0U)
        << result.error;
  }
}

TEST_F(FullPayload, LeavesAFolderAloneThatItDidNotMake) {
  WriteFile(dir_ / "mine/file", "mine");
  const ProgramResult result =
      Make({"--tools", TOOLS_FOLDER, "--cache", dir_ / "cache", dir_ / "mine"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.error,
            "make-full-payload: " + (dir_ / "mine") + " is there and was not made here\n");
  EXPECT_EQ(ReadFile(dir_ / "mine/file"), "mine");
}

TEST_F(FullPayload, CountsTheSampleAsMuchTooSmall) {
  const std::string sample = std::string(PROJECT_FOLDER) + "/payload/sample";
  const ProgramResult result = Make({"--verify", "--tools", TOOLS_FOLDER, sample});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.error, "make-full-payload: " + sample + " is not the tree wanted\n");
  for (const char* row :
       {"\n  root tools                     17           17\n", "         2094  WRONG\n",
        "        13570  WRONG\n", "\n  missing: cores/quirlo3/serial4.c\n"})
    EXPECT_NE(result.output.find(row), std::string::npos) << row << result.output;
}

TEST_F(FullPayload, TheGroupsWantedAddUpToTheEntries) {
  std::istringstream figures(ReadFile(kData + "figures"));
  std::map<std::string, long> wanted;
  long sum = 0;
  long number = 0;
  for (std::string label; figures >> number && std::getline(figures >> std::ws, label);
       sum += number)
    wanted[label] = number;
  EXPECT_EQ(sum, 2 * wanted["entries"] + wanted["aliases"] + wanted["bytes"]);
}

TEST_F(FullPayload, ATreeThatMeetsAllFiguresPasses) {
  const ProgramResult result = Count(kFigures, "quirlo.exe\narm/bin/g++.exe\n", SoundList());
  EXPECT_EQ(result.status, 0) << result.output << result.error;
  EXPECT_EQ(result.output.find("WRONG"), std::string::npos) << result.output;
  EXPECT_NE(result.output.find("\n  bytes                         170          170\n"),
            std::string::npos)
      << result.output;
}

TEST_F(FullPayload, EachFigureThatIsOffIsTold) {
  const std::pair<std::string, std::string> cases[] = {
      {Replaced(SoundList(), "\t40\t", "\t41\t"),
       "bytes                         171          170  WRONG"},
      {Replaced(SoundList(), " --> ", "-->"),
       "aliases                         0            1  WRONG"},
      {Replaced(SoundList(), "arm/readme", "rest/readme"), "in no group: rest/readme"},
      {Replaced(SoundList(), "1.8.5/libraries", "1.8.9/libraries"),
       "release 1.8.9 has 3 library files"},
      {SoundList() + "17\t0\tmore.exe\n", "entries                        18           17  WRONG"},
      {Replaced(SoundList(), "quirlo.exe", "other.exe"), "missing: quirlo.exe"},
  };
  for (const auto& [list, told] : cases) {
    const ProgramResult result = Count(kFigures, "quirlo.exe\n", list);
    EXPECT_EQ(result.status, 1) << told;
    EXPECT_NE(result.output.find("\n  " + told + "\n"), std::string::npos) << told << result.output;
  }
}

TEST_F(FullPayload, AScaledTreeIsHeldToItsShareAsAWhole) {
  const std::string twice =
      Replaced(Replaced(kFigures, "17\tentries", "34\tentries"), "170\t", "340\t");
  EXPECT_EQ(
      Count(Replaced(twice, "1\taliases", "2\taliases"), "absent\n", SoundList(), "1", "2").status,
      0);
  EXPECT_EQ(Count(twice, "", Replaced(SoundList(), "\t40\t", "\t41\t"), "1", "2").status, 1);
}

TEST_F(FullPayload, PicksOriginalsAndCopiesInTheNumbersWanted) {
  const std::string pool =
      "x\t1\tarm/a\t/1\n"
      "x\t1\tarm/b\t/2\n"
      "x\t1\tarm/c\t/3\n"  // a copy too many
      "y\t1\tarm/A\t/4\n"  // only its case tells it from one that was picked
      "y\t1\tarm/d\t/5\n"
      "z\t1\tarm/e\t/6\n";  // an original too many
  WriteFile(dir_ / "pool", pool);
  const ProgramResult enough = Awk({"pick_arm.awk"}, {"plain=2", "aliases=1"}, {dir_ / "pool"});
  EXPECT_EQ(enough.status, 0);
  EXPECT_EQ(enough.output, "arm/a\t/1\narm/b\t/2\narm/d\t/5\n");
  const ProgramResult short_of = Awk({"pick_arm.awk"}, {"plain=4", "aliases=1"}, {dir_ / "pool"});
  EXPECT_EQ(short_of.status, 1);
  EXPECT_EQ(short_of.error, "too few toolchain files: 3 plain, 1 copies\n");
}

TEST_F(FullPayload, PlacesSourcesUnderNamesThatWindowsTakes) {
  WriteFile(dir_ / "folders", "1\tlibraries/One\n1\tlibraries/Two\n");
  WriteFile(dir_ / "files", "9\t/p/Lib/a.h\n9\t/p/lib/A.h\n9\t/q/aux/com1.c\n9\t/q/x.y/b.c\n");
  const ProgramResult all =
      Awk({"place_sources.awk"}, {"count=4", "folders=" + (dir_ / "folders")}, {dir_ / "files"});
  EXPECT_EQ(all.output,
            "libraries/One/lib/a.h\t/p/Lib/a.h\n"
            "libraries/One/lib2/A.h\t/p/lib/A.h\n"
            "libraries/Two/xaux/xcom1.c\t/q/aux/com1.c\n"
            "libraries/Two/x_y/b.c\t/q/x.y/b.c\n");
  EXPECT_EQ(
      Awk({"place_sources.awk"}, {"count=5", "folders=" + (dir_ / "folders")}, {dir_ / "files"})
          .status,
      1);
}

TEST_F(FullPayload, AHalfKeepsTargetsNeededFilesAndTheBytes) {
  // In order of size, as the script gives it. Of the four in the toolchain two stay, an alias'
  // target among them; the filler takes what is missing to the bytes wanted.
  WriteFile(dir_ / "list",
            "1\t900000\tarm/big\n"
            "2\t500000\tarm/bin/c++.exe\n"
            "3\t300000\tarm/middle\n"
            "4\t100000\tarm/small\n"
            "5\t8\t1.8.19/libraries/Servo/a.h\n"
            "6\t8\t1.8.5/libraries/Servo/a.h\n"
            "7\t6\t1.8.19/libraries/Servo/b.h\n"
            "8\t6\t1.8.5/libraries/Servo/b.h\n"
            "9\t5\tvscode_plugins.exe\n"
            "10\t0\tarm/bin/g++.exe --> arm/bin/c++.exe\n"
            "11\t0\tarm/bin/gcc.exe --> arm/bin/c++.exe\n");
  const ProgramResult result =
      Awk({"groups.awk", "scale_down.awk"}, {"n=1", "d=2", "bytes=900012"}, {dir_ / "list"});
  EXPECT_EQ(result.status, 0) << result.error;
  EXPECT_EQ(result.output,
            "link\tarm/bin/c++.exe\n"
            "link\tarm/middle\n"
            "link\t1.8.19/libraries/Servo/a.h\n"
            "link\t1.8.5/libraries/Servo/a.h\n"
            "cut\tvscode_plugins.exe\t99996\n"
            "link\tarm/bin/g++.exe\n");
}

TEST_F(FullPayload, ACounterpartStandsInTheSameGroup) {
  WriteFile(dir_ / "list",
            "0\t9\tquirlo.exe\n"
            "1\t9\tarm/bin/c++.exe\n"
            "2\t0\tarm/bin/g++.exe --> arm/bin/c++.exe\n"
            "3\t9\t1.8.5/WINDOWS/directory_criteria.txt\n"
            "4\t9\t1.8.5/WINDOWS/pde.jar/app/Base$18.class\n"
            "5\t9\t1.8.5/libraries/Servo/Servo.h\n"
            "6\t9\texamples/Blink/Blink.ino\n"
            "7\t9\tcores/keywords.txt\n"
            "8\t9\tcores/quirlo/main.cpp\n"
            "9\t9\tlibraries/ADC/ADC.h\n"
            "10\t9\tlibraries/ADC.txt\n");
  EXPECT_EQ(Awk({"scale_up.awk"}, {"k=2"}, {dir_ / "list"}).output,
            "turn\tavrquirlo/2/quirlo.exe\tquirlo.exe\n"
            "turn\tavrquirlo/2/arm/bin/c++.exe\tarm/bin/c++.exe\n"
            "link\tarm/2/bin/g++.exe\tarm/bin/g++.exe\n"
            "turn\tavrquirlo/2/1.8.5_WINDOWS_directory_criteria.txt\t1.8.5/WINDOWS/"
            "directory_criteria.txt\n"
            "turn\t1.8.5/WINDOWS/pde.jar/copy2/app/Base$18.class\t1.8.5/WINDOWS/pde.jar/app/"
            "Base$18.class\n"
            "turn\t1.8.5/libraries/Servo_2/Servo.h\t1.8.5/libraries/Servo/Servo.h\n"
            "turn\texamples/copy2/Blink/Blink.ino\texamples/Blink/Blink.ino\n"
            "turn\tavrquirlo/2/cores_keywords.txt\tcores/keywords.txt\n"
            "turn\tcores/quirlo_2/main.cpp\tcores/quirlo/main.cpp\n"
            "turn\tlibraries/ADC_2/ADC.h\tlibraries/ADC/ADC.h\n"
            "turn\tavrquirlo/2/libraries_ADC.txt\tlibraries/ADC.txt\n");
}

}  // namespace
