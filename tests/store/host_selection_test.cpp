#include "store/host_selection.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class HostSelection : public testing::Test {
 protected:
  void TearDown() override { ResetHostSelection(); }
};

TEST_F(HostSelection, BeginsEmpty) {
  EXPECT_STREQ(HostFolder, "");
  EXPECT_STREQ(BrowsedFolder, "");
  EXPECT_STREQ(HostVersion, "");
  EXPECT_EQ(HostVersionLength, 0U);
  EXPECT_EQ(HostVersionNumber, 0);
}

TEST_F(HostSelection, SelectedReleaseKeepsItsLength) {
  SelectRelease("1.8.19");
  EXPECT_STREQ(HostVersion, "1.8.19");
  EXPECT_EQ(HostVersionLength, 6U);
}

TEST_F(HostSelection, EmptyTextSelectsNone) {
  SelectRelease("1.8.19");
  SelectRelease("");
  EXPECT_STREQ(HostVersion, "");
  EXPECT_EQ(HostVersionLength, 0U);
}

TEST_F(HostSelection, OverlongReleaseIsCutTo63Characters) {
  SelectRelease(std::string(64, '1').c_str());
  EXPECT_EQ(HostVersion, std::string(63, '1'));
  EXPECT_EQ(HostVersionLength, 63U);
}

TEST_F(HostSelection, ResetForgetsEverything) {
  SelectRelease("1.8.19");
  HostVersionNumber = 10819;
  HostFolder[0] = BrowsedFolder[0] = '/';
  ResetHostSelection();
  EXPECT_STREQ(HostFolder, "");
  EXPECT_STREQ(BrowsedFolder, "");
  EXPECT_STREQ(HostVersion, "");
  EXPECT_EQ(HostVersionNumber, 0);
}

}  // namespace
