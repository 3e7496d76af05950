#include "packager/entry_names.h"

#include <gtest/gtest.h>

namespace {

TEST(EntryNames, AliasIsSplitAtTheFirstMark) {
  const auto alias = SplitAlias("arm/a --> arm/b --> arm/c");
  ASSERT_TRUE(alias.has_value());
  EXPECT_EQ(alias->left, "arm/a");
  EXPECT_EQ(alias->target, "arm/b --> arm/c");
}

TEST(EntryNames, MarkNeedsBothBlanks) {
  EXPECT_FALSE(SplitAlias("arm/a-->arm/b").has_value());
  EXPECT_FALSE(SplitAlias("arm/a -->").has_value());
  EXPECT_EQ(InstalledPath("arm/a -->"), "arm/a -->");
  EXPECT_EQ(InstalledPath("arm/a --> arm/b"), "arm/a");
}

TEST(EntryNames, ComponentsOfARootFile) {
  EXPECT_EQ(FirstComponent("quirlo.exe"), "quirlo.exe");
  EXPECT_EQ(AfterFirstComponent("quirlo.exe"), "");
  EXPECT_EQ(FirstComponent("1.8.5/a/b"), "1.8.5");
  EXPECT_EQ(AfterFirstComponent("1.8.5/a/b"), "a/b");
}

TEST(EntryNames, OnlyClassFilesOfTheTwoArchivesAreObjects) {
  EXPECT_TRUE(IsArchiveObject("1.8.5/WINDOWS/pde.jar/a/B.class"));
  EXPECT_TRUE(IsArchiveObject("1.8.5/WINDOWS/arduino-core.jar/B.class"));
  EXPECT_FALSE(IsArchiveObject("1.8.5/WINDOWS/pde.jar/a/B.java"));
  EXPECT_FALSE(IsArchiveObject("1.8.5/WINDOWS/other.jar/B.class"));
  EXPECT_FALSE(IsArchiveObject("1.8.5/libraries/pde.jar/B.class"));
  EXPECT_FALSE(IsArchiveObject("WINDOWS/pde.jar/B.class"));
}

TEST(EntryNames, CaseIsFoldedForAsciiLettersAlone) {
  EXPECT_EQ(FoldCase(std::string_view("AZaz09_[\xC4")), "azaz09_[\xC4");
}

}  // namespace
