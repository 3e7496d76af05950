// Survey, install and update on a system that has nothing of all this, with its real operations
// linked: they run their natural course through the failures.
#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Group.H>
#include <FL/Fl_Wizard.H>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "driver/driver_install.h"
#include "driver/driver_page.h"
#include "driver/driver_survey.h"
#include "engine/install_error.h"
#include "platform/administrator.h"
#include "tests/driver/sample_infs.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

namespace {

void NextPage(Fl_Widget*, void*) {
  Wizard->next();
}

Fl_Button* NewButton() {
  auto* button = new Fl_Button(0, 0, 10, 10);
  button->deactivate();
  return button;
}

class NoDriverSystem : public ::testing::Test {
 protected:
  NoDriverSystem() : wizard_(0, 0, 500, 360), before_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder_.path());
    ResetDriverSurvey();
    ResetInstallError();
    page_ = new Fl_Group(0, 0, 500, 360);
    DriverStatusBox = new Fl_Box(0, 0, 10, 10);
    DriverBackButton = NewButton();
    DriverCancelButton = NewButton();
    DriverNextButton = NewButton();
    DriverSkipButton = NewButton();
    DriverUpdateButton = NewButton();
    DriverUninstallButton = NewButton();
    page_->end();
    (new Fl_Group(0, 0, 500, 360))->end();
    wizard_.end();
    Wizard = &wizard_;
    DriverNextPageCallback = NextPage;
  }
  ~NoDriverSystem() override {
    std::filesystem::current_path(before_);
    ResetDriverSurvey();
    ResetDriverPage();
  }

  TempDir folder_;
  TestStore store_{{{"cdcacm.cat", "the catalog"}, {"cdcacm.inf", kDriverInf}}};
  Fl_Wizard wizard_;
  Fl_Group* page_;
  std::filesystem::path before_;
};

// Nothing can be staged, no row is no missing row, and so the page says what it says.
TEST_F(NoDriverSystem, PageSaysInstalledAndNothingIsWritten) {
  driver_survey(nullptr);
  EXPECT_STREQ(DriverStatusBox->label(), "USB Serial driver is installed.");
  EXPECT_EQ(SystemDriverFound, 0);
  EXPECT_EQ(DriverReady, 1);
  EXPECT_EQ(StagedInfCount, 0);
  EXPECT_NE(DriverNextButton->active(), 0);
  EXPECT_EQ(DriverNextButton->callback(), NextPage);
  EXPECT_EQ(DriverUpdateButton->active() != 0, is_user_admin() != 0);
  EXPECT_TRUE(ReadTree(folder_.path()).empty());
}

TEST_F(NoDriverSystem, UpdateReportsNoDevice) {
  driver_survey(nullptr);
  driver_update_callback(nullptr, nullptr);
  EXPECT_STREQ(DriverStatusBox->label(), "USB Serial driver is installed.\n\n0 devices updated");
}

TEST_F(NoDriverSystem, InstallOfAStagedRowIsRefusedWithTheSystemsCode) {
  StagedInfCount = 1;
  StagedInfPaths[0] = static_cast<char*>(std::calloc(1, 16));
  driver_install_callback(nullptr, nullptr);
  EXPECT_EQ(Wizard->value(), page_);
  EXPECT_STREQ(DriverStatusBox->label(),
               "Driver Installation Failed.\nAn error occurred while installing an INF file:\n\n"
               "Windows error: 00000078 = \"\"");
}

TEST_F(NoDriverSystem, RootCountsAsAdministratorAndNobodyElse) {
  {
    const ScopedOrdinaryUser user;
    EXPECT_EQ(is_user_admin(), 0);
  }
  EXPECT_EQ(is_user_admin(), geteuid() == 0 ? 1 : 0);
}

}  // namespace
