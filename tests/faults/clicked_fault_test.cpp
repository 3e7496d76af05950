// Failing operations as a person meets them: the advice on the install page, and the way over Back
// and Next to a complete install.
#include <errno.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "tests/clicked/clicked_test.h"
#include "tests/faults/fault_host.h"
#include "tests/faults/fault_run.h"
#include "tests/faults/install_trace.h"
#include "tests/support/arduino_host.h"
#include "tests/support/harden.h"
#include "tests/support/run_program.h"

namespace {

struct Situation {
  const char* operation;
  const char* path;   // below the host folder
  const char* words;  // {} is the host folder, with its separator
  bool hint;
};

const std::vector<Situation> kSituations = {
    {"rename", "lib/pde.jar.XXXXXX", "Unable to write changes to \"{}lib/pde.jar\"", false},
    {"fwrite", "lib/quirloduino.txt", "Error while writing to file \"lib/quirloduino.txt\".",
     false},
    {"mkdir", "hardware/tools/", "Unable to create directory \"{}hardware/tools/\".", true},
    {"create", "hardware/tools/quirlo.exe", "Unable to write file \"hardware/tools/quirlo.exe\".",
     true},
    {"fflush", "hardware/quirlo/avr/boards.txt",
     "Error after writing to file \"hardware/quirlo/avr/boards.txt\".", false},
    {"open", "lib/arduino-core.jar.XXXXXX", "Unable to write changes to \"{}lib/arduino-core.jar\"",
     true}};

class HardenClickedFault : public ClickedTest, public testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    ClickedTest::SetUp();
    if (!IsSkipped()) MakeArduino1819(host_);
  }

  std::string Advice(const Situation& situation) const {
    std::string words = situation.words;
    const std::size_t place = words.find("{}");
    if (place != std::string::npos) words.replace(place, 2, host_ + "/");
    words += geteuid() == 0
                 ? "\n\nThe files or directories may have write permissions blocked or may be "
                   "stored on a read-only disc or network drive.  Please try installing on a fresh "
                   "copy of Arduino in your directory.\n"
                 : "\n\nYou may need to run this installer with administrator access to install "
                   "all files.  Please right click on this program and select \"Run as "
                   "Administrator\"\n";
    words +=
        "\nPlease make sure you do not have a copy of Arduino running, as this can block writing "
        "to certain files.\n";
    if (situation.hint) {
      words +=
          "\nAnti-virus software can sometimes falsely interfere with writing this type of file.  "
          "If you are running an anti-virus program, you may need to temporarily disable it.\n";
    }
    return words;
  }

  std::string host_ = Documents("arduino-1.8.19");
};

TEST_P(HardenClickedFault, ShowsItsAdviceAndARetryCompletes) {
  const Situation& situation = kSituations[static_cast<std::size_t>(GetParam())];
  if (GetParam() > 1 && !HardenFully()) {
    GTEST_SKIP() << "one of those that QUIRLODUINO_HARDEN=full asks for";
  }
  const TempDir reports;
  const FaultPlan plan = {
      .root = host_,
      .on = std::string(situation.operation) + " " + host_ + "/" + situation.path,
      .error = ENOSPC};
  const auto wizard = Start(PROGRAM, FaultEnvironment(plan, reports / "report"));
  GoToFolderPage(wizard.get());
  GoToInstallPage(wizard.get());
  wizard->ClickAndWait(kNext);
  wizard->WaitUntilActive(kBack);
  EXPECT_FALSE(wizard->IsActive(kNext)) << "Install can't be pressed after a failure";
  EXPECT_TRUE(wizard->Look(kInstallDetail) == DrawInstallDetail(Advice(situation)));
  const Files stopped = ReadInstall(host_);
  const auto marker = stopped.find("lib/quirloduino.txt");
  EXPECT_TRUE(marker == stopped.end() || marker->second != "1.60-beta5");

  wizard->ClickAndWait(kBack);
  wizard->ClickAndWait(kNext);
  InstallToTheEnd(wizard.get());
  EXPECT_EQ(Done(wizard.get()), 0);
  const FaultReport report = ReadFaultReport(reports / "report", host_);
  EXPECT_GT(report.met, 0);
  EXPECT_EQ(report.open, std::vector<std::string>());

  const TempDir other;
  MakeArduino1819(other / "host");
  EXPECT_EQ(RunProgram(PROGRAM, {"--dir=" + (other / "host")}).status, 0);
  EXPECT_EQ(Difference(ReadInstall(other / "host"), ReadInstall(host_)), "");
}

INSTANTIATE_TEST_SUITE_P(
    Situations, HardenClickedFault, testing::Range(0, static_cast<int>(kSituations.size())),
    [](const testing::TestParamInfo<int>& test) {
      return std::string(kSituations[static_cast<std::size_t>(test.param)].operation) + "Fails";
    });

}  // namespace
