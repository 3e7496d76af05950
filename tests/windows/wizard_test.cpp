// The wizard, clicked under Wine.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "tests/program/case_host.h"
#include "tests/support/arduino_host.h"
#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"
#include "tests/windows/planted_libraries.h"
#include "tests/windows/run_in_wine.h"
#include "tests/windows/wine_window.h"

namespace fs = std::filesystem;

namespace {

class WineWizard : public testing::Test {
 protected:
  void SetUp() override {
    if (std::getenv("DISPLAY") == nullptr) GTEST_SKIP() << "no display to show the wizard on";
    fs::remove_all(documents_);
    fs::create_directories(documents_);
    fs::create_directories(user_ + "/AppData/Local/Arduino15");
  }
  void TearDown() override {
    fs::remove_all(documents_);
    fs::remove_all(user_ + "/AppData/Local/Arduino15");
    fs::remove_all(user_ + "/Desktop/arduino-1.8.19");
  }

  std::string user_ = WinePrefix() + "/drive_c/users/root";
  std::string documents_ = user_ + "/Documents";
};

TEST_F(WineWizard, InstallsFromTheFirstPageToTheLastBesidePlantedLibraries) {
  const std::string name = "\xC3\xA9 \xC3\xBC \xC3\x9F \xD0\x9C\xD0\xB8\xD1\x80";  // é ü ß Мир
  const std::string host = documents_ + "/" + name + "/arduino-1.8.19";
  MakeArduino1819(host);
  const std::string preferences = user_ + "/AppData/Local/Arduino15/preferences.txt";
  WriteFile(preferences, "editor.font=Monospaced\nboard=uno\ntarget_package=arduino\n");
  const TempDir dir;
  fs::copy(INSTALLER, dir / "quirloduino.exe");
  PlantLibraries(dir.path());
  WineOverrides = PreferPlantedLibraries();

  WineWindow wizard(dir / "quirloduino.exe");
  wizard.GoToFolderPage("");
  EXPECT_FALSE(wizard.IsActive(kNext)) << "the Documents folder is no Arduino";
  wizard.ClickAndWait(FolderLine(1), 2);  // into the folder, behind "../"
  wizard.ClickAndWait(FolderLine(1));
  wizard.WaitUntilActive(kNext);
  wizard.Keep("3-folder");
  wizard.ClickAndWait(kNext);
  wizard.Keep("4-libraries");
  wizard.ClickAndWait(kNext);
  wizard.Keep("5-install");
  wizard.Click(kNext);
  wizard.WaitUntilInactive(kBack);
  wizard.WaitUntilActive(kCancel);  // "Done"
  wizard.Keep("6-finished");
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
  WineOverrides.clear();

  EXPECT_EQ(LoadedPlantedLibraries(dir.path()), "");
  const TempDir other;
  MakeArduino1819(other / "host");
  EXPECT_EQ(RunProgram(INSTALLER, {"--dir=" + (other / "host")}).status, 0);
  EXPECT_TRUE(ReadHost(host) == ReadHost(other / "host")) << "with all libraries it is the same";
  const std::string edited = ReadFile(preferences);
  EXPECT_NE(edited.find("editor.font=Monospaced\n"), std::string::npos) << edited;
  EXPECT_EQ(edited.find("board=uno"), std::string::npos) << edited;
}

TEST_F(WineWizard, FolderPageStandsOnTheCopyThatTheSearchFinds) {
  MakeArduino1819(user_ + "/Desktop/arduino-1.8.19");
  WineWindow wizard(INSTALLER);
  wizard.GoToFolderPage();
  wizard.WaitUntilActive(kNext);
  wizard.Keep("folder-found");
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
}

TEST_F(WineWizard, AllDrivesAreListedAndEntered) {
  WineWindow wizard(INSTALLER);
  wizard.GoToFolderPage();
  wizard.ClickAndWait(kPathChoice);
  wizard.Keep("folder-path-menu");
  // C:/users/root/Documents/, C:/users/root/, C:/users/, C:/, [All Drives]
  wizard.ClickAndWait(MenuLine(4));
  wizard.Keep("folder-all-drives");
  wizard.ClickAndWait(FolderLine(0), 2);
  wizard.Keep("folder-drive-c");
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
}

TEST_F(WineWizard, HelpWindowShowsTheNoteAboutTheApp) {
  WriteFile(documents_ + "/ArduinoData/preferences.txt",
            "board=uno\r\nruntime.ide.hardwarepath="
            "C:\\Program Files\\WindowsApps\\ArduinoLLC.ArduinoIDE_1.8.57.0_x86\\hardware\r\n");
  WineWindow wizard(INSTALLER);
  wizard.GoToFolderPage();
  wizard.Click(kHelp);
  wizard.TurnTo("Quirloduino .* Help");
  wizard.Keep("help");
  wizard.ClickAndWait({358, 274}, 16);  // the scroll bar's lower end
  wizard.Keep("help-end");
  wizard.Click({203, 336});
  wizard.TurnBackTo("Quirloduino .* Installer", "Quirloduino .* Help");
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
}

TEST_F(WineWizard, UnknownArgumentShowsTheUsageBoxAndThenTheWizard) {
  WineWindow box(INSTALLER, {"--DIR=C:\\x"}, "Error");
  box.Keep("usage");
  box.Press("Return");
  box.TurnTo("Quirloduino .* Installer");
  box.Keep("usage-behind");
  box.Click(kCancel);
  EXPECT_EQ(box.End(), 0);
}

}  // namespace
