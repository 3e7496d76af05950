// The install in slices: how many entries each one does, what the page shows after it, and every
// way in which a run ends.
#include "wizard/install_pump.h"

#include "tests/wizard/wizard_test.h"

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Check_Browser.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Progress.H>

#include <algorithm>
#include <filesystem>

#include "engine/install_error.h"
#include "engine/library_query.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "tests/support/jars.h"
#include "wizard/install_page.h"
#include "wizard/wizard_pages.h"

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

// A file of the toolchain, which every run writes.
TestEntry Tool(const std::string& name, std::size_t size = 1) {
  return {"arm/" + name, std::string(size, 't')};
}

std::vector<TestEntry> Tools(int count, const std::string& prefix = "tool") {
  std::vector<TestEntry> tools;
  tools.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) tools.push_back(Tool(prefix + std::to_string(i)));
  return tools;
}

std::vector<TestEntry> operator+(std::vector<TestEntry> left, const std::vector<TestEntry>& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

// On the install page of a shown wizard, with a recognised host. The control entries stand last, so
// that slices are counted from the entries of the test; the table has no rule here.
class InstallPumpTest : public WizardTest {
 protected:
  void Open(const std::vector<TestEntry>& entries, bool control_last = true) {
    host_ = MakeDefaultHost();
    Show(control_last ? entries + ControlEntries1819() : entries);
    GoToPage(4);
    ASSERT_EQ(HostVersionNumber, 10819);
  }

  static void Begin() {
    Click(InstallButton);
    ASSERT_TRUE(Fl::has_idle(InstallPump));
  }

  // One slice; the number of entries that it disposed of.
  static int Slice() {
    const int before = InstallCursor;
    InstallPump(nullptr);
    return InstallCursor - before;
  }

  static std::string Shown() {
    return LabelOf(InstallDetailBox) + " at " +
           std::to_string(static_cast<int>(InstallProgress->value()));
  }

  // Runs to the end of the run and its timer.
  static void RunToEnd() {
    WaitUntil([] { return Fl::has_idle(InstallPump) == 0; });
    WaitUntil([] {
      return Fl::has_timeout(InstallSucceeded) == 0 && Fl::has_timeout(InstallFailed) == 0;
    });
  }

  std::string host_;
};

// ---- slices -----------------------------------------------------------------------------------

TEST_F(InstallPumpTest, BeginTakesTheButtonsAwayAndCountsNothingAhead) {
  Open(Tools(12));
  InstallCursor = 7;
  InstallProgress->value(5);
  Begin();
  EXPECT_FALSE(InstallButton->active());
  EXPECT_FALSE(InstallBackButton->active());
  EXPECT_FALSE(InstallCancelButton->active());
  EXPECT_EQ(InstallCursor, 0);
  EXPECT_EQ(InstallProgress->value(), 0);
  EXPECT_EQ(LabelOf(InstallStatusLabel), "Files to be installed:");
  EXPECT_FALSE(fs::exists(host_ + "hardware"));
}

TEST_F(InstallPumpTest, TenEntriesOfOneByteEndASliceByCount) {
  Open(Tools(25));
  Begin();
  EXPECT_EQ(Slice(), 10);
  EXPECT_EQ(Shown(), "tool10 at 10");
  EXPECT_EQ(Slice(), 10);
  EXPECT_EQ(Shown(), "tool20 at 20");
}

TEST_F(InstallPumpTest, SliceEndsAheadOfTheEntryThatBringsTheSumToAMillion) {
  Open({Tool("first", 300000), Tool("a", 500000), Tool("b", 500000), Tool("c")});
  Begin();
  EXPECT_EQ(Slice(), 2);  // 500,000 and the next 500,000 make the million
  EXPECT_EQ(Shown(), "b at 2");
}

TEST_F(InstallPumpTest, SumOfOneByteLessGoesOn) {
  Open({Tool("first", 300000), Tool("a", 500000), Tool("b", 499999), Tool("c"), Tool("d")});
  Begin();
  EXPECT_EQ(Slice(), 3);  // c brings it to the million
  EXPECT_EQ(Shown(), "c at 3");
}

TEST_F(InstallPumpTest, FirstEntryOfFiveMegabytesIsDoneAndTheSecondOfTwoIsShown) {
  Open({Tool("five", 5000000), Tool("two", 2000000), Tool("small"), Tool("last")});
  Begin();
  EXPECT_EQ(Slice(), 1);
  EXPECT_EQ(Shown(), "two at 1");
  EXPECT_EQ(fs::file_size(host_ + "hardware/tools/arm/five"), 5000000U);
  EXPECT_FALSE(fs::exists(host_ + "hardware/tools/arm/two"));
}

TEST_F(InstallPumpTest, SizeOfASlicesFirstEntryIsNeverCounted) {
  Open({Tool("five", 5000000), Tool("a", 400000), Tool("b", 400000), Tool("c", 400000)});
  Begin();
  EXPECT_EQ(Slice(), 3);
  EXPECT_EQ(Shown(), "c at 3");
}

TEST_F(InstallPumpTest, SliceAfterALargeEntryStartsWithIt) {
  Open(std::vector<TestEntry>{Tool("small"), Tool("large", 3000000)} + Tools(12));
  Begin();
  EXPECT_EQ(Slice(), 1);
  EXPECT_EQ(Shown(), "large at 1");
  EXPECT_EQ(Slice(), 10);  // the large one itself is not counted any more
  EXPECT_EQ(Shown(), "tool9 at 11");
}

TEST_F(InstallPumpTest, EntriesThatArePassedOverCountLikeWrittenOnes) {
  std::vector<TestEntry> entries;
  entries.reserve(14);
  for (int i = 0; i < 12; ++i) entries.push_back({"1.8.5/boards" + std::to_string(i), "other"});
  entries.push_back({"1.8.5/large", std::string(2000000, 'x')});
  entries.push_back(Tool("last"));
  Open(entries);
  Begin();
  EXPECT_EQ(Slice(), 10);
  EXPECT_EQ(Slice(), 2);
  EXPECT_EQ(Shown(), "large at 12");
}

TEST_F(InstallPumpTest, AliasesCountAsNoBytesThoughTheyWriteAWholeFile) {
  std::vector<TestEntry> entries = {Tool("first", 900000)};
  for (int i = 0; i < 12; ++i)
    entries.push_back({"arm/copy" + std::to_string(i) + " --> arm/first", ""});
  Open(entries);
  Begin();
  EXPECT_EQ(Slice(), 10);
  EXPECT_EQ(fs::file_size(host_ + "hardware/tools/arm/copy8"), 900000U);
  // The text after the last '/' of the whole name, which is the target's end.
  EXPECT_EQ(Shown(), "first at 10");
}

TEST_F(InstallPumpTest, DetailIsTheNextNamesLastPartAndPointsIntoTheTable) {
  Open(Tools(10) + std::vector<TestEntry>{Tool("bin/deep/next.exe"), {"quirlo.exe", "no slash"}});
  Begin();
  Slice();
  EXPECT_EQ(LabelOf(InstallDetailBox), "next.exe");
  const char* name = Store.names[10];
  EXPECT_EQ(InstallDetailBox->label(), name + std::string(name).size() - 8);
}

TEST_F(InstallPumpTest, DetailIsTheWholeNameWithoutASlash) {
  Open(Tools(10) + std::vector<TestEntry>{{"quirlo.exe", "no slash"}});
  Begin();
  Slice();
  EXPECT_EQ(InstallDetailBox->label(), Store.names[10]);
}

TEST_F(InstallPumpTest, LastEntryEndsTheRunInItsSliceWithoutAFurtherUpdate) {
  Open(Tools(13) + ControlEntries1819(), false);
  Begin();
  EXPECT_EQ(Slice(), 10);
  EXPECT_EQ(Slice(), 5);
  EXPECT_EQ(Shown(), "tool10 at 10");  // as the slice before left it
  EXPECT_FALSE(Fl::has_idle(InstallPump));
  EXPECT_TRUE(Fl::has_timeout(InstallSucceeded));
}

TEST_F(InstallPumpTest, ProgressNeverShowsItsMaximum) {
  Open(Tools(18));  // twenty with the control entries: two full slices
  Begin();
  float highest = 0;
  WaitUntil([&] {
    highest = std::max(highest, InstallProgress->value());
    return CurrentPage() == 5;
  });
  EXPECT_EQ(highest, 10);
  EXPECT_EQ(InstallProgress->maximum(), 20);
  EXPECT_EQ(InstallProgress->value(), 0);
}

TEST_F(InstallPumpTest, DetailKeepsItsLastTextOnTheFinishedPage) {
  Open(Tools(13));
  Begin();
  RunToEnd();
  EXPECT_EQ(CurrentPage(), 5);
  EXPECT_EQ(LabelOf(InstallDetailBox), "tool10");
}

TEST_F(InstallPumpTest, EventLoopDrawsBetweenTheSlices) {
  Open(Tools(95));
  Begin();
  std::vector<int> shown;
  WaitUntil([&] {
    const int value = static_cast<int>(InstallProgress->value());
    if (shown.empty() || shown.back() != value) shown.push_back(value);
    return CurrentPage() == 5;
  });
  EXPECT_THAT(shown, ElementsAre(0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 0));
}

// ---- a whole run ------------------------------------------------------------------------------

class WholeRun : public InstallPumpTest {
 protected:
  void OpenSmallPayload() {
    for (const char* path :
         {"Adafruit_GFX/a.cpp", "Adafruit_CC3000/b/c.cpp", "Adafruit_RA8875/d.h", "openGLCD/e.h",
          "ST7565/f.h", "SD/utility/g.h", "SD/SD.h", "Mine/mine.h"}) {
      WriteFile(Home("Downloads/arduino-1.8.19/hardware/quirlo/avr/libraries/") + path, path);
    }
    WriteFile(Preferences(), "board=uno\nother=1\n");
    Open(SmallPayload1819(), false);
  }
  std::string Preferences() const { return Home(".local/share/Arduino15/preferences.txt"); }
};

TEST_F(WholeRun, WritesTheFilesThenThePreferencesThenRemovesOldLibraries) {
  OpenSmallPayload();
  Begin();
  RunToEnd();
  EXPECT_EQ(CurrentPage(), 5);
  EXPECT_EQ(ReadFile(host_ + "lib/quirloduino.txt"), "1.60-beta5");
  EXPECT_EQ(ReadJar(host_ + "lib/pde.jar")["processing/app/Added.class"], "our Added");
  EXPECT_EQ(ReadFile(Preferences()),
            "target_package=quirlo\r\ntarget_platform=avr\r\nboard=quirlo31\r\nother=1\n");
  const auto libraries = ReadTree(host_ + "hardware/quirlo/avr/libraries");
  std::vector<std::string> names;
  names.reserve(libraries.size());
  for (const auto& [name, content] : libraries) names.push_back(name);
  EXPECT_THAT(names, ElementsAre("Mine/", "Mine/mine.h", "OneWire/", "OneWire/OneWire.cpp", "Ping/",
                                 "Ping/Ping.h", "SD/", "SD/SD.h", "Servo/", "Servo/Servo.h"));
}

TEST_F(WholeRun, LeavesOutTheLibrariesThatAreNotTicked) {
  OpenSmallPayload();
  LibraryList->checked(FindLibrary("Ping"), 0);
  Begin();
  RunToEnd();
  EXPECT_FALSE(fs::exists(host_ + "hardware/quirlo/avr/libraries/Ping"));
  EXPECT_TRUE(fs::exists(host_ + "hardware/quirlo/avr/libraries/OneWire/OneWire.cpp"));
}

TEST_F(WholeRun, PreferencesThatCannotBeWrittenDoNotFailIt) {
  OpenSmallPayload();
  fs::remove(Preferences());
  fs::create_directories(Preferences());
  Begin();
  RunToEnd();
  EXPECT_EQ(CurrentPage(), 5);
}

// ---- failures ---------------------------------------------------------------------------------

TEST_F(InstallPumpTest, FirstEntryThatFailsLeavesProgressAtZeroAndShows) {
  Open({{"cores/directly", "no folder"}, Tool("next")});
  Begin();
  EXPECT_EQ(Slice(), 0);
  EXPECT_EQ(InstallCursor, 0);
  EXPECT_FALSE(Fl::has_idle(InstallPump));
  EXPECT_EQ(LabelOf(InstallStatusLabel), "Files to be installed:");
  RunToEnd();
  EXPECT_EQ(InstallProgress->value(), 0);
  EXPECT_EQ(LabelOf(InstallStatusLabel), "ERROR !!!");
  EXPECT_EQ(CurrentPage(), 4);
}

TEST_F(InstallPumpTest, FailureInMidSliceStaysOnItsEntryAndLeavesWhatWasWritten) {
  Open(Tools(13) + std::vector<TestEntry>{{"arm/a --> arm/missing", ""}, Tool("never")});
  Begin();
  EXPECT_EQ(Slice(), 10);
  EXPECT_EQ(Slice(), 3);
  EXPECT_EQ(InstallCursor, 13);
  RunToEnd();
  EXPECT_EQ(Shown().substr(0, 31), "internal file reference error!!");
  EXPECT_EQ(InstallProgress->value(), 10);
  EXPECT_TRUE(fs::exists(host_ + "hardware/tools/arm/tool12"));
  EXPECT_FALSE(fs::exists(host_ + "hardware/tools/arm/never"));
  EXPECT_FALSE(fs::exists(host_ + "lib/quirloduino.txt"));
  EXPECT_TRUE(InstallBackButton->active());
  EXPECT_TRUE(InstallCancelButton->active());
  EXPECT_FALSE(InstallButton->active());
}

TEST_F(InstallPumpTest, RunAfterAFailureStartsAtTheFirstEntryAndWritesEverythingAgain) {
  Open(Tools(3) + std::vector<TestEntry>{{"examples/one.ino", "an example"}});
  fs::remove_all(host_ + "examples");
  WriteFile(host_ + "examples", "in the way");
  Begin();
  RunToEnd();
  ASSERT_EQ(LabelOf(InstallStatusLabel), "ERROR !!!");
  fs::remove(host_ + "examples");
  WriteFile(host_ + "hardware/tools/arm/tool0", "changed");
  Click(InstallBackButton);
  Click(Labelled(Pages()[3], "Next"));
  EXPECT_EQ(Shown(), " at 0");
  Begin();
  EXPECT_EQ(InstallCursor, 0);
  RunToEnd();
  EXPECT_EQ(CurrentPage(), 5);
  EXPECT_EQ(ReadFile(host_ + "hardware/tools/arm/tool0"), "t");
}

// The class file stays in the open archive until the run's end; the folder goes away before.
class FinalClose : public InstallPumpTest {
 protected:
  void OpenWithLateClose() {
    WriteFile(Home(".local/share/Arduino15/preferences.txt"), "board=uno\n");
    WriteFile(Home("Downloads/arduino-1.8.19/hardware/quirlo/avr/libraries/openGLCD/e.h"), "e");
    Open(ControlEntries1819() + Tools(7) +
             std::vector<TestEntry>{{"1.8.19/WINDOWS/pde.jar/processing/app/Base.class", "one"},
                                    {"1.8.19/WINDOWS/pde.jar/processing/app/Other.class", "two"}},
         false);
  }
};

TEST_F(FinalClose, CommitsTheArchiveThatIsStillOpen) {
  OpenWithLateClose();
  Begin();
  RunToEnd();
  EXPECT_EQ(CurrentPage(), 5);
  EXPECT_EQ(ReadJar(host_ + "lib/pde.jar")["processing/app/Base.class"], "one");
}

TEST_F(FinalClose, FailureShowsThoughEveryEntryWasVisitedAndTheLastStepsDoNotRun) {
  OpenWithLateClose();
  std::vector<TestEntry> entries = ControlEntries1819() + Tools(7);
  Begin();
  EXPECT_EQ(Slice(), 10);  // the archive is open now
  fs::rename(host_ + "lib", host_ + "lib away");
  EXPECT_EQ(Slice(), 1);
  EXPECT_EQ(InstallCursor, static_cast<int>(Store.entry_count));
  EXPECT_FALSE(Fl::has_idle(InstallPump));
  EXPECT_TRUE(Fl::has_timeout(InstallFailed));
  RunToEnd();
  EXPECT_EQ(LabelOf(InstallStatusLabel), "ERROR !!!");
  EXPECT_THAT(LabelOf(InstallDetailBox),
              StartsWith("Unable to write changes to \"" + host_ + "lib/pde.jar\"\n\n"));
  // Advised by the flag of the last entry, a class file.
  EXPECT_THAT(LabelOf(InstallDetailBox), HasSubstr("Anti-virus software can"));
  EXPECT_EQ(ReadFile(Home(".local/share/Arduino15/preferences.txt")), "board=uno\n");
  EXPECT_TRUE(fs::exists(host_ + "hardware/quirlo/avr/libraries/openGLCD/e.h"));
}

TEST_F(FinalClose, RetryAfterItSucceeds) {
  OpenWithLateClose();
  Begin();
  Slice();
  fs::rename(host_ + "lib", host_ + "lib away");
  Slice();
  RunToEnd();
  fs::rename(host_ + "lib away", host_ + "lib");
  Click(InstallBackButton);
  Click(Labelled(Pages()[3], "Next"));
  Begin();
  RunToEnd();
  EXPECT_EQ(CurrentPage(), 5);
  EXPECT_EQ(ReadJar(host_ + "lib/pde.jar")["processing/app/Other.class"], "two");
}

}  // namespace
