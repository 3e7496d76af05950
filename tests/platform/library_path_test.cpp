#include <gtest/gtest.h>

#include <string>

#include "platform/files.h"

namespace {

TEST(LibraryPath, BackslashesBecomeSlashes) {
  char buffer[64];
  ASSERT_TRUE(LibraryPath("C:\\arduino/lib\\\\pde.jar", buffer, sizeof buffer));
  EXPECT_STREQ(buffer, "C:/arduino/lib//pde.jar");
}

TEST(LibraryPath, EmptyPathStaysEmpty) {
  char buffer[1] = {'x'};
  ASSERT_TRUE(LibraryPath("", buffer, sizeof buffer));
  EXPECT_STREQ(buffer, "");
}

TEST(LibraryPath, PathThatFillsTheBufferFits) {
  char buffer[8];
  ASSERT_TRUE(LibraryPath("seven\\7", buffer, sizeof buffer));
  EXPECT_STREQ(buffer, "seven/7");
}

TEST(LibraryPath, PathOneLongerThanTheRoomDoesNotFit) {
  char buffer[8];
  EXPECT_FALSE(LibraryPath("eight\\88", buffer, sizeof buffer));
}

TEST(LibraryPath, OwnSizeHoldsEveryPathThatTheSystemOpens) {
  char buffer[kLibraryPathSize];
  const std::string longest(kLibraryPathSize - 1, 'p');
  ASSERT_TRUE(LibraryPath(longest.c_str(), buffer, sizeof buffer));
  EXPECT_EQ(buffer, longest);
  EXPECT_FALSE(LibraryPath((longest + "p").c_str(), buffer, sizeof buffer));
}

}  // namespace
