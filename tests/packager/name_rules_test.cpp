// What a tree can't bring about but a foreign table can; the rest is in packer_refuses_test.cpp.
#include "packager/name_rules.h"

#include <gtest/gtest.h>

#include "packager/refusal.h"

namespace {

std::string RefusalOfPath(std::string_view path) {
  try {
    CheckPath(path);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "accepted";
}

std::string RefusalOfTwins(const std::vector<PayloadFile>& files) {
  try {
    CheckNoTwins(files);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "accepted";
}

TEST(NameRules, AbsolutePathIsRefused) {
  EXPECT_EQ(RefusalOfPath("/a"), "/a: a name must not begin with \"/\"");
}

TEST(NameRules, EmptyComponentsAreRefused) {
  EXPECT_EQ(RefusalOfPath(""), ": a name must not have an empty component");
  EXPECT_EQ(RefusalOfPath("a//b"), "a//b: a name must not have an empty component");
  EXPECT_EQ(RefusalOfPath("a/"), "a/: a name must not have an empty component");
}

TEST(NameRules, PathsOutOfTheTreeAreRefused) {
  EXPECT_EQ(RefusalOfPath("a/../b"), "a/../b: \"..\" ends in a dot or blank, which Windows drops");
  EXPECT_EQ(RefusalOfPath("./b"), "./b: \".\" ends in a dot or blank, which Windows drops");
}

TEST(NameRules, ZeroByteAndDeleteAreRefused) {
  EXPECT_EQ(RefusalOfPath(std::string_view("a\0b", 3)), "a\\x00b: a name must be printable ASCII");
  EXPECT_EQ(RefusalOfPath("a\x7F"), "a\\x7F: a name must be printable ASCII");
}

TEST(NameRules, NamesNextToTheForbiddenOnesAreAccepted) {
  for (const char* path : {"con1", "auxiliary.c", "com10", "conin", "clock$s", "lpt", "xcon",
                           "c.aux", ".x", " x", "a.b/c d", "Base$18.class", "~", "!"}) {
    EXPECT_EQ(RefusalOfPath(path), "accepted") << path;
  }
}

TEST(NameRules, SameNameTwiceIsRefused) {
  EXPECT_EQ(RefusalOfTwins({{"a/b", 1}, {"a/b", 1}}), "a/b: the name stands twice");
}

TEST(NameRules, FileThatIsAlsoAFolderIsRefused) {
  EXPECT_EQ(RefusalOfTwins({{"a/b", 1}, {"a/b/c", 1}}),
            "a/b/c: \"a/b\" is both a file and a folder");
  EXPECT_EQ(RefusalOfTwins({{"a/b/c", 1}, {"a/b", 1}}), "a/b: \"a/b\" is both a file and a folder");
}

TEST(NameRules, AliasCollidesByItsLeftSide) {
  EXPECT_EQ(RefusalOfTwins({{"arm/a", 1}, {"arm/A --> arm/b", 0}}),
            "arm/A: \"arm/A\" differs only in case from \"arm/a\"");
}

}  // namespace
