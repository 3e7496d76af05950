#include "tests/support/arduino_host.h"

#include <filesystem>

#include "tests/support/jars.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

const char kCriteria1819[] =
    "version:lib/version.txt\n"
    "file:arduino.exe\n"
    "file:arduino_debug.exe\n"
    "file:lib/jssc-2.8.0-arduino4.jar\n"
    "zipcksum:lib/pde.jar 2401002797 66872 3533158812 66872 processing/app/Base.class\n"
    "zipcksum:lib/pde.jar 3631316189 65130 2413777285 64137 processing/app/Editor.class\n"
    "zipcksum:lib/pde.jar 2438169598 20990 2438169598 20990 "
    "processing/app/SketchController.class\n"
    "zipcksum:lib/arduino-core.jar 615671971 29175 615671971 29175 2188870677 28203 "
    "processing/app/BaseNoGui.class\n"
    "zipcksum:lib/arduino-core.jar 3813022956 31096 1630912337 31122 2678590597 27999 "
    "cc/arduino/Compiler.class\n"
    "zipcksum:lib/arduino-core.jar 1881501952 925 1881501952 925 1881501952 925 "
    "processing/app/debug/TargetPlatform.class\n";

const char kLocations[] =
    "# OS_LINUX\n"
    "# location to install binary tools\n"
    "TOOL_SUBDIR\t\t\"hardware/tools/\"\n"
    "# location to install plugin tools JAR file\n"
    "PLUGIN_SUBDIR\t\t\"tools/\"\n"
    "# location to install ARM math library\n"
    "ARMLIB_SUBDIR\t\t\"hardware/tools/arm/arm-none-eabi/lib/\"\n"
    "# location of the libraries\n"
    "LIBRARY_SUBDIR\t\t\"hardware/quirlo/avr/libraries/\"\n"
    "# location of the cores\n"
    "CORES_SUBDIR\t\t\"hardware/quirlo/avr/cores/\"\n"
    "# location of the keywords file\n"
    "KEYWORDS_SUBDIR\t\t\"lib/\"\n"
    "# location of the version.txt file\n"
    "VERSION_SUBDIR\t\t\"lib/\"\n"
    "# location of the examples\n"
    "EXAMPLES_SUBDIR\t\t\"examples/\"\n"
    "# location of boards.txt & platform.txt\n"
    "BOARDS_SUBDIR\t\t\"hardware/quirlo/avr/\"\n"
    "# jar file that contains Compiler.class, etc\n"
    "ARDUINO_JAR_FILE1\t\"lib/pde.jar\"\n"
    "ARDUINO_JAR_FILE2\t\"lib/arduino-core.jar\"\n";

namespace {

void Make(const std::string& folder) {
  WriteFile(folder + "/lib/version.txt", "1.8.19\n");
  WriteFile(folder + "/arduino.exe", "the IDE");
  WriteFile(folder + "/arduino_debug.exe", "the IDE, with a console");
  WriteFile(folder + "/lib/jssc-2.8.0-arduino4.jar", "a serial library");
  WriteFile(folder + "/examples/01.Basics/Blink.ino", "void loop() {}\n");
  WriteJar(folder + "/lib/pde.jar",
           {{"processing/app/Base.class", ForgeMember(2401002797, 66872)},
            {"processing/app/Editor.class", ForgeMember(2413777285, 64137)},
            {"processing/app/SketchController.class", ForgeMember(2438169598, 20990)},
            {"processing/app/EditorTab.class", "the IDE's own EditorTab"},
            {"other/Untouched.class", "stays as it is"}});
  WriteJar(folder + "/lib/arduino-core.jar",
           {{"processing/app/BaseNoGui.class", ForgeMember(615671971, 29175)},
            {"cc/arduino/Compiler.class", ForgeMember(1630912337, 31122)},
            {"processing/app/debug/TargetPlatform.class", ForgeMember(1881501952, 925)},
            {"cc/arduino/UploaderUtils.class", "the IDE's own UploaderUtils"},
            {"other/Untouched.class", "stays as it is"}});
}

}  // namespace

void MakeArduino1819(const std::string& folder) {
  static const TempDir made;
  const std::string master = made / "arduino";
  if (!fs::exists(master)) Make(master);
  fs::create_directories(folder);
  fs::copy(master, folder, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

std::vector<TestEntry> ControlEntries1819() {
  return {{"1.8.19/WINDOWS/directory_criteria.txt", kCriteria1819},
          {"1.8.19/WINDOWS/locations.txt", kLocations}};
}

std::vector<TestEntry> SmallPayload1819() {
  return {
      {"quirlo_reboot.exe", "reboots"},
      {"Q4Security.jar", "plugin"},
      {"vscode_plugins.exe", "installed by no rule"},
      {"arm/bin/arm-none-eabi-c++.exe", "compiles"},
      {"arm/bin/arm-none-eabi-g++.exe --> arm/bin/arm-none-eabi-c++.exe", ""},
      {"cdcacm.cat", "catalog"},
      {"cdcacm.inf", "driver"},
      {"1.8.19/WINDOWS/arduino-core.jar/cc/arduino/Compiler.class", "our Compiler"},
      {"1.8.19/WINDOWS/directory_criteria.txt", kCriteria1819},
      {"1.8.19/WINDOWS/locations.txt", kLocations},
      {"1.8.19/WINDOWS/pde.jar/processing/app/Added.class", "our Added"},
      {"1.8.19/WINDOWS/pde.jar/processing/app/Base.class", "our Base"},
      {"1.8.19/libraries/Servo/Servo.h", "servo"},
      {"1.8.19/examples/readme.md", "read me"},
      {"examples/Quirlo/Blink.ino", "blink"},
      {"cores/keywords.txt", "keywords"},
      {"cores/quirlo3/serial4.c", "serial"},
      {"cores/quirlo4/libc.c", "// this file no longer used\n"},
      {"libraries/OneWire.txt", "description"},
      {"libraries/OneWire/OneWire.cpp", "one wire"},
      {"libraries/Ping/Ping.h", "ping"},
      {"armlib/libarm_cortexM4l_math.a", "math"},
      {"quirlo_icon.png", "picture"},
      {"1.8.19/boards.txt", "boards"},
      {"1.8.19/platform.txt", "platform"},
      {"quirloduino.txt", "1.60-beta5"},
  };
}
