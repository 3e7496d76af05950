// The driver page as the wizard builds it, between two other pages, over a simulated machine. The
// temporary folder is a real one.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/driver/sample_infs.h"
#include "tests/driver/simulated_machine.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

class Fl_Group;
class Fl_Wizard;

inline const std::string kInstallDueText =
    "The USB Serial driver needs to be installed.\n\nJust click \"Next\" to install it.\n";
inline const std::string kNoRightsText =
    "The USB Serial driver needs to be installed.\n\nYou must run this installer with "
    "Administrator access.  On Windows 7 or Vista, right click on this program and choose \"Run as "
    "administrator\".  On XP, right click and \"Run as...\" and select Administrator.";
inline const std::string kSystemDriverText =
    "Windows 10 USB Serial driver found.\n\nNo driver installation is needed.";
inline const std::string kInstalledText = "USB Serial driver is installed.";

class DriverTest : public ::testing::Test {
 protected:
  DriverTest();
  ~DriverTest() override;

  // The payload of a program with one driver.
  static std::vector<TestEntry> DriverPayload();

  // Row by row: stages a store's files and marks them with the given installed names ("" is due).
  void Stage(const std::vector<TestEntry>& entries, const std::vector<std::string>& installed);

  std::string Staged(const std::string& name) const { return temporary_.path() + "/" + name; }

  // Everything that can be seen of the page but its text, one word for each fact: which page is
  // shown, which buttons are active and visible, where Next leads, the focus, the alignment.
  std::string Page() const;
  std::string Text() const;

  void Click(const char* button) const;  // "Next", "Skip", "Update", "Uninstall"
  void ReturnToDriverPage() const;

  TempDir temporary_;
  std::unique_ptr<TestStore> store_;
  std::unique_ptr<Fl_Wizard> wizard_;
  Fl_Group* welcome_page_;
  Fl_Group* driver_page_;
  Fl_Group* folder_page_;
};

// The calls that relax the search order, where its value is 1, 0 or the key isn't there.
std::vector<std::string> RelaxingCalls();
std::vector<std::string> SearchOrderReadOnlyCalls();
std::vector<std::string> NoPolicyKeyCalls();

// The reading of a file's [Version] section with these texts in it, one for each line.
std::vector<std::string> VersionReadingCalls(const std::string& file,
                                             const std::vector<std::string>& line_texts);

std::vector<std::string> Joined(const std::vector<std::vector<std::string>>& parts);
