#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include "driver/driver_survey.h"
#include "driver/driver_text.h"
#include "engine/install_error.h"
#include "tests/driver/driver_test.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

class Staging : public DriverTest {
 protected:
  std::vector<std::string> Paths() const {
    return {StagedInfPaths, StagedInfPaths + StagedInfCount};
  }
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& [name, content] : ReadTree(temporary_.path())) names.push_back(name);
    return names;
  }
  void StageStore(const std::vector<TestEntry>& entries) {
    store_ = nullptr;
    store_ = std::make_unique<TestStore>(entries);
    stage_driver_files();
  }
};

TEST_F(Staging, InfAndCatalogLandInTheTemporaryFolderWithOneRow) {
  stage_driver_files();
  EXPECT_THAT(Paths(), ElementsAre(Staged("cdcacm.inf")));
  EXPECT_EQ(InstalledInfNames[0], nullptr);
  EXPECT_EQ(ReadTree(temporary_.path()),
            (std::map<std::string, std::string>{{"cdcacm.cat", "the catalog"},
                                                {"cdcacm.inf", kDriverInf}}));
  EXPECT_THAT(Machine.calls, ElementsAre("GetTemporaryFolder(1024)"));
}

TEST_F(Staging, NameThatARowHeldBeforeIsCleared) {
  const std::unique_ptr<char, decltype(&std::free)> before(duplicate_text("oem1.inf"), std::free);
  InstalledInfNames[0] = before.get();
  stage_driver_files();
  EXPECT_EQ(StagedInfCount, 1);
  EXPECT_EQ(std::exchange(InstalledInfNames[0], nullptr), nullptr);
}

TEST_F(Staging, SecondCallReturnsAtOnce) {
  stage_driver_files();
  Machine.calls.clear();
  std::filesystem::remove(Staged("cdcacm.inf"));
  stage_driver_files();
  EXPECT_EQ(StagedInfCount, 1);
  EXPECT_THAT(Machine.calls, IsEmpty());
  EXPECT_THAT(Files(), ElementsAre("cdcacm.cat"));
}

TEST_F(Staging, CallAfterOneThatStagedNothingTriesAgain) {
  Machine.FailNth("GetTemporaryFolder", 1);
  stage_driver_files();
  EXPECT_EQ(StagedInfCount, 0);
  stage_driver_files();
  EXPECT_EQ(StagedInfCount, 1);
}

TEST_F(Staging, EndingsAreTakenInExactCaseOnly) {
  StageStore({{"a.INF", "1"},
              {"b.Cat", "2"},
              {"c.inf", "3"},
              {"d.cat", "4"},
              {"e.infx", "5"},
              {"inf", "6"},
              {".inf", "7"}});
  EXPECT_THAT(Paths(), ElementsAre(Staged("c.inf"), Staged(".inf")));
  EXPECT_THAT(Files(), UnorderedElementsAre("c.inf", "d.cat", ".inf"));
}

TEST_F(Staging, NameWithAFolderIsStagedBelowIt) {
  StageStore({{"drivers/a.inf", "1"}});
  EXPECT_THAT(Paths(), ElementsAre(Staged("drivers/a.inf")));
  EXPECT_EQ(ReadFile(Staged("drivers/a.inf")), "1");
}

TEST_F(Staging, FileThatCanNotBeWrittenIsLeftOutAndTheNextIsStaged) {
  std::filesystem::create_directory(Staged("a.inf"));
  StageStore({{"a.inf", "1"}, {"b.inf", "2"}});
  EXPECT_THAT(Paths(), ElementsAre(Staged("b.inf")));
}

TEST_F(Staging, CatalogThatCanNotBeWrittenIsIgnored) {
  std::filesystem::create_directory(Staged("cdcacm.cat"));
  stage_driver_files();
  EXPECT_EQ(StagedInfCount, 1);
}

// The drive's root stands in for a folder that the system doesn't name. Where there is no such
// drive nothing can be written.
TEST_F(Staging, WithoutATemporaryFolderTheRootOfDriveCIsTaken) {
  Machine.Fail("GetTemporaryFolder");
  stage_driver_files();
  EXPECT_EQ(StagedInfCount, 0);
  EXPECT_STREQ(InstallErrorText(), "Directory \"C:\\\" does not exist!");
}

TEST_F(Staging, FolderOf1023CharactersIsTakenAndALongerOneIsAsGoodAsNone) {
  Machine.temporary_folder = "/" + std::string(1021, 'x') + "/";
  stage_driver_files();
  EXPECT_THAT(InstallErrorText(), StartsWith("Directory \"/xxx"));
  Machine.temporary_folder.insert(1, "x");
  stage_driver_files();
  EXPECT_STREQ(InstallErrorText(), "Directory \"C:\\\" does not exist!");
  EXPECT_EQ(StagedInfCount, 0);
}

std::vector<TestEntry> ManyInfs(int count) {
  std::vector<TestEntry> entries;
  entries.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) entries.push_back({std::to_string(i) + ".inf", "x"});
  return entries;
}

TEST_F(Staging, WalkEndsAtThe250thRowAndSkipsACatalogAfterIt) {
  std::vector<TestEntry> entries = ManyInfs(250);
  entries.push_back({"late.cat", "x"});
  StageStore(entries);
  EXPECT_EQ(StagedInfCount, 250);
  EXPECT_FALSE(std::filesystem::exists(Staged("late.cat")));
}

TEST_F(Staging, MoreThan250NamesGive250Rows) {
  StageStore(ManyInfs(260));
  EXPECT_EQ(StagedInfCount, 250);
  EXPECT_EQ(StagedInfPaths[249], Staged("249.inf"));
  EXPECT_FALSE(std::filesystem::exists(Staged("250.inf")));
}

TEST_F(Staging, With249NamesACatalogAfterThemIsStaged) {
  std::vector<TestEntry> entries = ManyInfs(249);
  entries.push_back({"late.cat", "x"});
  StageStore(entries);
  EXPECT_EQ(StagedInfCount, 249);
  EXPECT_TRUE(std::filesystem::exists(Staged("late.cat")));
}

class MissingInfs : public DriverTest {};

TEST_F(MissingInfs, RowsWithoutAMatchAreCounted) {
  Stage({{"a.inf", InfWith("A=a\n")}, {"b.inf", InfWith("A=b\n")}, {"c.inf", InfWith("A=c\n")}},
        {"", "", ""});
  Machine.inf_files = {{"oem7.inf", InfWith("A=b\n")}};
  EXPECT_EQ(count_missing_infs(), 2);
  EXPECT_EQ(InstalledInfNames[0], nullptr);
  EXPECT_STREQ(InstalledInfNames[1], "oem7.inf");
  EXPECT_EQ(InstalledInfNames[2], nullptr);
}

TEST_F(MissingInfs, NoRowMeansNoMissingRow) {
  EXPECT_EQ(count_missing_infs(), 0);
  EXPECT_THAT(Machine.calls, IsEmpty());
}

TEST_F(MissingInfs, FailureToReadTheListCountsTheRowAsMissing) {
  Stage({{"a.inf", InfWith("A=a\n")}}, {""});
  Machine.inf_files = {{"oem7.inf", InfWith("A=a\n")}};
  Machine.Fail("GetInfFileList");
  EXPECT_EQ(count_missing_infs(), 1);
}

}  // namespace
