// Runs every case file of CASES with the program of PROGRAM.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/program/case_file.h"
#include "tests/program/case_host.h"
#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

using Files = std::map<std::string, std::string>;

class ProgramCase : public testing::TestWithParam<std::string> {};

std::vector<std::string> CaseNames() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(CASES)) {
    if (entry.path().extension() == ".case") names.push_back(entry.path().stem());
  }
  std::sort(names.begin(), names.end());
  return names;
}

// What the files should be after the run.
Files Expected(const CaseFile& test_case, Files files) {
  for (const auto& [path, content] : test_case.added) {
    EXPECT_FALSE(files.contains(path)) << path << " was there before";
    files[path] = content;
  }
  for (const auto& [path, content] : test_case.changed) {
    EXPECT_TRUE(files.contains(path)) << path << " was not there before";
    files[path] = content;
  }
  for (const std::string& path : test_case.removed) {
    EXPECT_EQ(files.erase(path), 1U) << path << " was not there before";
  }
  return files;
}

void ExpectSameFiles(const Files& expected, const Files& found) {
  for (const auto& [path, content] : expected) {
    const auto other = found.find(path);
    if (other == found.end()) {
      ADD_FAILURE() << path << " is missing";
    } else {
      EXPECT_EQ(content, other->second) << path;
    }
  }
  for (const auto& [path, content] : found) {
    EXPECT_TRUE(expected.contains(path)) << path << " should not be there";
  }
}

TEST_P(ProgramCase, DoesAllThatItsFileSaysAndNothingElse) {
  const CaseFile test_case = ReadCaseFile(std::string(CASES "/") + GetParam() + ".case");
  const TempDir home;  // what stands beside the host folder must stay untouched too
  const std::string host = home / "host";
  MakeCaseHost(test_case, host);
  const Files before = ReadHost(home.path());

  std::vector<std::string> arguments;
  for (const std::string& argument : test_case.arguments) {
    arguments.push_back(FillIn(argument, host));
  }
  ProgramOptions options;
  options.ordinary_user = test_case.ordinary_user;
  options.environment = {"HOME=" + home.path()};
  options.without = {"DISPLAY"};  // no display is needed in this mode
  const ProgramResult result = RunProgram(PROGRAM, arguments, options);

  EXPECT_EQ(result.status, test_case.status);
  EXPECT_EQ(result.output, FillIn(test_case.output, host));
  EXPECT_EQ(result.error, FillIn(test_case.error, host));
  CaseFile below_home = test_case;
  below_home.added.clear();
  below_home.changed.clear();
  below_home.removed.clear();
  for (const auto& [path, content] : test_case.added) below_home.added["host/" + path] = content;
  for (const auto& [path, content] : test_case.changed) {
    below_home.changed["host/" + path] = content;
  }
  for (const std::string& path : test_case.removed) below_home.removed.push_back("host/" + path);
  ExpectSameFiles(Expected(below_home, before), ReadHost(home.path()));
}

INSTANTIATE_TEST_SUITE_P(Cases, ProgramCase, testing::ValuesIn(CaseNames()),
                         [](const testing::TestParamInfo<std::string>& test) {
                           return test.param;
                         });

}  // namespace
