// The advice after a failed install, in both branches.
#include "wizard/failure_advice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "engine/file_disposition.h"
#include "engine/install_error.h"
#include "tests/driver/simulated_machine.h"

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

constexpr char kNoRights[] =
    "\n\nYou may need to run this installer with administrator access to install all files.  "
    "Please right click on this program and select \"Run as Administrator\"\n";
constexpr char kRights[] =
    "\n\nThe files or directories may have write permissions blocked or may be stored on a "
    "read-only disc or network drive.  Please try installing on a fresh copy of Arduino in your "
    "directory.\n";
constexpr char kRunning[] =
    "\nPlease make sure you do not have a copy of Arduino running, as this can block writing to "
    "certain files.\n";
constexpr char kVirus[] =
    "\nAnti-virus software can sometimes falsely interfere with writing this type of file.  If you "
    "are running an anti-virus program, you may need to temporarily disable it.\n";

class FailureAdviceTest : public ::testing::Test {
 protected:
  FailureAdviceTest() {
    Machine = {};
    AntivirusHint = false;
    SetInstallError("Unable to write file \"%s\".", "lib/a.txt");
  }
  ~FailureAdviceTest() override {
    AntivirusHint = false;
    ResetInstallError();
  }

  const std::string error_ = "Unable to write file \"lib/a.txt\".";
};

TEST_F(FailureAdviceTest, WithoutRightsAdvisesToRunAsAdministrator) {
  Machine.administrator = false;
  EXPECT_EQ(FailureAdvice(), error_ + kNoRights + kRunning);
}

TEST_F(FailureAdviceTest, AdministratorIsNeverToldOfRights) {
  EXPECT_EQ(FailureAdvice(), error_ + kRights + kRunning);
  EXPECT_THAT(FailureAdvice(), Not(HasSubstr("dministrator")));
}

TEST_F(FailureAdviceTest, HintAddsTheThirdParagraphInBothBranches) {
  AntivirusHint = true;
  EXPECT_EQ(FailureAdvice(), error_ + kRights + kRunning + kVirus);
  Machine.administrator = false;
  EXPECT_EQ(FailureAdvice(), error_ + kNoRights + kRunning + kVirus);
}

TEST_F(FailureAdviceTest, RightsAreAskedForAnewAtEachCall) {
  FailureAdvice();
  FailureAdvice();
  EXPECT_EQ(Machine.CallsOf({"is_user_admin"}).size(), 2U);
}

TEST_F(FailureAdviceTest, LongestAdviceComesTo970CharactersAndIsNotCut) {
  AntivirusHint = true;
  SetInstallError("%s", std::string(600, 'e').c_str());
  const std::string advice = FailureAdvice();
  EXPECT_EQ(advice.size(), 970U);
  EXPECT_EQ(advice, std::string(511, 'e') + kRights + kRunning + kVirus);
}

TEST_F(FailureAdviceTest, ErrorTextIsTakenAsItIs) {
  SetInstallError("%s", "100%s of \"%n\"");
  EXPECT_THAT(FailureAdvice(), ::testing::StartsWith("100%s of \"%n\"\n\n"));
}

TEST_F(FailureAdviceTest, BufferIsRebuiltOnEachCall) {
  const char* advice = FailureAdvice();
  SetInstallError("another");
  EXPECT_EQ(FailureAdvice(), advice);
  EXPECT_THAT(advice, ::testing::StartsWith("another\n\n"));
}

}  // namespace
