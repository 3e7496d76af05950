// The folder page: the table of its events, and the small functions behind it.
#include "wizard/folder_browser.h"

#include "tests/wizard/wizard_test.h"

#include <FL/Fl_Button.H>
#include <FL/Fl_Choice.H>
#include <FL/Fl_File_Browser.H>
#include <FL/Fl_Group.H>

#include <cstring>
#include <filesystem>

#include "platform/text.h"
#include "store/host_selection.h"
#include "tests/wizard/recorded_calls.h"
#include "wizard/folder_page.h"
#include "wizard/wizard_pages.h"

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

constexpr int k1819 = 10819;

std::vector<std::string> Entries() {
  std::vector<std::string> entries;
  for (int line = 1; line <= FolderList->size(); ++line)
    entries.emplace_back(FolderList->text(line));
  return entries;
}

std::vector<std::string> Choices() {
  std::vector<std::string> choices;
  for (int i = 0; i + 1 < PathChoice->size(); ++i) choices.emplace_back(PathChoice->text(i));
  return choices;
}

// What a click on a line of the list brings, `clicks` as FLTK counts it: 0 is a single one.
void SelectEntry(const std::string& entry, int clicks) {
  for (int line = 1; line <= FolderList->size(); ++line) {
    if (FolderList->text(line) != entry) continue;
    FolderList->value(line);
    Fl::event_clicks(clicks);
    FolderList->do_callback();
    return;
  }
  FAIL() << "no entry " << entry;
}

void PickChoice(const std::string& text) {
  for (int i = 0; i + 1 < PathChoice->size(); ++i) {
    if (PathChoice->text(i) != text) continue;
    PathChoice->value(i);
    PathChoice->mvalue()->do_callback(PathChoice);
    return;
  }
  FAIL() << "no choice " << text;
}

// The page opens on an empty Documents folder beside which an Arduino and a plain folder stand.
class FolderBrowser : public WizardTest {
 protected:
  FolderBrowser() {
    MakeArduino1819(Home("Documents/ide"));
    fs::create_directories(Home("Documents/plain/below"));
    Build();
    RecordedCalls.clear();
  }

  std::string Documents() const { return Home("Documents/"); }

  static void ExpectNext(bool active) {
    EXPECT_EQ(FolderNextButton->active() != 0, active);
    EXPECT_EQ(HostVersionNumber, active ? k1819 : 0);
  }
};

// ---- the table of events ----------------------------------------------------------------------

class PageBuilt : public WizardTest {};

TEST_F(PageBuilt, ShowsTheDefaultFolderRecognisedAgainWithoutLookingForPreferences) {
  const std::string host = MakeDefaultHost();
  RecordedCalls.clear();
  Build();
  EXPECT_EQ(BrowsedFolder, host);
  EXPECT_EQ(HostFolder, host);
  EXPECT_THAT(Entries(), ElementsAre("../", "examples/", "lib/"));
  EXPECT_EQ(Choices().front(), host);
  EXPECT_THAT(RecordedCalls,
              ElementsAre("IdentifyArduino(" + host + ")", "IdentifyArduino(" + host + ")"));
  EXPECT_EQ(HostVersionNumber, k1819);
  EXPECT_STREQ(HostVersion, "1.8.19");
  EXPECT_TRUE(FolderNextButton->active());
}

TEST_F(PageBuilt, LeavesNextDeadOnAFolderThatIsNotRecognised) {
  Build();
  EXPECT_EQ(BrowsedFolder, Home("Documents/"));
  EXPECT_EQ(HostVersionNumber, 0);
  EXPECT_FALSE(FolderNextButton->active());
}

TEST_F(FolderBrowser, SingleClickTestsTheEntryAndLeavesListAndChoice) {
  fs::create_directories(Home("Documents/new since"));
  const auto choices = Choices();
  SelectEntry("plain/", 0);
  EXPECT_EQ(BrowsedFolder, Documents());
  EXPECT_EQ(HostFolder, Documents() + "plain/");
  EXPECT_THAT(Entries(), Not(Contains("new since/")));
  EXPECT_EQ(Choices(), choices);
  EXPECT_THAT(RecordedCalls, ElementsAre("IdentifyArduino(" + Documents() + "plain/)"));
  ExpectNext(false);
}

TEST_F(FolderBrowser, SingleClickOnAMatchLooksForItsPreferences) {
  SelectEntry("ide/", 0);
  EXPECT_EQ(BrowsedFolder, Documents());
  EXPECT_EQ(HostFolder, Documents() + "ide/");
  EXPECT_THAT(Entries(), ElementsAre("../", "ide/", "plain/"));
  EXPECT_THAT(RecordedCalls, ElementsAre("IdentifyArduino(" + Documents() + "ide/)",
                                         "FindPreferences(" + Documents() + "ide/, 10819)"));
  ExpectNext(true);
}

TEST_F(FolderBrowser, DoubleClickEntersTheFolder) {
  SelectEntry("plain/", 1);
  EXPECT_EQ(BrowsedFolder, Documents() + "plain/");
  EXPECT_EQ(HostFolder, Documents() + "plain/");
  EXPECT_THAT(Entries(), ElementsAre("../", "below/"));
  EXPECT_EQ(Choices().front(), Documents() + "plain/");
  EXPECT_EQ(Choices().at(1), Documents());
  EXPECT_EQ(PathChoice->value(), 0);
  EXPECT_EQ(Fl::event_clicks(), -1);
  EXPECT_THAT(RecordedCalls, ElementsAre("IdentifyArduino(" + Documents() + "plain/)"));
  ExpectNext(false);
}

TEST_F(FolderBrowser, DoubleClickOnAMatchLooksForItsPreferences) {
  SelectEntry("ide/", 1);
  EXPECT_THAT(RecordedCalls, ElementsAre("IdentifyArduino(" + Documents() + "ide/)",
                                         "FindPreferences(" + Documents() + "ide/, 10819)"));
  ExpectNext(true);
}

TEST_F(FolderBrowser, DropDownPickBrowsesWithoutRebuildingItselfOrLookingForPreferences) {
  SelectEntry("ide/", 1);
  SelectEntry("../", 1);
  SelectEntry("ide/", 1);
  const auto choices = Choices();
  RecordedCalls.clear();
  PickChoice(Documents());
  EXPECT_EQ(BrowsedFolder, Documents());
  EXPECT_EQ(HostFolder, Documents());
  EXPECT_THAT(Entries(), ElementsAre("../", "ide/", "plain/"));
  EXPECT_EQ(Choices(), choices);
  ExpectNext(false);
  PickChoice(Documents() + "ide/");
  EXPECT_EQ(BrowsedFolder, Documents() + "ide/");
  ExpectNext(true);
  EXPECT_THAT(RecordedCalls, ElementsAre("IdentifyArduino(" + Documents() + ")",
                                         "IdentifyArduino(" + Documents() + "ide/)"));
}

// An empty host folder is no Arduino, also while the current folder of the process is one. Each is
// reached from a folder that matched, so Next has to die.
TEST_F(FolderBrowser, DropDownPickOfAllDrivesEmptiesBothFolders) {
  const ScopedCurrentFolder arduino(Home("Documents/ide"));
  SelectEntry("ide/", 0);
  PickChoice("[All Drives]");
  EXPECT_STREQ(BrowsedFolder, "");
  EXPECT_STREQ(HostFolder, "");
  EXPECT_THAT(Entries(), Not(IsEmpty()));  // what stands in for the list of drives
  EXPECT_STREQ(HostVersion, "");
  EXPECT_EQ(LogText(), "Directory: \n  No folder is selected\n");
  ExpectNext(false);
}

TEST_F(FolderBrowser, DoubleClickOnTheParentOfTheRootEmptiesBothFolders) {
  const ScopedCurrentFolder arduino(Home("Documents/ide"));
  SelectEntry("ide/", 0);
  PickChoice("/");
  SelectEntry("../", 1);
  EXPECT_STREQ(BrowsedFolder, "");
  EXPECT_STREQ(HostFolder, "");
  EXPECT_STREQ(HostVersion, "");
  ExpectNext(false);
}

TEST_F(FolderBrowser, DropDownPickLeavesNothingOfALongerFolderBehind) {
  SelectEntry("plain/", 1);
  PickChoice("/");
  for (std::size_t i = 1; i < sizeof BrowsedFolder; ++i) ASSERT_EQ(BrowsedFolder[i], '\0') << i;
}

// ---- edge cases -------------------------------------------------------------------------------

TEST_F(FolderBrowser, ClickOnAnEntryOfTheDriveListMakesThatDriveTheHost) {
  PickChoice("[All Drives]");
  SelectEntry("/", 0);
  EXPECT_STREQ(HostFolder, "/");
  EXPECT_STREQ(BrowsedFolder, "");
}

TEST_F(FolderBrowser, ClickWithoutASelectedLineChangesNothing) {
  SelectEntry("ide/", 0);
  RecordedCalls.clear();
  FolderList->deselect();
  FolderList->do_callback();
  EXPECT_EQ(HostFolder, Documents() + "ide/");
  EXPECT_THAT(RecordedCalls, IsEmpty());
  ExpectNext(true);
}

TEST_F(FolderBrowser, SingleClickOnParentJudgesItAndLeavesTheList) {
  SelectEntry("ide/", 1);
  SelectEntry("../", 0);
  EXPECT_EQ(BrowsedFolder, Documents() + "ide/");
  EXPECT_EQ(HostFolder, Documents());
  EXPECT_THAT(Entries(), Contains("lib/"));
  ExpectNext(false);
}

TEST_F(FolderBrowser, DoubleClickOnParentEntersIt) {
  SelectEntry("ide/", 1);
  SelectEntry("../", 1);
  EXPECT_EQ(BrowsedFolder, Documents());
  EXPECT_THAT(Entries(), Contains("plain/"));
}

TEST_F(FolderBrowser, DoubleClickArrivesAsASingleOneFirstAndKeepsAnAcceptedFolder) {
  SelectEntry("ide/", 0);
  ExpectNext(true);
  SelectEntry("ide/", 1);
  ExpectNext(true);
  EXPECT_EQ(HostFolder, Documents() + "ide/");
  EXPECT_THAT(RecordedCalls, ElementsAre("IdentifyArduino(" + Documents() + "ide/)",
                                         "FindPreferences(" + Documents() + "ide/, 10819)",
                                         "IdentifyArduino(" + Documents() + "ide/)",
                                         "FindPreferences(" + Documents() + "ide/, 10819)"));
}

TEST_F(FolderBrowser, StateOutlivesVisitsToOtherPages) {
  Show();
  SelectEntry("ide/", 0);
  GoToPage(2);
  RecordedCalls.clear();
  Click(FolderNextButton);
  Click(Labelled(Pages()[3], "Back"));
  EXPECT_EQ(CurrentPage(), 2);
  EXPECT_EQ(HostFolder, Documents() + "ide/");
  EXPECT_THAT(RecordedCalls, IsEmpty());
}

TEST_F(FolderBrowser, UnreadableFolderIsAnEmptyList) {
  fs::create_directories(Home("Documents/gone"));
  load_folder_list();
  fs::remove(Home("Documents/gone"));
  SelectEntry("gone/", 1);
  EXPECT_THAT(Entries(), IsEmpty());
  ExpectNext(false);
  PickChoice(Documents());
  EXPECT_THAT(Entries(), Contains("plain/"));
}

TEST_F(FolderBrowser, OverlongPathIsCutAndLeavesNextDead) {
  std::string deep = Home("Documents/ide/");
  while (deep.size() < 250) deep += "d";
  FormatBounded(BrowsedFolder, sizeof BrowsedFolder, "%s/", deep.substr(0, 249).c_str());
  FolderList->add("a long enough name/");
  SelectEntry("a long enough name/", 0);
  EXPECT_EQ(HostFolder, deep.substr(0, 249) + "/a long en");
  EXPECT_EQ(std::strlen(HostFolder), 259U);
  ExpectNext(false);
}

TEST_F(FolderBrowser, FolderNamesWithMenuCharactersAreOneItemThatYieldsThePlainPath) {
  fs::create_directories(Home("Documents/R&D_x/_a\\b&&/deep"));
  load_folder_list();
  SelectEntry("R&D_x/", 1);
  SelectEntry("_a\\b&&/", 1);
  SelectEntry("deep/", 1);
  const std::string odd = Documents() + "R&D_x/_a\\b&&/";
  EXPECT_EQ(Choices().at(0), odd + "deep/");
  EXPECT_EQ(Choices().at(1), odd);
  EXPECT_THAT(Choices(), Contains(Documents() + "R&D_x/"));
  PickChoice(odd);
  EXPECT_EQ(BrowsedFolder, odd);
  EXPECT_THAT(Entries(), Contains("deep/"));
}

// Off Windows such a name is possible. Read as a path it leads to an Arduino that nobody clicked.
TEST_F(FolderBrowser, FolderNamedLikeAPathWithBackslashesIsNotTakenForThatPath) {
  fs::create_directories(Home("Documents/plain/below\\..\\..\\ide"));
  SelectEntry("ide/", 0);
  SelectEntry("plain/", 1);
  SelectEntry("below\\..\\..\\ide/", 0);
  EXPECT_EQ(HostFolder, Documents() + "plain/below\\..\\..\\ide/");
  EXPECT_EQ(LogText(), "Directory: " + Documents() +
                           "plain/below\\..\\..\\ide/\n"
                           "  A folder with a backslash in its name can't be used\n");
  EXPECT_STREQ(HostVersion, "");
  ExpectNext(false);
  MakeArduino1819(Home("Documents/plain/below\\..\\..\\ide"));
  SelectEntry("below\\..\\..\\ide/", 1);
  ExpectNext(false);
}

// ---- the choice of paths ----------------------------------------------------------------------

void Browse(const char* folder) {
  FormatBounded(BrowsedFolder, sizeof BrowsedFolder, "%s", folder);
  rebuild_path_choice();
}

TEST_F(FolderBrowser, ChoiceListsTheFolderItsParentsAndAllDrives) {
  Browse("C:/Tools/arduino-1.8.19/");
  EXPECT_THAT(Choices(),
              ElementsAre("C:/Tools/arduino-1.8.19/", "C:/Tools/", "C:/", "[All Drives]"));
  EXPECT_EQ(PathChoice->value(), 0);
}

TEST_F(FolderBrowser, ChoiceOfAnEmptyFolderIsAllDrivesAlone) {
  Browse("");
  EXPECT_THAT(Choices(), ElementsAre("[All Drives]"));
  EXPECT_EQ(PathChoice->value(), 0);
}

TEST_F(FolderBrowser, ChoiceOfAnAbsolutePathHoldsTheRoot) {
  Browse("/opt/ide/");
  EXPECT_THAT(Choices(), ElementsAre("/opt/ide/", "/opt/", "/", "[All Drives]"));
}

TEST_F(FolderBrowser, ChoiceHoldsTheLongestPathWithEveryCharacterEscaped) {
  std::string path(258, '&');
  path += '/';
  Browse(path.c_str());
  EXPECT_THAT(Choices(), ElementsAre(path, "[All Drives]"));
}

TEST_F(FolderBrowser, EveryChoiceHasTheItemsCallbackAndNoneIsTheWidgets) {
  for (int i = 0; i + 1 < PathChoice->size(); ++i) {
    EXPECT_EQ(PathChoice->menu()[i].callback(), static_cast<Fl_Callback_p>(path_choice_callback));
    EXPECT_EQ(PathChoice->menu()[i].user_data(), nullptr);
    EXPECT_EQ(PathChoice->menu()[i].flags, 0);
    EXPECT_EQ(PathChoice->menu()[i].shortcut(), 0);
  }
  EXPECT_EQ(PathChoice->callback(), static_cast<Fl_Callback_p>(Fl_Widget::default_callback));
}

// ---- the filter -------------------------------------------------------------------------------

TEST_F(FolderBrowser, FilterRemovesHiddenEntriesAndKeepsParentAndHiddenArduinos) {
  FolderList->clear();
  for (const char* entry :
       {".git/", ".hidden/", "../", "$Recycle.Bin/", ".arduino-1.8.19/", ".Arduino-x/", ".arduino/",
        "plain/", "..", "a.b/", ".arduino-", "..more/", "$x"}) {
    FolderList->add(entry);
  }
  filter_folder_list();
  EXPECT_THAT(Entries(), ElementsAre("../", ".arduino-1.8.19/", "plain/", "a.b/", ".arduino-"));
}

TEST_F(FolderBrowser, FilterSkipsLinesWithoutText) {
  FolderList->clear();
  FolderList->add("");
  FolderList->add(".x/");
  filter_folder_list();
  EXPECT_THAT(Entries(), ElementsAre(""));
}

TEST_F(FolderBrowser, ListIsSortedByNumberWithoutCaseAndFiltered) {
  for (const char* name : {"v10", "V2", "v1", ".hidden", "$cache", ".arduino-1.8.19"}) {
    fs::create_directories(Home(std::string("Documents/plain/") + name));
  }
  SelectEntry("plain/", 1);
  EXPECT_THAT(Entries(), ElementsAre("../", ".arduino-1.8.19/", "below/", "v1/", "V2/", "v10/"));
}

TEST_F(FolderBrowser, ListShowsFoldersOnly) {
  WriteFile(Home("Documents/plain/file.txt"), "a file");
  SelectEntry("plain/", 1);
  EXPECT_THAT(Entries(), ElementsAre("../", "below/"));
}

// ---- texts ------------------------------------------------------------------------------------

std::string Stripped(const std::string& path) {
  char text[kFolderSize];
  FormatBounded(text, sizeof text, "%s", path.c_str());
  strip_last_path_component(text);
  return text;
}

TEST(StripLastPathComponent, KeepsTheSeparatorBeforeThePart) {
  EXPECT_EQ(Stripped("C:/a/b/"), "C:/a/");
  EXPECT_EQ(Stripped("C:/a/b"), "C:/a/");
  EXPECT_EQ(Stripped("C:\\a\\b\\"), "C:\\a\\");
  EXPECT_EQ(Stripped("C:/a\\b/"), "C:/a\\");
}

TEST(StripLastPathComponent, DriveAndTextWithoutSeparatorBecomeEmpty) {
  EXPECT_EQ(Stripped("C:/"), "");
  EXPECT_EQ(Stripped("folder"), "");
  EXPECT_EQ(Stripped("/"), "");
  EXPECT_EQ(Stripped(""), "");
}

TEST(StripLastPathComponent, OneOfTwoSeparatorsStays) {
  EXPECT_EQ(Stripped("C:/a//"), "C:/a/");
}

TEST(AppendBounded, FillsTheRoomAndNoMore) {
  char text[6] = "ab";
  append_bounded(text, sizeof text, "cdefgh");
  EXPECT_STREQ(text, "abcde");
  append_bounded(text, sizeof text, "x");
  EXPECT_STREQ(text, "abcde");
}

TEST(AppendBounded, ShortTextIsAppendedWhole) {
  char text[16] = "ab";
  append_bounded(text, sizeof text, "cd");
  EXPECT_STREQ(text, "abcd");
  append_bounded(text, sizeof text, "");
  EXPECT_STREQ(text, "abcd");
}

TEST(AppendBounded, MissingTextChangesNothing) {
  char text[6] = "ab";
  append_bounded(text, sizeof text, nullptr);
  EXPECT_STREQ(text, "ab");
  append_bounded(nullptr, 6, "ab");
}

TEST(AppendBounded, NoRoomAtAllChangesNothing) {
  char text[6] = "abcde";
  append_bounded(text, 3, "x");
  EXPECT_STREQ(text, "abcde");
}

}  // namespace
