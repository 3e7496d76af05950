// The whole program around frames that don't expand to what the tables declare.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/arduino_host.h"
#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"

namespace {

// There is no display, so a program that got as far as its window would say so.
ProgramResult RunWithFrame(const std::string& frame, const std::vector<std::string>& arguments) {
  ProgramOptions options;
  options.without = {"DISPLAY", "WAYLAND_DISPLAY"};
  return RunProgram(std::string(PROGRAMS "/frame_") + frame, arguments, options);
}

class BadFrame : public testing::TestWithParam<const char*> {};

TEST_P(BadFrame, EndsTheWizardWithStatusOneAndNotAByte) {
  const ProgramResult result = RunWithFrame(GetParam(), {});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.error, "");
}

TEST_P(BadFrame, EndsAnInstallWithStatusOneAndNotAByte) {
  const TempDir host;
  MakeArduino1819(host.path());
  const auto before = ReadTree(host.path());
  const ProgramResult result = RunWithFrame(GetParam(), {"--dir=" + host.path()});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(ReadTree(host.path()), before);
}

TEST_P(BadFrame, ComesBeforeAFaultyCommandLine) {
  const ProgramResult result = RunWithFrame(GetParam(), {"--dir="});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output + result.error, "");
}

INSTANTIATE_TEST_SUITE_P(All, BadFrame,
                         testing::Values("one_byte_more", "one_byte_less", "truncated", "garbage",
                                         "checksum_broken", "empty"),
                         [](const auto& test) { return std::string(test.param); });

TEST(SoundFrame, LetsTheProgramLookAtTheFolder) {
  const TempDir host;
  const ProgramResult result = RunWithFrame("sound", {"--dir=" + host.path()});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.error, "Directory \"" + host.path() +
                              "\\\" is not a supported Arduino\n"
                              " Arduino versions supported: 1.8.19\n");
}

TEST(SoundFrame, InstallsItsPayload) {
  const TempDir host;
  MakeArduino1819(host.path());
  const ProgramResult result = RunWithFrame("sound", {"--dir=" + host.path()});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output + result.error, "");
  EXPECT_EQ(ReadFile(host / "lib/quirloduino.txt"), "1.60-beta5");
}

}  // namespace
