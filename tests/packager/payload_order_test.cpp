#include "packager/payload_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

// One list with a name of every kind, in the order in which the table must have them.
const std::vector<std::string> kOrdered = {
    "quirlo.exe",
    "quirlo_post_compile.exe",
    "quirlo_reboot.exe",
    "quirlo_cleanup.exe",
    "quirlo_size.exe",
    "quirlo_restart.exe",
    "quirlo_gateway.exe",
    "quirlo_ports.exe",
    "quirlo_serialmon.exe",
    "quirlo_secure.exe",
    "Q4Security.jar",
    "mktinyfat.exe",
    "stdout_redirect.exe",
    "precompile_helper.exe",
    "vscode_plugins.exe",
    "post_install.bat",
    "pre_uninstall.bat",
    "another.exe",
    "Zebra.exe",
    "arm/bin/c++.exe",
    "arm/bin/g++.exe --> arm/bin/c++.exe",
    "arm/lib/libc.a",
    "arm-none-eabi/bin/as.exe",
    "avrquirlo/bin/x.exe",
    "otherlibs/WINDOWS/x.dll",
    "cdcacm.cat",
    "cdcacm.inf",
    "1.8.13/WINDOWS/arduino-core.jar/cc/arduino/Compiler.class",
    "1.8.13/WINDOWS/arduino-core.jar/processing/app/Base.class",
    "1.8.13/WINDOWS/arduino-core.jar-1.53",
    "1.8.13/WINDOWS/directory_criteria.txt",
    "1.8.13/WINDOWS/locations.txt",
    "1.8.13/WINDOWS/pde.jar/processing/app/Base$18.class",
    "1.8.13/WINDOWS/pde.jar-1.54b9",
    "1.8.15/WINDOWS/locations.txt",
    "1.8.16/WINDOWS/locations.txt",
    "1.8.19/WINDOWS/locations.txt",
    "1.8.5/WINDOWS/locations.txt",
    "1.8.9/WINDOWS/locations.txt",
    "1.8.13/libraries/Servo/Servo.h",
    "1.8.5/libraries/Servo/Servo.h",
    "1.8.13/examples/01/a.ino",
    "1.8.5/examples/01/a.ino",
    "1.8.13/keywords.txt",
    "1.8.13/keywords_quirlo.txt",
    "1.8.13/processing/app/Base.java",
    "1.8.13/theme.txt",
    "1.8.5/keywords.txt",
    "examples/01/a.ino",
    "cores/keywords.txt",
    "cores/quirlo/a.c",
    "cores/quirlo3/a.c",
    "libraries/AccelStepper/a.h",
    "libraries/Adafruit_NeoPixel/a.h",
    "libraries/Adafruit_nRF8001/a.h",
    "libraries/Adafruit_STMPE610/a.h",
    "libraries/Adafruit_VS1053/a.h",
    "libraries/ADC/a.h",
    "libraries/AltSoftSerial/a.h",
    "libraries/Artnet/a.h",
    "libraries/Audio/a.h",
    "libraries/Audio/b.h",
    "libraries/Audio-effects/a.h",
    "libraries/Audio.txt",
    "armlib/libarm_cortexM4l_math.a",
    "docs/readme.txt",
    "images/not_in_the_root.png",
    "final.png",
    "sc.png",
    "screenshot.png",
    "quirlo_icon.png",
    "quirlo_main.png",
    "another.png",
    "1.8.13/boards.txt",
    "1.8.13/platform.txt",
    "1.8.5/boards.txt",
    "1.8.5/platform.txt",
    "quirloduino.txt",
};

TEST(PayloadOrder, IsFoundAgainFromAnyOrder) {
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same shuffles every time
  for (int round = 0; round < 20; ++round) {
    std::vector<std::string> names = kOrdered;
    std::shuffle(names.begin(), names.end(), random);
    std::sort(names.begin(), names.end(), ComesBefore);
    EXPECT_EQ(names, kOrdered);
  }
}

TEST(PayloadOrder, IsStrictForEveryPair) {
  for (std::size_t i = 0; i < kOrdered.size(); ++i) {
    for (std::size_t k = 0; k < kOrdered.size(); ++k) {
      EXPECT_EQ(ComesBefore(kOrdered[i], kOrdered[k]), i < k) << kOrdered[i] << ", " << kOrdered[k];
    }
  }
}

TEST(PayloadOrder, ByteOrderBreaksATieOfCase) {
  EXPECT_TRUE(ComesBefore("libraries/A/x", "libraries/a/x"));
  EXPECT_FALSE(ComesBefore("libraries/a/x", "libraries/A/x"));
}

TEST(PayloadOrder, BoardFilesDeeperInAReleaseAreNoBoardFiles) {
  EXPECT_EQ(GroupOf("1.8.5/boards.txt"), PayloadGroup::kReleaseBoards);
  EXPECT_EQ(GroupOf("1.8.5/old/boards.txt"), PayloadGroup::kReleaseOther);
  EXPECT_EQ(GroupOf("boards.txt"), PayloadGroup::kRootTools);
}

TEST(PayloadOrder, MarkerDeeperInTheTreeIsNoMarker) {
  EXPECT_EQ(GroupOf("quirloduino.txt"), PayloadGroup::kVersionMarker);
  EXPECT_EQ(GroupOf("docs/quirloduino.txt"), PayloadGroup::kOtherFolder);
}

}  // namespace
