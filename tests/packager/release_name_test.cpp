#include "packager/release_name.h"

#include <gtest/gtest.h>

namespace {

void ExpectNumbers(std::optional<ReleaseNumbers> got, ReleaseNumbers expected) {
  ASSERT_TRUE(got.has_value());
  EXPECT_EQ(*got, expected);
}

TEST(ReleaseName, NumbersAreReadFromTheFront) {
  ExpectNumbers(ScanReleaseNumbers("1.8.19"), {1, 8, 19, 0});
  ExpectNumbers(ScanReleaseNumbers("1.8.19-hourly"), {1, 8, 19, 0});
  ExpectNumbers(ScanReleaseNumbers("1.9.0-beta4"), {1, 9, 0, 4});
}

TEST(ReleaseName, FewerThanThreeNumbersAreNone) {
  for (const char* name : {"", "1", "1.8", "1.8.", "1..8", "1.8.x", "v1.8.19", " 1.8.19", "+1.8.19",
                           "1.8.-19", "1.8.2147483648"}) {
    EXPECT_FALSE(ScanReleaseNumbers(name).has_value()) << name;
  }
}

}  // namespace
