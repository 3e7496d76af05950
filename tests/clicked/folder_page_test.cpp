// The folder page and its help window.
#include <filesystem>
#include <string>

#include "tests/clicked/clicked_test.h"
#include "tests/support/arduino_host.h"

namespace fs = std::filesystem;

namespace {

constexpr Area kHelpLog = {32, 75, 336, 223};
constexpr Area kPath = {32, 75, 400, 30};
constexpr Spot kBelowTheLines = {200, 285};
constexpr Area kList = {32, 112, 436, 186};

// The Documents folder as the page shows it:
//   ../  an_arduino/  box/ (holding inner/, an Arduino too)  plain/
// No Arduino stands where the search looks, so the page begins on the Documents folder.
class ClickedFolderPage : public ClickedTest {
 protected:
  void SetUp() override {
    ClickedTest::SetUp();
    if (IsSkipped()) return;
    MakeArduino1819(Documents("an_arduino"));
    MakeArduino1819(Documents("box/inner"));
    fs::create_directories(Documents("plain"));
    fs::create_directories(Documents(".git"));
    wizard_ = Start(PROGRAM);
    GoToFolderPage(wizard_.get());
  }

  // The drop-down's text. Its colours tell whether it has the keyboard, so the list takes that
  // first, by a click that selects nothing.
  Pixels LookAtPath() {
    wizard_->ClickAndWait(kBelowTheLines);
    return wizard_->Look(kPath);
  }
  void ExpectNext(bool active) { EXPECT_EQ(wizard_->IsActive(kNext), active); }

  static constexpr int kParent = 0;
  static constexpr int kArduino = 1;
  static constexpr int kBox = 2;
  static constexpr int kPlain = 3;

  std::unique_ptr<ClickedWizard> wizard_;
};

TEST_F(ClickedFolderPage, NextIsActiveWhileTheClickedFolderIsAnArduino) {
  wizard_->Keep("folder-list");
  ExpectNext(false);
  const Pixels path = LookAtPath();
  wizard_->ClickAndWait(FolderLine(kArduino));
  ExpectNext(true);
  wizard_->ClickAndWait(FolderLine(kPlain));
  ExpectNext(false);
  wizard_->ClickAndWait(FolderLine(kArduino));
  ExpectNext(true);
  EXPECT_TRUE(LookAtPath() == path) << "a single click enters nothing";
  wizard_->ClickAndWait(kBelowTheLines);
  ExpectNext(true);
  wizard_->ClickAndWait(FolderLine(kParent));
  ExpectNext(false);
  EXPECT_EQ(Done(wizard_.get()), 0);
}

TEST_F(ClickedFolderPage, DoubleClickEntersAndTheParentLeadsBack) {
  const Pixels path = LookAtPath();
  wizard_->ClickAndWait(FolderLine(kBox), 2);
  wizard_->Keep("folder-entered");
  ExpectNext(false);
  EXPECT_TRUE(LookAtPath() != path);
  wizard_->ClickAndWait(FolderLine(1));  // inner/
  ExpectNext(true);
  // Apart from the click before, or the three would be a double click and one more.
  wizard_->ClickAndWait({FolderLine(1).x + 50, FolderLine(1).y}, 2);
  ExpectNext(true);  // the same folder, entered
  wizard_->ClickAndWait(FolderLine(kParent), 2);
  ExpectNext(false);
  wizard_->ClickAndWait(FolderLine(kParent), 2);
  EXPECT_TRUE(LookAtPath() == path);
  ExpectNext(false);
  wizard_->ClickAndWait(FolderLine(kArduino), 2);
  ExpectNext(true);
  EXPECT_EQ(Done(wizard_.get()), 0);
}

TEST_F(ClickedFolderPage, DropDownLeadsUpAndDownAgain) {
  wizard_->ClickAndWait(kBelowTheLines);
  const Pixels list = wizard_->Look(kList);
  wizard_->ClickAndWait(FolderLine(kBox), 2);
  wizard_->ClickAndWait(FolderLine(1), 2);  // inner/
  ExpectNext(true);
  const Pixels inner = LookAtPath();
  const Pixels inner_list = wizard_->Look(kList);
  wizard_->ClickAndWait(kPathChoice);
  wizard_->Keep("folder-menu");
  wizard_->ClickAndWait(MenuLine(2));  // inner/, box/, Documents/
  wizard_->Keep("folder-climbed");
  ExpectNext(false);
  EXPECT_TRUE(wizard_->Look(kList) == list);
  // The deeper folders are still on offer. The menu opens with the third line over the field.
  wizard_->ClickAndWait(kPathChoice);
  wizard_->Keep("folder-menu-climbed");
  wizard_->ClickAndWait(MenuLine(-2));
  ExpectNext(true);
  EXPECT_TRUE(LookAtPath() == inner);
  EXPECT_TRUE(wizard_->Look(kList) == inner_list);
  EXPECT_EQ(Done(wizard_.get()), 0);
}

TEST_F(ClickedFolderPage, HelpWindowFollowsTheFoldersAndHides) {
  wizard_->ClickAndWait(kHelp);
  wizard_->TurnTo(" Help");
  wizard_->Keep("help");
  const Pixels documents = wizard_->Look(kHelpLog);
  wizard_->TurnTo(" Installer");
  wizard_->ClickAndWait(FolderLine(kArduino));
  ExpectNext(true);
  EXPECT_TRUE(wizard_->Shows(" Help"));
  wizard_->TurnTo(" Help");
  wizard_->Keep("help-arduino");
  const Pixels arduino = wizard_->Look(kHelpLog);
  EXPECT_TRUE(arduino != documents);
  wizard_->TurnTo(" Installer");
  wizard_->ClickAndWait(FolderLine(kPlain));
  wizard_->TurnTo(" Help");
  EXPECT_TRUE(wizard_->Look(kHelpLog) != arduino);
  wizard_->Click(kHelpOk);
  wizard_->WaitUntilGone(" Help");
  wizard_->TurnTo(" Installer");
  ExpectNext(false);
  wizard_->ClickAndWait(kHelp);  // a second time
  wizard_->TurnTo(" Help");
  wizard_->TurnTo(" Installer");
  EXPECT_EQ(Done(wizard_.get()), 0) << "Cancel takes the help window with it";
}

}  // namespace
