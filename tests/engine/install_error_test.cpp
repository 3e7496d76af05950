#include "engine/install_error.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(InstallError, IsEmptyUntilTheFirstFailure) {
  EXPECT_STREQ(InstallErrorText(), "");
}

TEST(InstallError, LatestWordsReplaceTheEarlierOnes) {
  SetInstallError("Unable to write file \"%s%s\".", "lib/", "a.txt");
  EXPECT_STREQ(InstallErrorText(), "Unable to write file \"lib/a.txt\".");
  SetInstallError("short");
  EXPECT_STREQ(InstallErrorText(), "short");
  ResetInstallError();
}

TEST(InstallError, LongWordsAreCutAt511Characters) {
  const std::string text(600, 'x');
  SetInstallError("%s", text.substr(0, 511).c_str());
  EXPECT_EQ(InstallErrorText(), text.substr(0, 511));
  SetInstallError("%s", text.c_str());
  EXPECT_EQ(InstallErrorText(), text.substr(0, 511));
  ResetInstallError();
}

TEST(InstallError, PercentSignInAnArgumentIsPlainText) {
  SetInstallError("Directory \"%s\" does not exist!", "/100%s/");
  EXPECT_STREQ(InstallErrorText(), "Directory \"/100%s/\" does not exist!");
  ResetInstallError();
}

}  // namespace
