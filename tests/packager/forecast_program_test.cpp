// quirloduino-pack list and explain as a person and a script call them, on a tree and on an
// installer.
#include <filesystem>

#include "tests/packager/payload_fixture.h"

namespace {

class ForecastProgram : public PayloadTest {
 protected:
  static void ExpectPrinted(const std::vector<std::string>& arguments, const std::string& output) {
    const ProgramResult result = RunPack(arguments);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output, output);
    EXPECT_EQ(result.status, 0);
  }

  static void ExpectRefusal(const std::vector<std::string>& arguments, const std::string& line) {
    const ProgramResult result = RunPack(arguments);
    EXPECT_EQ(result.error, "quirloduino-pack: " + line + "\n");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 2);
  }
};

TEST_F(ForecastProgram, TellsForEachEntryWhereItLandsAndByWhichRule) {
  Write("notes.md", "of no use to anybody\n");
  Write("libraries/Servo.txt", "moves");
  ExpectPrinted(
      {"list", tree(), "--release", "1.8.5"},
      "0\t4\tquirlo.exe\tfolder/quirlo.exe\ttool\n"
      "1\t21\tnotes.md\tnowhere\tno rule\n"
      "2\t8\tarm/bin/arm-none-eabi-c++.exe\tfolder/arm/bin/arm-none-eabi-c++.exe\ttoolchain\n"
      "3\t0\tarm/bin/arm-none-eabi-g++.exe --> "
      "arm/bin/arm-none-eabi-c++.exe\tfolder/arm/bin/arm-none-eabi-g++.exe\ttoolchain, alias\n"
      "4\t76\t1.8.13/WINDOWS/directory_criteria.txt\tnowhere\tanother release's\n"
      "5\t296\t1.8.13/WINDOWS/locations.txt\tnowhere\tanother release's\n"
      "6\t15\t1.8.13/WINDOWS/pde.jar/processing/app/Base$18.class\tnowhere\tanother release's\n"
      "7\t76\t1.8.19/WINDOWS/directory_criteria.txt\tnowhere\tanother release's\n"
      "8\t296\t1.8.19/WINDOWS/locations.txt\tnowhere\tanother release's\n"
      "9\t15\t1.8.19/WINDOWS/pde.jar/processing/app/Base$18.class\tnowhere\tanother release's\n"
      "10\t76\t1.8.5/WINDOWS/directory_criteria.txt\tnowhere\trest of WINDOWS/, not installed\n"
      "11\t296\t1.8.5/WINDOWS/locations.txt\tnowhere\trest of WINDOWS/, not installed\n"
      "12\t14\t1.8.5/WINDOWS/pde.jar/processing/app/Base$18.class\tlib/some.jar: "
      "processing/app/Base$18.class\tclass of pde.jar\n"
      "13\t8\tcores/keywords.txt\tfolder/keywords.txt\tkeywords of the cores\n"
      "14\t4\tcores/quirlo3/main.cpp\tfolder/quirlo3/main.cpp\tcore\n"
      "15\t5\tlibraries/Servo/Servo.h\tfolder/Servo/Servo.h\tlibrary\n"
      "16\t5\tlibraries/Servo.txt\tnowhere\tlibrary's text or picture, for the library page\n"
      "17\t16\t1.8.13/boards.txt\tnowhere\tanother release's\n"
      "18\t18\t1.8.13/platform.txt\tnowhere\tanother release's\n"
      "19\t16\t1.8.19/boards.txt\tnowhere\tanother release's\n"
      "20\t18\t1.8.19/platform.txt\tnowhere\tanother release's\n"
      "21\t15\t1.8.5/boards.txt\tfolder/boards.txt\tboard list\n"
      "22\t17\t1.8.5/platform.txt\tfolder/platform.txt\tplatform description\n"
      "23\t10\tquirloduino.txt\tfolder/quirloduino.txt\tversion marker\n");
}

TEST_F(ForecastProgram, CountsByRuleForEachReleaseAndForOne) {
  ExpectPrinted(
      {"list", tree(), "--summary"},
      "entries by rule                                        1.8.5    1.8.13    1.8.19\n"
      "another release's                                         10        10        10\n"
      "board list                                                 1         1         1\n"
      "platform description                                       1         1         1\n"
      "tool                                                       1         1         1\n"
      "version marker                                             1         1         1\n"
      "toolchain, alias                                           1         1         1\n"
      "toolchain                                                  1         1         1\n"
      "class of pde.jar                                           1         1         1\n"
      "rest of WINDOWS/, not installed                            2         2         2\n"
      "keywords of the cores                                      1         1         1\n"
      "core                                                       1         1         1\n"
      "library                                                    1         1         1\n"
      "all                                                       22        22        22\n");
  ExpectPrinted({"list", tree(), "--summary", "--release", "1.8.13"},
                "entries by rule                                       1.8.13\n"
                "another release's                                         10\n"
                "board list                                                 1\n"
                "platform description                                       1\n"
                "tool                                                       1\n"
                "version marker                                             1\n"
                "toolchain, alias                                           1\n"
                "toolchain                                                  1\n"
                "class of pde.jar                                           1\n"
                "rest of WINDOWS/, not installed                            2\n"
                "keywords of the cores                                      1\n"
                "core                                                       1\n"
                "library                                                    1\n"
                "all                                                       22\n");
}

TEST_F(ForecastProgram, GivesJson) {
  ExpectPrinted({"list", tree(), "--summary", "--release", "1.8.13", "--json"},
                "{\n"
                "  \"1.8.13\": {\n"
                "    \"another release's\": 10,\n"
                "    \"board list\": 1,\n"
                "    \"platform description\": 1,\n"
                "    \"tool\": 1,\n"
                "    \"version marker\": 1,\n"
                "    \"toolchain, alias\": 1,\n"
                "    \"toolchain\": 1,\n"
                "    \"class of pde.jar\": 1,\n"
                "    \"rest of WINDOWS/, not installed\": 2,\n"
                "    \"keywords of the cores\": 1,\n"
                "    \"core\": 1,\n"
                "    \"library\": 1\n"
                "  }\n"
                "}\n");
  ExpectPrinted({"explain", tree(), "arm/bin/arm-none-eabi-g++.exe", "--json"},
                "{\n"
                "  \"index\": 2,\n"
                "  \"size\": 0,\n"
                "  \"name\": \"arm/bin/arm-none-eabi-g++.exe --> arm/bin/arm-none-eabi-c++.exe\",\n"
                "  \"group\": \"arm/\",\n"
                "  \"alias_of\": \"arm/bin/arm-none-eabi-c++.exe\",\n"
                "  \"aliases\": [],\n"
                "  \"releases\": {\n"
                "    \"1.8.5\": {\n"
                "      \"action\": \"file\",\n"
                "      \"path\": \"folder/arm/bin/arm-none-eabi-g++.exe\",\n"
                "      \"content_of\": \"arm/bin/arm-none-eabi-c++.exe\",\n"
                "      \"rule\": \"toolchain, alias\"\n"
                "    },\n"
                "    \"1.8.13\": {\n"
                "      \"action\": \"file\",\n"
                "      \"path\": \"folder/arm/bin/arm-none-eabi-g++.exe\",\n"
                "      \"content_of\": \"arm/bin/arm-none-eabi-c++.exe\",\n"
                "      \"rule\": \"toolchain, alias\"\n"
                "    },\n"
                "    \"1.8.19\": {\n"
                "      \"action\": \"file\",\n"
                "      \"path\": \"folder/arm/bin/arm-none-eabi-g++.exe\",\n"
                "      \"content_of\": \"arm/bin/arm-none-eabi-c++.exe\",\n"
                "      \"rule\": \"toolchain, alias\"\n"
                "    }\n"
                "  }\n"
                "}\n");
  const std::string all = RunPack({"list", tree(), "--json"}).output;
  EXPECT_TRUE(
      all.starts_with("[\n  {\n    \"index\": 0,\n    \"size\": 4,\n"
                      "    \"name\": \"quirlo.exe\"\n  },\n"))
      << all;
  const std::string landing = RunPack({"list", tree(), "--json", "--release", "1.8.5"}).output;
  EXPECT_TRUE(
      landing.starts_with("[\n  {\n    \"index\": 0,\n    \"size\": 4,\n"
                          "    \"name\": \"quirlo.exe\",\n    \"action\": \"file\",\n"
                          "    \"path\": \"folder/quirlo.exe\",\n"
                          "    \"rule\": \"tool\"\n  },\n"))
      << landing;
}

TEST_F(ForecastProgram, ExplainsAFileAnAliasAndItsTarget) {
  ExpectPrinted({"explain", tree(), "1.8.5/WINDOWS/pde.jar/processing/app/Base$18.class"},
                "1.8.5/WINDOWS/pde.jar/processing/app/Base$18.class\n"
                "  index 11 of 22 entries, group release WINDOWS/, 14 bytes\n"
                "  1.8.5: lib/some.jar: processing/app/Base$18.class (class of pde.jar)\n"
                "  1.8.13: nowhere (another release's)\n"
                "  1.8.19: nowhere (another release's)\n");
  ExpectPrinted({"explain", tree(), "arm/bin/arm-none-eabi-g++.exe"},
                "arm/bin/arm-none-eabi-g++.exe\n"
                "  index 2 of 22 entries, group arm/\n"
                "  an alias: has the content of arm/bin/arm-none-eabi-c++.exe\n"
                "  1.8.5: folder/arm/bin/arm-none-eabi-g++.exe (toolchain, alias)\n"
                "  1.8.13: folder/arm/bin/arm-none-eabi-g++.exe (toolchain, alias)\n"
                "  1.8.19: folder/arm/bin/arm-none-eabi-g++.exe (toolchain, alias)\n");
  ExpectPrinted({"explain", tree(), "arm/bin/arm-none-eabi-c++.exe"},
                "arm/bin/arm-none-eabi-c++.exe\n"
                "  index 1 of 22 entries, group arm/, 8 bytes\n"
                "  its content also goes to arm/bin/arm-none-eabi-g++.exe\n"
                "  1.8.5: folder/arm/bin/arm-none-eabi-c++.exe (toolchain)\n"
                "  1.8.13: folder/arm/bin/arm-none-eabi-c++.exe (toolchain)\n"
                "  1.8.19: folder/arm/bin/arm-none-eabi-c++.exe (toolchain)\n");
}

TEST_F(ForecastProgram, RefusesWhatThePayloadDoesNotHave) {
  ExpectRefusal({"list", tree(), "--release", "1.8.16"}, "1.8.16: the payload has no such release");
  ExpectRefusal({"list", tree(), "--summary", "--release", "1.8.16"},
                "1.8.16: the payload has no such release");
  ExpectRefusal({"explain", tree(), "arm/bin"}, "arm/bin: the payload has no such file");
}

TEST_F(ForecastProgram, ToldOfAnInstallerTooWithoutRunningIt) {
  const std::string installer = FIXED_INSTALLER;
  ExpectPrinted({"explain", installer, "libraries/Echo/empty.h"},
                "libraries/Echo/empty.h\n"
                "  index 6 of 11 entries, group libraries/, 0 bytes\n"
                "  1.8.19: some/Echo/empty.h (library)\n");
  const ProgramResult listed = RunPack({"list", installer, "--release", "1.8.19"});
  EXPECT_NE(listed.output.find("\tarm/bin/g++.exe --> arm/bin/c++.exe\t"), std::string::npos)
      << listed.output << listed.error;
}

TEST_F(ForecastProgram, AFullDiskIsTold) {
  const ProgramResult result = RunProgram(
      "/bin/sh", {"-c", std::string(PACK_PROGRAM) + " list --summary '" + tree() + "' >/dev/full"});
  EXPECT_EQ(result.error,
            "quirloduino-pack: standard output: can't be written (No space left on device)\n");
  EXPECT_EQ(result.status, 2);
}

}  // namespace
