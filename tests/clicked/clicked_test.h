// What the clicked runs share: a home of their own, a display of their own, and the ways through
// the wizard's pages.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/clicked_wizard.h"
#include "tests/support/temp_dir.h"

// Lines of the folder list, counted from 0; its menu's, while the first item is shown; and the rows
// of the library list.
Spot FolderLine(int line);
Spot MenuLine(int line);
Spot LibraryRow(int row);
inline constexpr Spot kNoneButton = {130, 82};
inline constexpr Spot kAllButton = {46, 82};

// Parts of the pages whose pixels are compared.
inline constexpr Area kDriverStatus = {32, 92, 436, 152};
inline constexpr Area kInstallDetail = {64, 136, 372, 160};
inline constexpr Area kInstallStatus = {64, 80, 250, 24};
inline constexpr Area kTitle = {0, 0, 400, 60};

class ClickedTest : public testing::Test {
 protected:
  void SetUp() override;

  // A path below the home folder, and below its Documents, where the wizard begins to look.
  std::string Home(const std::string& below) const { return home_ / below; }
  std::string Documents(const std::string& below) const { return home_ / ("Documents/" + below); }

  // Starts a program for the person of this home.
  std::unique_ptr<ClickedWizard> Start(const std::string& program,
                                       const std::vector<std::string>& environment = {});
  // The same without root's rights, where the test has them.
  std::unique_ptr<ClickedWizard> StartAsOrdinaryUser(const std::string& program);

  // The pixels of a text as FLTK draws it: what an area of the wizard should look like.
  Pixels DrawText(const std::string& text, Area area, int size, int align, const char* box);
  // The same for the two boxes that tell outcomes: the driver page's status, text at the top left
  // or centred, and the install page's detail.
  Pixels DrawDriverStatus(const std::string& text, bool centred = false);
  Pixels DrawInstallDetail(const std::string& text);

  // From the first page to the folder page and beyond. The driver page finds no driver system.
  static void GoToFolderPage(ClickedWizard* wizard);
  // With a folder selected: to the install page, with all libraries.
  static void GoToInstallPage(ClickedWizard* wizard);
  // From the install page to "Finished".
  static void InstallToTheEnd(ClickedWizard* wizard);
  // From "Finished" to the program's end; its status.
  static int Done(ClickedWizard* wizard);

 private:
  std::vector<std::string> Environment(const std::vector<std::string>& more) const;

  TempDir home_;
  std::unique_ptr<TestDisplay> display_;
};
