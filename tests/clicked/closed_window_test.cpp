// The window closed while the install runs. A held file in the place of one that the program writes
// holds the install up there.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "tests/clicked/clicked_test.h"
#include "tests/program/case_host.h"
#include "tests/support/arduino_host.h"
#include "tests/support/held_file.h"
#include "tests/support/jars.h"
#include "tests/support/run_program.h"

namespace fs = std::filesystem;

namespace {

constexpr Area kProgress = {66, 107, 368, 21};
constexpr unsigned kYellow = 0xFFFF00;

// Where the install is held up.
struct Place {
  const char* name;
  const char* file;         // the held one
  const char* file_before;  // written just before, in the same slice
  bool bar_has_moved;
  bool core_is_patched;
};

void PrintTo(const Place& place, std::ostream* out) {
  *out << place.name;
}

class ClosedInMidInstall : public ClickedTest, public testing::WithParamInterface<Place> {
 protected:
  void SetUp() override {
    ClickedTest::SetUp();
    if (IsSkipped()) return;
    MakeArduino1819(host_);
    WriteFile(marker_, "1.59");
    held_.emplace(host_ + "/" + GetParam().file);
    wizard_ = Start(PROGRAM);
    GoToFolderPage(wizard_.get());
  }

  void InstallUntilHeldUp() {
    GoToInstallPage(wizard_.get());
    wizard_->Click(kNext);
    wizard_->WaitFor("the file before the held one",
                     [&] { return fs::exists(host_ + "/" + GetParam().file_before); });
    wizard_->WaitFor("the bar", [&] {
      const Pixels bar = wizard_->LookAtOnce(kProgress);
      return std::count(bar.begin(), bar.end(), kYellow) > 0 || !GetParam().bar_has_moved;
    });
  }

  void ExpectBothJarsSound() const {
    const JarMembers core = ReadJar(host_ + "/lib/arduino-core.jar");
    EXPECT_EQ(core.at("cc/arduino/UploaderUtils.class") != "the IDE's own UploaderUtils",
              GetParam().core_is_patched);
    EXPECT_EQ(core.at("other/Untouched.class"), "stays as it is");
    EXPECT_EQ(ReadJar(host_ + "/lib/pde.jar").at("other/Untouched.class"), "stays as it is");
  }

  std::string host_ = Documents("arduino-1.8.19");
  std::string marker_ = host_ + "/lib/quirloduino.txt";
  std::unique_ptr<ClickedWizard> wizard_;
  std::optional<HeldFile> held_;
};

TEST_P(ClosedInMidInstall, EndsTheProgramAndASecondRunCompletes) {
  InstallUntilHeldUp();
  wizard_->KeepAtOnce(std::string("held-up-") + GetParam().name);
  wizard_->CloseWindow();
  EXPECT_FALSE(wizard_->HasEnded());
  held_->Release();
  EXPECT_EQ(wizard_->End(), 0);
  EXPECT_EQ(ReadFile(marker_), "1.59");
  ExpectBothJarsSound();

  fs::remove(host_ + "/" + GetParam().file);
  const auto second = Start(PROGRAM);
  GoToFolderPage(second.get());
  GoToInstallPage(second.get());
  InstallToTheEnd(second.get());
  EXPECT_EQ(Done(second.get()), 0);
  const TempDir other;
  MakeArduino1819(other / "host");
  EXPECT_EQ(RunProgram(PROGRAM, {"--dir=" + (other / "host")}).status, 0);
  EXPECT_THAT(ReadHost(host_), testing::ContainerEq(ReadHost(other / "host")));
}

TEST_P(ClosedInMidInstall, GoesOnWhileTheHelpWindowIsOpen) {
  wizard_->ClickAndWait(kHelp);
  wizard_->TurnTo(" Help");
  wizard_->TurnTo(" Installer");
  InstallUntilHeldUp();
  wizard_->CloseWindow();
  held_->Release();
  wizard_->WaitUntilGone(" Installer");
  wizard_->WaitFor("the marker", [&] { return ReadFile(marker_) == "1.60-beta5"; });
  wizard_->TurnTo(" Help");
  wizard_->Click(kHelpOk);
  EXPECT_EQ(wizard_->End(), 0);
}

// The first slice leaves the first jar open, with its changes pending; in the third all jars are
// done.
INSTANTIATE_TEST_SUITE_P(
    Places, ClosedInMidInstall,
    testing::Values(Place{"first_slice", "hardware/tools/arm/bin/arm-none-eabi-c++.exe",
                          "tools/Q4Security/tool/Q4Security.jar", false, false},
                    Place{"third_slice", "hardware/quirlo/avr/cores/quirlo3/serial4.c",
                          "hardware/quirlo/avr/keywords.txt", true, true}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
