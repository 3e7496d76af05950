#include "packager/progress_bar.h"

#include <gtest/gtest.h>

#include "tests/packager/payload_fixture.h"

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

class ProgressOnATerminal : public PayloadTest {
 protected:
  // What a terminal shows of a run, both streams together.
  std::string Shown(const std::string& arguments) const {
    const ProgramResult result = RunProgram(
        "/usr/bin/script",
        {"-qec", std::string("'") + PACK_PROGRAM + "' " + arguments, dir_ / "typescript"});
    EXPECT_EQ(result.status, 0) << result.output << result.error;
    return result.output;
  }
};

TEST_F(ProgressOnATerminal, EachPhaseIsTold) {
  const std::string shown =
      Shown("pack '" + tree() + "' --output '" + output() + "' --level 2 >/dev/null");
  EXPECT_THAT(shown, testing::HasSubstr("\rReading " + tree() + " ..."));
  EXPECT_THAT(shown, testing::HasSubstr("\rLooking for files that are the same ["));
  EXPECT_THAT(shown, testing::HasSubstr("\rPacking at level 2 ["));
  EXPECT_THAT(shown, testing::HasSubstr("] 100%\r"));
  EXPECT_THAT(shown, testing::EndsWith(" \r")) << "the line isn't wiped";
  const std::string verified = Shown("verify '" + output() + "' --tree '" + tree() + "'");
  EXPECT_THAT(verified, testing::HasSubstr("\rExpanding " + output() + "/payload.zst ..."));
  EXPECT_THAT(verified, testing::HasSubstr("\rComparing with the tree ["));
}

TEST_F(ProgressOnATerminal, QuietRunShowsNothing) {
  EXPECT_EQ(Shown("pack '" + tree() + "' --output '" + output() + "' --level 2 --quiet >/dev/null"),
            "");
  EXPECT_THAT(Shown("verify '" + output() + "' --tree '" + tree() + "' --quiet"),
              testing::StartsWith("verified: "));
}

}  // namespace
