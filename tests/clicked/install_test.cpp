// Whole runs from the first page to the last, and what stands in the folder afterwards.
#include <gmock/gmock.h>

#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "tests/clicked/clicked_test.h"
#include "tests/program/case_host.h"
#include "tests/support/arduino_host.h"
#include "tests/support/run_program.h"

namespace fs = std::filesystem;

namespace {

using Tree = std::map<std::string, std::string>;

const std::string kLibraries = "hardware/quirlo/avr/libraries/";

// What an install without a window leaves in a folder like the wizard's.
Tree TreeOfCommandLine(const std::string& program) {
  const TempDir other;
  MakeArduino1819(other / "host");
  EXPECT_EQ(RunProgram(program, {"--dir=" + (other / "host")}).status, 0);
  return ReadHost(other / "host");
}

// The libraries that have a file in the tree.
std::set<std::string> LibrariesIn(const Tree& tree) {
  std::set<std::string> libraries;
  for (const auto& [path, content] : tree) {
    if (!path.starts_with(kLibraries)) continue;
    const std::string rest = path.substr(kLibraries.size());
    libraries.insert(rest.substr(0, rest.find('/')));
  }
  return libraries;
}

Tree Without(Tree tree, const std::set<std::string>& libraries) {
  std::erase_if(tree, [&](const auto& file) {
    const std::string rest =
        file.first.starts_with(kLibraries) ? file.first.substr(kLibraries.size()) : "";
    return libraries.contains(rest.substr(0, rest.find('/')));
  });
  return tree;
}

class ClickedInstall : public ClickedTest {
 protected:
  // The Documents folder holds the Arduino alone, where the search finds it.
  void SetUp() override {
    ClickedTest::SetUp();
    if (!IsSkipped()) MakeArduino1819(host_);
  }

  std::string host_ = Documents("arduino-1.8.19");
};

TEST_F(ClickedInstall, FromTheFirstPageToTheLastLeavesWhatTheCommandLineLeaves) {
  const std::string preferences = Home(".local/share/Arduino15/preferences.txt");
  WriteFile(preferences,
            "editor.font=Monospaced,plain,12\nboard=uno\ntarget_package=arduino\nlast=1\n");
  for (const char* old :
       {"Adafruit_GFX/glcdfont.c", "Adafruit_CC3000/utility/spi.cpp", "Adafruit_RA8875/readme.txt",
        "openGLCD/fonts/Arial14.h", "ST7565/ST7565.h", "SD/utility/Sd2Card.cpp", "SD/SD.cpp"}) {
    WriteFile(host_ + "/" + kLibraries + old, "of an older package");
  }

  const auto wizard = Start(PROGRAM);
  wizard->Keep("welcome");
  EXPECT_FALSE(wizard->IsActive(kBack));
  GoToFolderPage(wizard.get());
  wizard->Keep("folder");
  ASSERT_TRUE(wizard->IsActive(kNext));
  wizard->ClickAndWait(kNext);
  wizard->Keep("libraries");
  wizard->ClickAndWait(kNext);
  wizard->Keep("install");
  InstallToTheEnd(wizard.get());
  wizard->Keep("finished");
  EXPECT_EQ(Done(wizard.get()), 0);

  Tree expected = TreeOfCommandLine(PROGRAM);
  expected[kLibraries + "SD/SD.cpp"] = "of an older package";
  const Tree tree = ReadHost(host_);
  EXPECT_THAT(tree, testing::ContainerEq(expected));
  EXPECT_EQ(tree.at("lib/quirloduino.txt"), "1.60-beta5");
  for (const char* old :
       {"Adafruit_GFX", "Adafruit_CC3000", "Adafruit_RA8875", "openGLCD", "ST7565", "SD/utility"}) {
    EXPECT_FALSE(fs::exists(host_ + "/" + kLibraries + old)) << old;
  }
  EXPECT_EQ(ReadFile(preferences),
            "target_platform=avr\r\neditor.font=Monospaced,plain,12\nboard=quirlo31\r\n"
            "target_package=quirlo\r\nlast=1\n");
}

TEST_F(ClickedInstall, UntickedLibrariesAreLeftOut) {
  const auto wizard = Start(LIBRARIES_PROGRAM);
  GoToFolderPage(wizard.get());
  wizard->ClickAndWait(kNext);
  wizard->ClickAndWait(LibraryRow(1));
  wizard->ClickAndWait(LibraryRow(4));
  wizard->ClickAndWait(LibraryRow(6));
  wizard->ClickAndWait(LibraryRow(6));  // off and on again
  wizard->Keep("libraries-some");
  wizard->ClickAndWait(kNext);
  InstallToTheEnd(wizard.get());
  EXPECT_EQ(Done(wizard.get()), 0);

  const Tree all = TreeOfCommandLine(LIBRARIES_PROGRAM);
  EXPECT_EQ(LibrariesIn(all).size(), 14u);
  const Tree tree = ReadHost(host_);
  EXPECT_THAT(tree, testing::ContainerEq(Without(all, {"Beech", "Elder"})));
}

TEST_F(ClickedInstall, NoneLeavesOutEveryLibraryAndAllBringsThemBack) {
  const auto wizard = Start(LIBRARIES_PROGRAM);
  GoToFolderPage(wizard.get());
  wizard->ClickAndWait(kNext);
  wizard->ClickAndWait(kNoneButton);
  wizard->Keep("libraries-none");
  wizard->ClickAndWait(kNext);
  InstallToTheEnd(wizard.get());
  EXPECT_EQ(Done(wizard.get()), 0);
  const Tree all = TreeOfCommandLine(LIBRARIES_PROGRAM);
  EXPECT_THAT(ReadHost(host_), testing::ContainerEq(Without(all, LibrariesIn(all))));

  const auto second = Start(LIBRARIES_PROGRAM);
  GoToFolderPage(second.get());
  second->ClickAndWait(kNext);
  second->ClickAndWait(kNoneButton);
  second->ClickAndWait(kAllButton);
  second->ClickAndWait(kNext);
  InstallToTheEnd(second.get());
  EXPECT_EQ(Done(second.get()), 0);
  EXPECT_THAT(ReadHost(host_), testing::ContainerEq(all));
}

TEST_F(ClickedInstall, OneLibraryAfterNoneIsTheOnlyOne) {
  const auto wizard = Start(LIBRARIES_PROGRAM);
  GoToFolderPage(wizard.get());
  wizard->ClickAndWait(kNext);
  wizard->ClickAndWait(kNoneButton);
  wizard->ClickAndWait(LibraryRow(2));
  wizard->Keep("libraries-one");
  wizard->ClickAndWait(kNext);
  InstallToTheEnd(wizard.get());
  EXPECT_EQ(Done(wizard.get()), 0);
  EXPECT_EQ(LibrariesIn(ReadHost(host_)), std::set<std::string>{"Cedar"});
}

TEST_F(ClickedInstall, CancelEndsTheProgramOnEachPageAndLeavesTheFolderAlone) {
  const Tree before = ReadHost(host_);
  for (int page = 0; page < 5; ++page) {
    const auto wizard = Start(PROGRAM);
    for (int i = 0; i < page; ++i) {
      wizard->WaitUntilActive(kNext);
      wizard->ClickAndWait(kNext);
    }
    wizard->WaitUntilActive(kCancel);  // on the driver page when the survey has ended
    EXPECT_EQ(Done(wizard.get()), 0) << "page " << page;
  }
  EXPECT_THAT(ReadHost(host_), testing::ContainerEq(before));
}

TEST_F(ClickedInstall, LibraryFurtherDownIsReachedByTheWheel) {
  const auto wizard = Start(LIBRARIES_PROGRAM);
  GoToFolderPage(wizard.get());
  wizard->ClickAndWait(kNext);
  wizard->Scroll(LibraryRow(5), 10);  // as far as it goes: the last row ends the list
  wizard->ClickAndWait({60, 270});
  wizard->Keep("libraries-scrolled");
  wizard->ClickAndWait(kNext);
  InstallToTheEnd(wizard.get());
  EXPECT_EQ(Done(wizard.get()), 0);
  const Tree all = TreeOfCommandLine(LIBRARIES_PROGRAM);
  EXPECT_THAT(ReadHost(host_), testing::ContainerEq(Without(all, {"Nettle"})));
}

TEST_F(ClickedInstall, UnwritableFolderShowsAdviceAndAWritableOneCompletes) {
  for (const auto& entry : fs::recursive_directory_iterator(host_)) {
    fs::permissions(entry.path(), fs::perms::all);
  }
  fs::permissions(host_, static_cast<fs::perms>(0555));

  const auto wizard = StartAsOrdinaryUser(PROGRAM);
  GoToFolderPage(wizard.get());
  GoToInstallPage(wizard.get());
  const Pixels ready = wizard->Look(kInstallStatus);
  EXPECT_TRUE(wizard->Look(kInstallDetail) == DrawInstallDetail(""));
  wizard->ClickAndWait(kNext);
  wizard->WaitUntilActive(kBack);
  wizard->WaitUntilActive(kCancel);
  EXPECT_FALSE(wizard->IsActive(kNext)) << "Install can't be pressed after a failure";
  wizard->Keep("advice");
  EXPECT_TRUE(wizard->Look(kInstallStatus) != ready);
  // The box ends in the first line of the last paragraph.
  const std::string advice =
      "Unable to create directory \"" + host_ +
      "/hardware/\".\n\nYou may need to run this installer with administrator access to install "
      "all files.  Please right click on this program and select \"Run as Administrator\"\n\n"
      "Please make sure you do not have a copy of Arduino running, as this can block writing to "
      "certain files.\n\nAnti-virus software can sometimes falsely interfere with writing this "
      "type of file.  If you are running an anti-virus program, you may need to temporarily "
      "disable it.\n";
  EXPECT_TRUE(wizard->Look(kInstallDetail) == DrawInstallDetail(advice));

  wizard->ClickAndWait(kBack);
  wizard->ClickAndWait(kNext);
  EXPECT_TRUE(wizard->IsActive(kNext)) << "the page is armed anew";
  EXPECT_TRUE(wizard->Look(kInstallStatus) == ready);
  EXPECT_TRUE(wizard->Look(kInstallDetail) == DrawInstallDetail(""));
  fs::permissions(host_, fs::perms::all);
  InstallToTheEnd(wizard.get());
  EXPECT_EQ(Done(wizard.get()), 0);
  EXPECT_THAT(ReadHost(host_), testing::ContainerEq(TreeOfCommandLine(PROGRAM)));
}

}  // namespace
