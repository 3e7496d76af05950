// The library page: its list, its preview and its two toggles.
#include "wizard/library_browser.h"

#include "tests/wizard/wizard_test.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Check_Browser.H>
#include <FL/Fl_File_Browser.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Image.H>
#include <FL/Fl_Round_Button.H>

#include "engine/library_query.h"
#include "store/host_selection.h"
#include "tests/wizard/png_maker.h"
#include "wizard/folder_page.h"
#include "wizard/library_page.h"
#include "wizard/wizard_pages.h"

using ::testing::ElementsAre;

namespace {

std::vector<std::string> Rows() {
  std::vector<std::string> rows;
  for (int row = 1; row <= LibraryList->nitems(); ++row) rows.emplace_back(LibraryList->text(row));
  return rows;
}

std::vector<TestEntry> Libraries(std::vector<TestEntry> libraries) {
  std::vector<TestEntry> entries = ControlEntries1819();
  entries.insert(entries.end(), libraries.begin(), libraries.end());
  return entries;
}

std::string Geometry(const Fl_Widget* widget) {
  return std::to_string(widget->x()) + "," + std::to_string(widget->y()) + " " +
         std::to_string(widget->w()) + "x" + std::to_string(widget->h());
}

class LibraryBrowser : public WizardTest {
 protected:
  // Three rows: one with picture and description, one with a description alone, a bare one.
  void BuildThree() {
    Build(Libraries({{"libraries/Full.png", PlainPng(128, 110)},
                     {"libraries/Full.txt", "Does everything."},
                     {"libraries/Full/a.cpp", "a"},
                     {"libraries/Text.txt", "Only words."},
                     {"libraries/Text/b.cpp", "b"},
                     {"libraries/Bare/c.cpp", "c"}}));
  }

  // The same on the library page of a shown wizard.
  void OpenThree() {
    MakeDefaultHost();
    Show(Libraries({{"libraries/Full/a.cpp", "a"},
                    {"libraries/Text/b.cpp", "b"},
                    {"libraries/Bare/c.cpp", "c"}}));
    GoToPage(3);
    RunPending();
  }

  // Clicks on a row, counted from 1, which changes its tick.
  static void ClickRow(int row) {
    const int height = LibraryList->textsize() + 2;
    ClickAt(LibraryList, LibraryList->x() + 60, LibraryList->y() + 2 + height * row - height / 2);
  }

  static std::string Toggles() {
    return std::string(AllButton->value() != 0 ? "All" : "-") +
           (NoneButton->value() != 0 ? " None" : " -");
  }
};

// ---- the list ---------------------------------------------------------------------------------

TEST_F(LibraryBrowser, RowsStandInTheOrderOfFirstAppearanceWithoutRepeats) {
  Build(Libraries({{"libraries/Zeta/z.cpp", "z"},
                   {"libraries/alpha/a.cpp", "a"},
                   {"libraries/Zeta/y.cpp", "y"},
                   {"libraries/Alpha/a.cpp", "a"},
                   {"libraries/alpha/examples/deep/b.ino", "b"}}));
  EXPECT_THAT(Rows(), ElementsAre("Zeta", "alpha", "Alpha"));
}

TEST_F(LibraryBrowser, CompanionFilesAndOtherFoldersMakeNoRow) {
  Build(Libraries({{"libraries/One.txt", "text"},
                   {"libraries/One.png", "picture"},
                   {"1.8.19/libraries/Servo/Servo.h", "servo"},
                   {"other/libraries/Two/b.cpp", "b"},
                   {"Libraries/Three/b.cpp", "b"},
                   {"libraries/One/a.cpp", "a"}}));
  EXPECT_THAT(Rows(), ElementsAre("One"));
}

TEST_F(LibraryBrowser, NameOf255CharactersIsARowAndOneOf256OrNoneIsNot) {
  const std::string longest(255, 'n');
  Build(Libraries({{"libraries/" + longest + "/a.cpp", "a"},
                   {"libraries/" + longest + "n/a.cpp", "a"},
                   {"libraries//a.cpp", "a"}}));
  EXPECT_THAT(Rows(), ElementsAre(longest));
}

TEST_F(LibraryBrowser, EveryRowStartsTickedWithAllSetAndTheFirstRowShown) {
  BuildThree();
  EXPECT_EQ(LibraryList->nchecked(), 3);
  EXPECT_EQ(Toggles(), "All -");
  EXPECT_EQ(LabelOf(LibraryTitleBox), "Full");
  EXPECT_EQ(LabelOf(LibraryTextBox), "Does everything.");
}

TEST_F(LibraryBrowser, PayloadWithoutLibrariesHasAnEmptyPreview) {
  Build(Libraries({}));
  EXPECT_EQ(LibraryList->nitems(), 0);
  EXPECT_EQ(LabelOf(LibraryTitleBox), "");
  EXPECT_EQ(LabelOf(LibraryTextBox), "");
  EXPECT_EQ(LibraryImageBox->image()->w(), 0);
}

TEST_F(LibraryBrowser, ChangingTheFolderLeavesTheTicks) {
  OpenThree();
  ClickRow(2);
  FolderList->value(1);
  FolderList->do_callback();
  EXPECT_EQ(LibraryList->checked(1), 1);
  EXPECT_EQ(LibraryList->checked(2), 0);
  EXPECT_EQ(LibraryList->nchecked(), 2);
}

TEST_F(LibraryBrowser, GoingBackAndForthLeavesTheTicks) {
  OpenThree();
  ClickRow(2);
  Click(Labelled(LibraryPage, "Back"));
  Click(FolderNextButton);
  EXPECT_EQ(CurrentPage(), 3);
  EXPECT_THAT(Rows(), ElementsAre("Full", "Text", "Bare"));
  EXPECT_EQ(LibrarySelected("Full"), 1);
  EXPECT_EQ(LibrarySelected("Text"), 0);
}

// ---- the preview ------------------------------------------------------------------------------

TEST_F(LibraryBrowser, PictureOf110LeavesADescriptionOf60BelowIt) {
  BuildThree();
  ShowLibrary(0);
  EXPECT_EQ(Geometry(LibraryImageBox), "236,100 244x110");
  EXPECT_EQ(Geometry(LibrarySpacerBox), "236,210 244x12");
  EXPECT_EQ(Geometry(LibraryTextBox), "236,222 244x60");
  EXPECT_EQ(LibraryImageBox->image()->w(), 128);
}

TEST_F(LibraryBrowser, TextMovesUpIntoTheRoomOfAMissingPicture) {
  BuildThree();
  ShowLibrary(1);
  EXPECT_EQ(Geometry(LibraryImageBox), "236,100 244x0");
  EXPECT_EQ(Geometry(LibrarySpacerBox), "236,100 244x12");
  EXPECT_EQ(Geometry(LibraryTextBox), "236,112 244x170");
  EXPECT_EQ(LibraryImageBox->image()->w(), 0);
  EXPECT_EQ(LabelOf(LibraryTitleBox), "Text");
  EXPECT_EQ(LabelOf(LibraryTextBox), "Only words.");
}

TEST_F(LibraryBrowser, LibraryWithNeitherShowsItsNameAlone) {
  BuildThree();
  ShowLibrary(2);
  EXPECT_EQ(LabelOf(LibraryTitleBox), "Bare");
  EXPECT_EQ(LabelOf(LibraryTextBox), "");
  EXPECT_EQ(LibraryImageBox->image()->h(), 0);
}

TEST_F(LibraryBrowser, RowBeyondTheListChangesNothing) {
  BuildThree();
  ShowLibrary(1);
  ShowLibrary(4);
  EXPECT_EQ(LabelOf(LibraryTitleBox), "Text");
}

TEST_F(LibraryBrowser, RowJustBeyondTheLastShowsAnEmptyPreview) {
  BuildThree();
  ShowLibrary(3);
  EXPECT_EQ(LabelOf(LibraryTitleBox), "");
  EXPECT_EQ(LabelOf(LibraryTextBox), "");
  EXPECT_EQ(LibraryImageBox->image()->h(), 0);
}

TEST_F(LibraryBrowser, PreviewReplacedStaysReadable) {
  BuildThree();
  const char* text = LibraryTextBox->label();
  const Fl_Image* image = LibraryImageBox->image();
  ShowLibrary(1);
  EXPECT_STREQ(text, "Does everything.");
  EXPECT_EQ(image->h(), 110);
}

TEST_F(LibraryBrowser, DescriptionIsCutAt1023Bytes) {
  Build(Libraries({{"libraries/Long.txt", std::string(1023, 'a') + "b"},
                   {"libraries/Long/a.cpp", "a"},
                   {"libraries/Fits.txt", std::string(1023, 'c')},
                   {"libraries/Fits/a.cpp", "a"}}));
  EXPECT_EQ(LabelOf(LibraryTextBox), std::string(1023, 'a'));
  ShowLibrary(1);
  EXPECT_EQ(LabelOf(LibraryTextBox), std::string(1023, 'c'));
}

TEST_F(LibraryBrowser, EmptyDescriptionAtThePayloadsEndIsAnEmptyText) {
  Build(Libraries({{"libraries/One/a.cpp", "a"}, {"libraries/One.txt", ""}}));
  EXPECT_EQ(LabelOf(LibraryTextBox), "");
}

TEST_F(LibraryBrowser, DescriptionAtIndexZeroCountsAsNone) {
  Build({{"libraries/One.txt", "never shown"}, {"libraries/One/a.cpp", "a"}});
  EXPECT_EQ(LabelOf(LibraryTitleBox), "One");
  EXPECT_EQ(LabelOf(LibraryTextBox), "");
}

TEST_F(LibraryBrowser, PictureAtIndexZeroIsShown) {
  Build({{"libraries/One.png", PlainPng(9, 7)}, {"libraries/One/a.cpp", "a"}});
  EXPECT_EQ(LibraryImageBox->image()->h(), 7);
}

TEST_F(LibraryBrowser, PictureThatIsDamagedIsAnEmptyOne) {
  Build(Libraries({{"libraries/One.png", "no picture"}, {"libraries/One/a.cpp", "a"}}));
  EXPECT_EQ(LibraryImageBox->image()->h(), 0);
  EXPECT_EQ(Geometry(LibraryTextBox), "236,112 244x170");
}

TEST_F(LibraryBrowser, EveryPreviewRedrawsThePage) {
  MakeDefaultHost();
  Show(Libraries({{"libraries/One/a.cpp", "a"}}));
  GoToPage(3);
  RunPending();
  LibraryPage->clear_damage();
  ShowLibrary(0);
  EXPECT_NE(LibraryPage->damage() & FL_DAMAGE_ALL, 0);
}

// ---- ticks and toggles ------------------------------------------------------------------------

TEST_F(LibraryBrowser, UntickingARowClearsAllAndTickingItSetsAllAgain) {
  OpenThree();
  ClickRow(2);
  EXPECT_EQ(Toggles(), "- -");
  EXPECT_EQ(LabelOf(LibraryTitleBox), "Text");
  ClickRow(2);
  EXPECT_EQ(Toggles(), "All -");
}

TEST_F(LibraryBrowser, UntickingTheLastTickedRowSetsNone) {
  OpenThree();
  ClickRow(1);
  ClickRow(2);
  EXPECT_EQ(Toggles(), "- -");
  ClickRow(3);
  EXPECT_EQ(Toggles(), "- None");
}

TEST_F(LibraryBrowser, ClickWithoutACurrentRowEmptiesThePreview) {
  BuildThree();
  ASSERT_EQ(LibraryList->value(), 0);
  LibraryToggled(LibraryList, nullptr);
  EXPECT_EQ(LabelOf(LibraryTitleBox), "");
  EXPECT_EQ(Toggles(), "All -");
}

TEST_F(LibraryBrowser, NoneUnticksEveryRowAndAllTicksThemAgain) {
  MakeDefaultHost();
  Show(Libraries({{"libraries/One/a.cpp", "a"}, {"libraries/Two/b.cpp", "b"}}));
  GoToPage(3);
  ShowLibrary(1);
  Click(NoneButton);
  EXPECT_EQ(Toggles(), "- None");
  EXPECT_EQ(LibraryList->nchecked(), 0);
  Click(AllButton);
  EXPECT_EQ(Toggles(), "All -");
  EXPECT_EQ(LibraryList->nchecked(), 2);
  EXPECT_EQ(LabelOf(LibraryTitleBox), "Two");  // neither touches the preview
}

TEST_F(LibraryBrowser, PressingASetToggleTurnsItOffAndChangesNothingElse) {
  MakeDefaultHost();
  Show(Libraries({{"libraries/One/a.cpp", "a"}}));
  GoToPage(3);
  Click(AllButton);
  EXPECT_EQ(Toggles(), "- -");
  EXPECT_EQ(LibraryList->nchecked(), 1);
  Click(NoneButton);
  Click(NoneButton);
  EXPECT_EQ(Toggles(), "- -");
  EXPECT_EQ(LibraryList->nchecked(), 0);
}

}  // namespace
