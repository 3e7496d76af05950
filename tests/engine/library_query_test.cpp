#include "engine/library_query.h"

#include <FL/Fl_Check_Browser.H>
#include <gtest/gtest.h>

namespace {

// A list as the library page builds it; it needs no display.
class LibraryQuery : public testing::Test {
 protected:
  LibraryQuery() : list_(0, 0, 100, 100) {
    list_.add("Bounce", 1);
    list_.add("OneWire", 0);
    list_.add("XBee", 1);
    LibraryList = &list_;
  }
  ~LibraryQuery() override {
    LibraryList = nullptr;
    ResetLibraryQuery();
  }

  Fl_Check_Browser list_;
};

TEST(LibraryQueryWithoutList, EveryLibraryIsSelected) {
  ASSERT_EQ(LibraryList, nullptr);
  EXPECT_EQ(LibrarySelected("Bounce"), 1);
  EXPECT_EQ(LibrarySelected(""), 1);
}

TEST_F(LibraryQuery, RowsAreCountedFromOne) {
  EXPECT_EQ(FindLibrary("Bounce"), 1);
  EXPECT_EQ(FindLibrary("OneWire"), 2);
  EXPECT_EQ(FindLibrary("XBee"), 3);
}

TEST_F(LibraryQuery, TicksDecide) {
  EXPECT_EQ(LibrarySelected("Bounce"), 1);
  EXPECT_EQ(LibrarySelected("OneWire"), 0);
  EXPECT_EQ(LibrarySelected("XBee"), 1);
}

TEST_F(LibraryQuery, UnknownNameIsNotSelected) {
  for (const char* name : {"Missing", "", "One", "OneWire2"}) {
    EXPECT_EQ(FindLibrary(name), 0) << name;
    EXPECT_EQ(LibrarySelected(name), 0) << name;
  }
}

TEST_F(LibraryQuery, NameInOtherCaseIsUnknown) {
  EXPECT_EQ(FindLibrary("onewire"), 0);
  EXPECT_EQ(LibrarySelected("bounce"), 0);
}

TEST_F(LibraryQuery, EmptyListSelectsNothing) {
  list_.clear();
  EXPECT_EQ(LibrarySelected("Bounce"), 0);
}

TEST_F(LibraryQuery, ChangedTickIsSeenThroughTheKeptRow) {
  EXPECT_EQ(LibrarySelected("OneWire"), 0);
  list_.checked(2, 1);
  EXPECT_EQ(LibrarySelected("OneWire"), 1);
}

TEST_F(LibraryQuery, NameIsFoundAgainBehindAnotherOne) {
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(FindLibrary("XBee"), 3);
    EXPECT_EQ(FindLibrary("Missing"), 0);
    EXPECT_EQ(FindLibrary("XBee"), 3);
    EXPECT_EQ(FindLibrary("Bounce"), 1);
  }
}

TEST_F(LibraryQuery, FirstOfTwoEqualRowsCounts) {
  list_.add("OneWire", 1);
  EXPECT_EQ(FindLibrary("OneWire"), 2);
  EXPECT_EQ(LibrarySelected("OneWire"), 0);
}

// The kept name answers for itself alone, not for what begins like it or is its beginning.
TEST_F(LibraryQuery, KeptNameIsComparedWhole) {
  list_.add("OneWireSlave", 1);
  list_.add("One", 0);
  list_.add("Other", 0);
  EXPECT_EQ(FindLibrary("OneWire"), 2);
  EXPECT_EQ(FindLibrary("OneWireSlave"), 4);
  EXPECT_EQ(FindLibrary("OneWire"), 2);
  EXPECT_EQ(FindLibrary("One"), 5);
  EXPECT_EQ(FindLibrary("OneWire"), 2);
  EXPECT_EQ(FindLibrary("Other"), 6);
  EXPECT_EQ(FindLibrary("OneWire"), 2);
  EXPECT_EQ(FindLibrary("Onc"), 0);
}

// The row found last is kept, not looked up again: the same text answers without a list's help.
TEST_F(LibraryQuery, RowFoundLastIsKept) {
  EXPECT_EQ(FindLibrary("OneWire"), 2);
  Fl_Check_Browser other(0, 0, 100, 100);
  other.add("OneWire", 1);
  LibraryList = &other;
  EXPECT_EQ(FindLibrary("OneWire"), 2);
  ResetLibraryQuery();
  EXPECT_EQ(FindLibrary("OneWire"), 1);
}

}  // namespace
