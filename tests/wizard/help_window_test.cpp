// The help window: one window, built at the first press, on the live check log.
#include "wizard/help_window.h"

#include "tests/wizard/wizard_test.h"

#include <FL/Fl_Button.H>
#include <FL/Fl_File_Browser.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Text_Buffer.H>
#include <FL/Fl_Text_Display.H>
#include <FL/Fl_Window.H>

#include <cstdlib>
#include <filesystem>

#include "wizard/folder_browser.h"
#include "wizard/folder_page.h"
#include "wizard/wizard_pages.h"

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class HelpWindowTest : public WizardTest {
 protected:
  HelpWindowTest() {
    std::filesystem::create_directories(Home("Documents/one"));
    std::filesystem::create_directories(Home("Documents/two"));
    Show();
    MainWindow->show();
  }

  static std::string DisplayedText() {
    auto* display = dynamic_cast<Fl_Text_Display*>(HelpWindow->child(5));
    char* text = display->buffer()->text();
    std::string shown = text;
    std::free(text);
    return shown;
  }

  static void Select(int line) {
    FolderList->value(line);
    FolderList->do_callback();
  }
};

TEST_F(HelpWindowTest, IsBuiltAtTheFirstPressAndNotBefore) {
  EXPECT_EQ(HelpWindow, nullptr);
  help_button_callback(nullptr, nullptr);
  ASSERT_NE(HelpWindow, nullptr);
  EXPECT_TRUE(HelpWindow->visible());
}

TEST_F(HelpWindowTest, SecondPressBringsTheSameWindowForward) {
  help_button_callback(nullptr, nullptr);
  const Fl_Window* window = HelpWindow;
  const int children = window->children();
  help_button_callback(nullptr, nullptr);
  EXPECT_EQ(HelpWindow, window);
  EXPECT_EQ(window->children(), children);
  EXPECT_TRUE(HelpWindow->visible());
}

TEST_F(HelpWindowTest, OkHidesItAndAPressShowsItAgainWithTheLogOfThen) {
  help_button_callback(nullptr, nullptr);
  const Fl_Window* window = HelpWindow;
  RunPending();
  Click(Labelled(HelpWindow, "Ok"));
  EXPECT_FALSE(HelpWindow->visible());
  Select(2);
  help_button_callback(nullptr, nullptr);
  EXPECT_EQ(HelpWindow, window);
  EXPECT_THAT(DisplayedText(), HasSubstr("Documents/one/"));
}

TEST_F(HelpWindowTest, OwnCloseControlHidesIt) {
  help_button_callback(nullptr, nullptr);
  HelpWindow->do_callback();
  EXPECT_FALSE(HelpWindow->visible());
  EXPECT_TRUE(MainWindow->visible());
}

TEST_F(HelpWindowTest, FirstOpeningAlreadyHoldsTheRunOfStartUp) {
  help_button_callback(nullptr, nullptr);
  EXPECT_THAT(DisplayedText(), HasSubstr("Directory: " + Home("Documents/\n")));
  EXPECT_THAT(DisplayedText(), HasSubstr("Does not match Arduino 1.8.19\n"));
}

TEST_F(HelpWindowTest, ChangeOfFolderShowsTheLatestRunOnlyWhileItIsOpen) {
  help_button_callback(nullptr, nullptr);
  Select(2);
  EXPECT_THAT(DisplayedText(), HasSubstr("Directory: " + Home("Documents/one/\n")));
  Select(3);
  EXPECT_THAT(DisplayedText(), HasSubstr("Directory: " + Home("Documents/two/\n")));
  EXPECT_THAT(DisplayedText(), Not(HasSubstr("Documents/one/")));
  EXPECT_EQ(DisplayedText(), LogText());
}

TEST_F(HelpWindowTest, IsNotModal) {
  help_button_callback(nullptr, nullptr);
  EXPECT_FALSE(HelpWindow->modal());
  EXPECT_FALSE(HelpWindow->non_modal());
}

}  // namespace
