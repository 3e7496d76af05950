// Every widget of the six pages and of the help window, in stacking order, against the tables of
// the design. The expectations are written from those tables, not from the code.
#include "tests/wizard/wizard_test.h"

#include <FL/Fl_Group.H>
#include <FL/Fl_Image.H>
#include <FL/Fl_Text_Display.H>
#include <FL/Fl_Window.H>
#include <FL/Fl_Wizard.H>

#include "driver/driver_page.h"
#include "engine/host_preferences.h"
#include "engine/install_error.h"
#include "engine/library_query.h"
#include "platform/native_window.h"
#include "recognition/check_log.h"
#include "recognition/default_folder.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "store/location_keys.h"
#include "tests/wizard/png_maker.h"
#include "tests/wizard/widget_rows.h"
#include "wizard/folder_page.h"
#include "wizard/help_window.h"
#include "wizard/install_page.h"
#include "wizard/library_page.h"
#include "wizard/welcome_page.h"
#include "wizard/wizard_pages.h"

namespace {

constexpr char kWaitingText[] =
    "Checking if the USB Serial driver is already installed.\n\nThis may take a few "
    "moments....\n\nOk, let be honest, on a slow netbook this can take 15+ minutes.  It may seem "
    "like this program has crashed, but Windows will eventually finish scanning its registry.  "
    "Please be patient, maybe go get a cup of coffee... eventually this will finish!";

// Pictures of different sizes, so that each is known again, and one library with a description.
std::vector<TestEntry> PicturePayload() {
  std::vector<TestEntry> entries = ControlEntries1819();
  entries.insert(entries.end(), {{"screenshot.png", PlainPng(14, 30)},
                                 {"quirlo_main.png", PlainPng(33, 11)},
                                 {"quirlo_icon.png", PlainPng(kLogoWidth, kLogoHeight)},
                                 {"final.png", PlainPng(49, 24)},
                                 {"sc.png", PlainPng(5, 5)},
                                 {"libraries/OneWire.png", PlainPng(128, 40)},
                                 {"libraries/OneWire.txt", "One wire is enough."},
                                 {"libraries/OneWire/OneWire.cpp", "one wire"},
                                 {"quirloduino.txt", "1.60-beta5"}});
  return entries;
}

class WidgetTable : public WizardTest {
 protected:
  WidgetTable() { Build(PicturePayload()); }
};

TEST_F(WidgetTable, WindowHoldsOneWizardOfSixPagesAllOfTheWindowsSize) {
  EXPECT_EQ(LabelOf(MainWindow), "Quirloduino 1.60-beta5 Installer");
  EXPECT_EQ(MainWindow->w(), 500);
  EXPECT_EQ(MainWindow->h(), 360);
  EXPECT_EQ(MainWindow->resizable(), nullptr);
  ASSERT_EQ(MainWindow->children(), 1);
  EXPECT_EQ(MainWindow->child(0), Wizard);
  EXPECT_EQ(LabelOf(Wizard), "");
  EXPECT_EQ(Wizard->children(), 6);
  for (const Fl_Group* group : Pages()) {
    EXPECT_EQ(group->x(), 0);
    EXPECT_EQ(group->y(), 0);
    EXPECT_EQ(group->w(), 500);
    EXPECT_EQ(group->h(), 360);
    EXPECT_EQ(LabelOf(group), "");
  }
  EXPECT_EQ(Wizard->w(), 500);
  EXPECT_EQ(Wizard->h(), 360);
  EXPECT_EQ(Wizard->value(), WelcomePage);
}

TEST_F(WidgetTable, EveryListOfChildrenIsEnded) {
  EXPECT_EQ(Fl_Group::current(), nullptr);
}

TEST_F(WidgetTable, WelcomePage) {
  EXPECT_EQ(
      Lines(*WelcomePage),
      Lines({
          WithPicture(Box(0, 0, 144, 312, "flat"), "14x30"),
          White(Box(144, 0, 356, 312, "flat")),
          Box(4, 312, 492, 2, "thin-down"),
          Box(144, 0, 2, 312, "thin-down"),
          Text(323, 6, FL_HELVETICA_BOLD, 30, 1, "Quirloduino"),
          Text(323, 48, FL_HELVETICA, 12, 1, "Version 1.60-beta5"),
          WithPicture(Box(152, 76, 340, 113, "thin-down"), "33x11"),
          Text(323, 196, FL_HELVETICA, 12, 1, "Arduino versions supported:"),
          Text(323, 212, FL_HELVETICA, 12, 1, "1.8.19"),
          Sized(Wrapped(Box(176, 244, 292, 130, "none"),
                        "This installer adds files to your Arduino software so you can build and "
                        "run sketches on Quirlo."),
                14),
          Deactivated(Back()),
          Next(),
          Cancel(),
      }));
  EXPECT_EQ(Pages()[0], WelcomePage);
}

TEST_F(WidgetTable, DriverPage) {
  EXPECT_EQ(Lines(*Pages()[1]),
            Lines({
                Header(),
                Title("Virtual Serial Driver"),
                Subtitle("Install support for USB Serial"),
                Logo(),
                UpperRule(),
                Wrapped(White(Box(32, 92, 436, 152, "thin-down")), kWaitingText),
                LowerRule(),
                Deactivated(Back()),
                Deactivated(Cancel()),
                Deactivated(Next()),
                DeactivatedAndHidden(Button(320, 260, 150, 26, "Skip Driver Install", "skip")),
                DeactivatedAndHidden(Button(30, 260, 120, 26, "Update Driver", "update")),
                DeactivatedAndHidden(Button(170, 260, 140, 26, "Uninstall Driver", "uninstall")),
            }));
  EXPECT_THAT(
      (std::vector<const void*>{DriverStatusBox, DriverBackButton, DriverCancelButton,
                                DriverNextButton, DriverSkipButton, DriverUpdateButton,
                                DriverUninstallButton}),
      ::testing::ElementsAre(Pages()[1]->child(5), Pages()[1]->child(7), Pages()[1]->child(8),
                             Pages()[1]->child(9), Pages()[1]->child(10), Pages()[1]->child(11),
                             Pages()[1]->child(12)));
  EXPECT_EQ(DriverNextPageCallback, static_cast<Fl_Callback_p>(wizard_next_callback));
}

TEST_F(WidgetTable, FolderPage) {
  Row choice = Box(32, 75, 436, 30, "own");
  choice.kind = "Fl_Choice";
  Row list = Box(32, 112, 436, 186, "own");
  list.kind = "Fl_File_Browser";
  list.callback = "folder list";
  list.more = "hold directories";
  EXPECT_EQ(Lines(*FolderPage), Lines({
                                    Header(),
                                    Title("Select Arduino Folder"),
                                    Subtitle("Choose Arduino location to install Quirloduino"),
                                    Logo(),
                                    UpperRule(),
                                    choice,
                                    list,
                                    LowerRule(),
                                    Back(),
                                    Cancel(),
                                    Deactivated(Next()),
                                    Button(340, 323, 26, 26, "?", "help"),
                                }));
  EXPECT_EQ(Pages()[2], FolderPage);
  EXPECT_THAT((std::vector<const void*>{PathChoice, FolderList, FolderNextButton, HelpButton}),
              ::testing::ElementsAre(FolderPage->child(5), FolderPage->child(6),
                                     FolderPage->child(10), FolderPage->child(11)));
}

TEST_F(WidgetTable, LibraryPageWithThePreviewOfItsFirstRow) {
  Row all = Box(36, 74, 70, 16, "own");
  all.kind = "Fl_Round_Button";
  all.label = "All";
  all.callback = "all";
  all.more = "toggle set";
  Row none = Box(120, 74, 90, 16, "own");
  none.kind = "Fl_Round_Button";
  none.label = "None";
  none.callback = "none";
  none.more = "toggle clear";
  Row list = Box(16, 100, 200, 180, "own");
  list.kind = "Fl_Check_Browser";
  list.callback = "library";
  list.more = "when 1";
  Row name = Sized(Box(236, 72, 244, 20, "none"), 16);
  name.label = "OneWire";
  // The sizes are those that the preview of a picture 40 high gives.
  EXPECT_EQ(Lines(*LibraryPage),
            Lines({
                Header(),
                Title("Libraries to Install"),
                Subtitle("Choose additional libraries install"),
                Logo(),
                UpperRule(),
                all,
                none,
                list,
                name,
                WithPicture(Box(236, 100, 244, 40, "none"), "128x40"),
                Box(236, 140, 244, 12, "none"),
                Wrapped(Box(236, 152, 244, 130, "none"), "One wire is enough."),
                LowerRule(),
                Back(),
                Cancel(),
                Next(),
            }));
  EXPECT_EQ(Pages()[3], LibraryPage);
  EXPECT_THAT(
      (std::vector<const void*>{AllButton, NoneButton, LibraryList, LibraryTitleBox,
                                LibraryImageBox, LibrarySpacerBox, LibraryTextBox}),
      ::testing::ElementsAre(LibraryPage->child(5), LibraryPage->child(6), LibraryPage->child(7),
                             LibraryPage->child(8), LibraryPage->child(9), LibraryPage->child(10),
                             LibraryPage->child(11)));
}

TEST_F(WidgetTable, InstallPage) {
  Row status = Text(64, 80, FL_HELVETICA, 16, 0, "Files to be installed:............");
  status.label = "Click Install to begin";
  Row progress = Box(64, 105, 372, 25, "own");
  progress.kind = "Fl_Progress";
  progress.more = "0 to " + std::to_string(PicturePayload().size()) + " at 0";
  EXPECT_EQ(Lines(*InstallPage), Lines({
                                     Header(),
                                     Title("Copy Files To Arduino Folder"),
                                     Subtitle("Click install to begin"),
                                     Logo(),
                                     UpperRule(),
                                     LowerRule(),
                                     status,
                                     progress,
                                     Sized(Wrapped(Box(64, 136, 372, 160, "none"), ""), 12),
                                     Back(),
                                     Button(240, 323, 90, 26, "Install", "begin install"),
                                     Cancel(),
                                 }));
  EXPECT_EQ(Pages()[4], InstallPage);
  EXPECT_THAT((std::vector<const void*>{InstallStatusLabel, InstallProgress, InstallDetailBox,
                                        InstallBackButton, InstallButton, InstallCancelButton}),
              ::testing::ElementsAre(InstallPage->child(6), InstallPage->child(7),
                                     InstallPage->child(8), InstallPage->child(9),
                                     InstallPage->child(10), InstallPage->child(11)));
}

TEST_F(WidgetTable, FinishedPage) {
  EXPECT_EQ(Lines(*Pages()[5]), Lines({
                                    WithPicture(Box(5, 65, 490, 242, "none"), "49x24"),
                                    Header(),
                                    Title("Finished"),
                                    Subtitle("All files were installed"),
                                    Logo(),
                                    UpperRule(),
                                    LowerRule(),
                                    Deactivated(Back()),
                                    Deactivated(Button(240, 323, 90, 26, "Next", "-")),
                                    Button(390, 323, 90, 26, "Done", "cancel"),
                                }));
}

TEST_F(WidgetTable, HelpWindow) {
  MainWindow->show();
  help_button_callback(nullptr, nullptr);
  EXPECT_EQ(LabelOf(HelpWindow), "Quirloduino 1.60-beta5 Help");
  EXPECT_EQ(HelpWindow->w(), 400);
  EXPECT_EQ(HelpWindow->h(), 360);
  Row log = White(Box(32, 75, 336, 223, "own"));
  log.kind = "Fl_Text_Display";
  EXPECT_EQ(Lines(*HelpWindow),
            Lines({
                White(Box(0, 0, 400, 60, "flat")),
                Text(200, 4, FL_HELVETICA_BOLD, 16, 1, "Supported Arduino Versions:"),
                Text(200, 26, FL_HELVETICA, 15, 1, "1.8.19"),
                Text(200, 46, FL_HELVETICA, 10, 1,
                     "Windows installer & zip are supported, but Windows \"app\" can not be used."),
                Box(0, 60, 400, 2, "thin-down"),
                log,
                Box(4, 312, 392, 2, "thin-down"),
                Button(155, 323, 90, 26, "Ok", "help ok"),
            }));
  EXPECT_EQ(dynamic_cast<Fl_Text_Display*>(HelpWindow->child(5))->buffer(), LogBuffer);
  EXPECT_EQ(Fl_Group::current(), nullptr);
}

TEST_F(WidgetTable, FivePagesShareOneImageAsTheirLogo) {
  const Fl_Image* logo = Pages()[1]->child(3)->image();
  for (const std::size_t page : {std::size_t{2}, std::size_t{3}, std::size_t{4}}) {
    EXPECT_EQ(Pages()[page]->child(3)->image(), logo);
  }
  EXPECT_EQ(Pages()[5]->child(4)->image(), logo);
}

// A widget whose flags can be looked at.
struct FlaggedWidget : Fl_Widget {
  static bool HasCopiedLabel(const Fl_Widget& widget) {
    return ((widget.*(&FlaggedWidget::flags))() & COPIED_LABEL) != 0;
  }
};

// The widgets below the group, at every depth.
std::vector<const Fl_Widget*> AllBelow(const Fl_Group& group) {
  std::vector<const Fl_Widget*> widgets;
  for (int i = 0; i < group.children(); ++i) {
    widgets.push_back(group.child(i));
    if (const Fl_Group* below = const_cast<Fl_Widget*>(group.child(i))->as_group()) {
      const auto more = AllBelow(*below);
      widgets.insert(widgets.end(), more.begin(), more.end());
    }
  }
  return widgets;
}

std::vector<std::string> LabelsBelow(const Fl_Group& group) {
  std::vector<std::string> labels;
  for (const Fl_Widget* widget : AllBelow(group)) labels.push_back(LabelOf(widget));
  return labels;
}

// Writes over the part of the stack in which the building of the pages had its variables.
[[gnu::noinline]] void WriteOverTheStack() {
  volatile char bytes[65536];
  for (volatile char& byte : bytes) byte = 'x';
}

TEST_F(WidgetTable, LabelsPointAtTextsThatStayForTheWholeRun) {
  EXPECT_EQ(WelcomePage->child(8)->label(), SupportedVersions());
  const std::vector<std::string> labels = LabelsBelow(*Wizard);
  for (const Fl_Widget* widget : AllBelow(*Wizard)) {
    EXPECT_FALSE(FlaggedWidget::HasCopiedLabel(*widget)) << LabelOf(widget);
  }
  // What the program keeps in shared texts changes many times in a run.
  WriteOverTheStack();
  ScratchConcat("another ", "text");
  SelectRelease("1.8.19");
  LookupLocation("TOOL_SUBDIR");
  DefaultFolder();
  FindPreferences("/somewhere/", 10819);
  SetInstallError("another text");
  SelectRelease("another");
  EXPECT_EQ(LabelsBelow(*Wizard), labels);
}

class WidgetTableWithoutPictures : public WizardTest {};

TEST_F(WidgetTableWithoutPictures, PicturesAreEmptyAndTheWizardOpens) {
  Show(ControlEntries1819());
  for (const int child : {0, 6}) {
    const Fl_Image* image = WelcomePage->child(child)->image();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->w(), 0);
    EXPECT_EQ(image->h(), 0);
  }
  RunPending();
  EXPECT_TRUE(MainWindow->shown());
}

TEST_F(WidgetTableWithoutPictures, NativeHandleIsNullUntilTheWindowIsShown) {
  Build(ControlEntries1819());
  EXPECT_EQ(NativeHandleOf(MainWindow), nullptr);
  MainWindow->show();
  EXPECT_NE(NativeHandleOf(MainWindow), nullptr);
}

}  // namespace
