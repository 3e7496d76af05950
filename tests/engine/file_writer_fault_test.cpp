// Failures of the plain writer and of its folders that need a replaced function.
#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>

#include "engine/install_error.h"
#include "engine/writers.h"
#include "tests/engine/engine_test.h"
#include "tests/engine/faults.h"

namespace {

using Files = std::map<std::string, std::string>;

struct Failure {
  const char* situation;
  Call call;
  const char* text;
  const char* left;  // what stands in the file afterwards
};

void PrintTo(const Failure& failure, std::ostream* out) {
  *out << failure.text;
}

class FileWriterFailure : public EngineTest, public testing::WithParamInterface<Failure> {};

TEST_P(FileWriterFailure, NamesTheFileAndKeepsItsPart) {
  Load({{"entry", "content!"}});
  {
    const ScopedFailure failure(GetParam().call);
    EXPECT_EQ(WriteEntryToFile(host(), "a/", "b/e", 0), -1);
  }
  EXPECT_STREQ(InstallErrorText(), GetParam().text);
  EXPECT_EQ(Files(), (::Files{{"a/b/e", GetParam().left}}));
}

INSTANTIATE_TEST_SUITE_P(
    Calls, FileWriterFailure,
    testing::Values(
        Failure{"ShortWrite", Call::kFwrite, "Error while writing to file \"a/b/e\".", "cont"},
        Failure{"FailedFlush", Call::kFflush, "Error after writing to file \"a/b/e\".", "content!"},
        Failure{"FailedClose", Call::kFclose, "Error closing file \"a/b/e\".", "content!"}),
    [](const testing::TestParamInfo<Failure>& test) { return test.param.situation; });

using FolderFailure = EngineTest;

TEST_F(FolderFailure, RefusedLevelIsNamed) {
  Load({{"entry", "content"}});
  {
    const ScopedFailure failure(Call::kMkdir);
    EXPECT_EQ(WriteEntryToFile(host(), "a/b/", "e", 0), -1);
  }
  EXPECT_EQ(InstallErrorText(), "Unable to create directory \"" + (*this / "a/") + "\".");
  EXPECT_TRUE(ReadTree(host()).empty());
}

TEST_F(FolderFailure, LevelMadeInVainFailsWithoutNewWords) {
  Load({{"entry", "content"}});
  SetInstallError("earlier words");
  {
    const ScopedFailure failure(Call::kMkdirInVain);
    EXPECT_EQ(WriteEntryToFile(host(), "a/b/", "e", 0), -1);
  }
  EXPECT_STREQ(InstallErrorText(), "earlier words");
  EXPECT_TRUE(ReadTree(host()).empty());
}

TEST_F(FolderFailure, PresentFolderCostsNoMkdir) {
  Load({{"entry", "content"}});
  const CallCount made(Call::kMkdir);
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "b/e", 0), 1);
  EXPECT_EQ(made.Get(), 2);
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "b/e", 0), 1);
  EXPECT_EQ(WriteEntryToFile(host(), "a/", "b/f", 0), 1);
  EXPECT_EQ(made.Get(), 2);
}

}  // namespace
