#include "packager/progress_bar.h"

#include <gtest/gtest.h>

namespace {

TEST(ProgressBar, IsAsWideAtTheStartAsAtTheEnd) {
  EXPECT_EQ(ProgressText("Packing", 0), "Packing [........................................]   0%");
  EXPECT_EQ(ProgressText("Packing", 50), "Packing [####################....................]  50%");
  EXPECT_EQ(ProgressText("Packing", 100),
            "Packing [########################################] 100%");
}

TEST(ProgressBar, WritesNothingWhereThereIsNoTerminal) {
  testing::internal::CaptureStderr();
  {
    ProgressBar bar("Packing", 10);
    bar.Advance(5);
    bar.Advance(5);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
