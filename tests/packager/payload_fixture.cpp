#include "tests/packager/payload_fixture.h"

#include <filesystem>

#include "store/payload_format.h"

namespace fs = std::filesystem;

std::string SoundLocations() {
  std::string text = "# OS_LINUX\n";
  for (const std::string key : kLocationKeys) {
    text += key + "\t\"" + (key.ends_with("_SUBDIR") ? "folder/" : "lib/some.jar") + "\"\n";
  }
  return text;
}

std::string SoundCriteria() {
  return "version:lib/version.txt\nzipcksum:lib/some.jar 1 2 processing/app/Base.class\n";
}

std::map<std::string, std::string> SoundPayload() {
  std::map<std::string, std::string> files = {
      {"quirloduino.txt", "1.60-beta5"},
      {"quirlo.exe", "tool"},
      {"arm/bin/arm-none-eabi-c++.exe", "compiler"},
      {"arm/bin/arm-none-eabi-g++.exe", "compiler"},
      {"cores/keywords.txt", "keywords"},
      {"cores/quirlo3/main.cpp", "core"},
      {"libraries/Servo/Servo.h", "servo"},
  };
  for (const std::string release : {"1.8.13", "1.8.19", "1.8.5"}) {
    files[release + "/WINDOWS/directory_criteria.txt"] = SoundCriteria();
    files[release + "/WINDOWS/locations.txt"] = SoundLocations();
    files[release + "/WINDOWS/pde.jar/processing/app/Base$18.class"] = "class of " + release;
    files[release + "/boards.txt"] = "boards of " + release;
    files[release + "/platform.txt"] = "platform of " + release;
  }
  return files;
}

void WriteTree(const std::string& folder, const std::map<std::string, std::string>& files) {
  for (const auto& [name, content] : files) WriteFile(fs::path(folder) / name, content);
}

ProgramResult RunPack(const std::vector<std::string>& arguments, const ProgramOptions& options) {
  return RunProgram(PACK_PROGRAM, arguments, options);
}

PayloadTest::PayloadTest() {
  WriteTree(tree(), SoundPayload());
}

void PayloadTest::Remove(const std::string& name) {
  ASSERT_GT(fs::remove_all(In(name)), 0U) << name;
}

ProgramResult PayloadTest::Pack(std::vector<std::string> more) const {
  std::vector<std::string> arguments = {"pack", tree(), "--output", output(), "--level", "1"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return RunPack(arguments);
}

void PayloadTest::ExpectPacked(const std::vector<std::string>& more) const {
  const ProgramResult result = Pack(more);
  EXPECT_EQ(result.error, "");
  EXPECT_TRUE(result.output.starts_with("longest path below the host folder: ")) << result.output;
  ASSERT_EQ(result.status, 0);
}

void PayloadTest::ExpectRefused(const std::string& line) const {
  const TempDir sound;
  WriteTree(sound.path(), SoundPayload());
  const std::string depfile = output() + "/payload.d";
  ASSERT_EQ(RunPack({"pack", sound.path(), "--output", output(), "--depfile", depfile}).status, 0);
  ASSERT_FALSE(ReadTree(output()).empty());

  const ProgramResult result = Pack({"--depfile", depfile});
  EXPECT_EQ(result.error, "quirloduino-pack: " + line + "\n");
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(ReadTree(output()).empty()) << ReadTree(output()).begin()->first;
}
