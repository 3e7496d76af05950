#include "tests/driver/machine_scenarios.h"

#include "driver/driver_survey.h"
#include "tests/driver/driver_test.h"

namespace {

struct ScenarioCase {
  const char* name;
  std::string text;        // of the page after the survey
  const char* button;      // then clicked, or null
  std::string text_after;  // of the page, wherever the wizard went
  bool leaves;             // for the folder page
};

void PrintTo(const ScenarioCase& test, std::ostream* stream) {
  *stream << test.name;
}

class Scenario : public DriverTest, public ::testing::WithParamInterface<ScenarioCase> {};

TEST_P(Scenario, LeadsThePageWhereItsNameSays) {
  const ScenarioCase& test = GetParam();
  ASSERT_TRUE(SetUpScenario(test.name, temporary_.path() + "/", kDriverInf));
  driver_survey(nullptr);
  EXPECT_EQ(Text(), test.text);
  Click(test.button);
  EXPECT_THAT(Text(), ::testing::StartsWith(test.text_after));
  EXPECT_EQ(Page().rfind("folder", 0) == 0, test.leaves);
}

const std::string kUpdated = kInstalledText + "\n\n";

const ScenarioCase kScenarioCases[] = {
    {"windows-10", kSystemDriverText, "Next", kSystemDriverText, true},
    {"installed", kInstalledText, "Update", kUpdated + "0 devices updated", false},
    {"one-device", kInstalledText, "Update", kUpdated + "1 devices updated", false},
    {"many-devices", kInstalledText, "Update", kUpdated + "4 devices updated", false},
    {"install-due", kInstallDueText, "Next", kInstallDueText, true},
    {"refused", kInstallDueText, "Next", "Driver Installation Failed.\n", false},
    {"no-rights", kNoRightsText, "Skip", kNoRightsText, true},
    {"installed-no-rights", kInstalledText, "Next", kInstalledText, true},
};

INSTANTIATE_TEST_SUITE_P(Each, Scenario, ::testing::ValuesIn(kScenarioCases), [](const auto& test) {
  std::string name = test.param.name;
  for (char& letter : name) letter = letter == '-' ? '_' : letter;
  return name;
});

TEST(ScenarioName, UnknownOneIsRefused) {
  EXPECT_FALSE(SetUpScenario("windows-95", "/tmp/", kDriverInf));
}

}  // namespace
