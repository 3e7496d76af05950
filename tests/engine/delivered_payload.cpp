#include "tests/engine/delivered_payload.h"

#include <cstdio>
#include <string>
#include <utility>

#include "tests/support/arduino_host.h"

const char kUnusedMark[] = "// this file no longer used\n";

namespace {

struct Release {
  const char* name;
  int ide_classes;
  int core_classes;
};

// As sorted texts. Each release also has its two control files, and 1.8.13 two whole jars.
constexpr Release kReleases[] = {{"1.8.13", 58, 10}, {"1.8.15", 53, 9}, {"1.8.16", 54, 9},
                                 {"1.8.19", 53, 8},  {"1.8.5", 52, 8},  {"1.8.9", 52, 8}};

constexpr const char* kRootTools[] = {
    "quirlo.exe",           "quirlo_post_compile.exe", "quirlo_reboot.exe",  "quirlo_cleanup.exe",
    "quirlo_size.exe",      "quirlo_restart.exe",      "quirlo_gateway.exe", "quirlo_ports.exe",
    "quirlo_serialmon.exe", "quirlo_secure.exe",       "Q4Security.jar",     "mktinyfat.exe",
    "stdout_redirect.exe",  "precompile_helper.exe",   "vscode_plugins.exe", "post_install.bat",
    "pre_uninstall.bat"};

constexpr const char* kCores[] = {"quirlo",        "quirlo3",       "quirlo4",  "usb_disk",
                                  "usb_flightsim", "usb_hid",       "usb_midi", "usb_rawhid",
                                  "usb_serial",    "usb_serial_hid"};

// Entries of a group are numbered from here on, four digits each.
std::string Numbered(const char* format, int number) {
  char text[16];
  std::snprintf(text, sizeof text, "%04d", number);
  std::string name = format;
  return name.replace(name.find('#'), 1, text);
}

class Builder {
 public:
  void Add(const std::string& name) { entries_.push_back({name, name}); }
  void Add(const std::string& name, const std::string& content) {
    entries_.push_back({name, content});
  }
  // `count` entries; '#' in the name stands for the number.
  void AddNumbered(const std::string& format, int count) {
    for (int i = 0; i < count; ++i) Add(Numbered(format.c_str(), i));
  }
  std::vector<TestEntry> Take() { return std::move(entries_); }

 private:
  std::vector<TestEntry> entries_;
};

void AddToolchain(Builder* builder) {
  builder->Add("arm/bin/arm-none-eabi-as.exe");
  builder->Add("arm/bin/arm-none-eabi-c++.exe");
  builder->AddNumbered("arm/lib/gcc/file#.o", 1724);
  builder->Add("arm/bin/arm-none-eabi-g++.exe --> arm/bin/arm-none-eabi-c++.exe", "");
  // The longest left side has 96 characters.
  builder->Add("arm/" + std::string(92, 'n') + " --> arm/bin/arm-none-eabi-as.exe", "");
  for (int i = 0; i < 366; ++i) {
    builder->Add(Numbered("arm/lib/same#.o", i) + Numbered(" --> arm/lib/gcc/file#.o", i * 4), "");
  }
}

void AddWindowsTree(Builder* builder, const Release& release) {
  const std::string tree = std::string(release.name) + "/WINDOWS/";
  const bool has_whole_jars = std::string(release.name) == "1.8.13";
  builder->Add(tree + "arduino-core.jar/cc/arduino/Compiler.class");
  builder->AddNumbered(tree + "arduino-core.jar/processing/app/Core$#.class",
                       release.core_classes - 1);
  if (has_whole_jars) builder->Add(tree + "arduino-core.jar-1.53");
  builder->Add(tree + "directory_criteria.txt");
  builder->Add(tree + "locations.txt", kLocations);
  builder->Add(tree + "pde.jar/processing/app/Base$18.class");
  builder->Add(tree + "pde.jar/processing/app/Base.class");
  builder->AddNumbered(tree + "pde.jar/processing/app/Editor$#.class", release.ide_classes - 2);
  if (has_whole_jars) builder->Add(tree + "pde.jar-1.54b9");
}

void AddReleaseLibraries(Builder* builder, const Release& release) {
  const std::string tree = std::string(release.name) + "/libraries/";
  builder->Add(tree + "EEPROM/EEPROM.cpp", kUnusedMark);
  builder->Add(tree + "LiquidCrystal/LiquidCrystal.cpp", kUnusedMark);
  builder->Add(tree + "LiquidCrystal/LiquidCrystal.h", kUnusedMark);
  builder->Add(tree + "SdFat/src/ExFatLib/upcase.cpp", kUnusedMark);
  builder->Add(tree + "Servo/Servo.h");
  builder->AddNumbered(tree + "Wire/file#.h", 960);
}

void AddReleaseExamples(Builder* builder, const Release& release) {
  const std::string tree = std::string(release.name) + "/examples/";
  builder->AddNumbered(tree + "Release/sketch#.ino", 7);
  builder->Add(tree + "readme.md");
}

void AddCores(Builder* builder) {
  builder->Add("cores/keywords.txt");
  builder->Add("cores/quirlo3/serial4.c");
  builder->Add("cores/quirlo4/libc.c", kUnusedMark);
  for (int i = 0; i < 398; ++i) {
    const char* below = i < 350 ? "/file#.h" : "/util/avr/file#.h";
    builder->Add("cores/" + std::string(kCores[i % 10]) + Numbered(below, i));
  }
}

void AddLibraries(Builder* builder) {
  builder->Add("libraries/DogLcd.png");
  builder->Add("libraries/XPT2046_Touchscreen.txt");
  builder->AddNumbered("libraries/Library#.txt", 59);
  builder->AddNumbered("libraries/Library#.png", 14);
  builder->Add("libraries/AccelStepper/keywords.txt");
  builder->Add("libraries/FastLED/src/fastspi_dma.h", "");
  builder->Add("libraries/FastLED/src/empty_a.h", "");
  builder->Add("libraries/FastLED/src/empty_b.h", "");
  builder->Add("libraries/USBHost_q36/keyboardHIDExtras.cpp", kUnusedMark);
  for (int i = 0; i < 4677; ++i) {
    builder->Add(Numbered("libraries/Library#/", i / 78) + Numbered("file#.h", i));
  }
}

}  // namespace

std::vector<TestEntry> DeliveredPayload() {
  Builder builder;
  for (const char* tool : kRootTools) builder.Add(tool);
  AddToolchain(&builder);
  builder.Add("cdcacm.cat");
  builder.Add("cdcacm.inf");
  for (const Release& release : kReleases) AddWindowsTree(&builder, release);
  for (const Release& release : kReleases) AddReleaseLibraries(&builder, release);
  for (const Release& release : kReleases) AddReleaseExamples(&builder, release);
  builder.AddNumbered("examples/Quirlo/sketch#/sketch.ino", 51);
  AddCores(&builder);
  AddLibraries(&builder);
  for (const char* core : {"M0", "M0p", "M4l", "M7l"}) {
    builder.Add("armlib/libarm_cortex" + std::string(core) + "_math.a");
  }
  for (const char* image :
       {"final.png", "sc.png", "screenshot.png", "quirlo_icon.png", "quirlo_main.png"}) {
    builder.Add(image);
  }
  for (const Release& release : kReleases) {
    builder.Add(std::string(release.name) + "/boards.txt");
    builder.Add(std::string(release.name) + "/platform.txt");
  }
  builder.Add("quirloduino.txt", "1.60-beta5");
  return builder.Take();
}
