#include "packager/depfile.h"

#include <gtest/gtest.h>

#include "packager/refusal.h"

namespace {

using Paths = std::vector<std::filesystem::path>;

TEST(Depfile, NamesTargetsFoldersAndFilesByAbsolutePaths) {
  const PayloadTree tree = {"/t/tree/", {{"a/x.h", 1}, {"a b.c", 1}}, {"", "a"}};
  const Depfile depfile = MakeDepfile({"/o/payload.zst", "/o/payload.tbl"}, tree, "/o/l");
  EXPECT_EQ(depfile.text,
            "/o/payload.zst /o/payload.tbl: \\\n"
            "  /t/tree \\\n"
            "  /t/tree/a \\\n"
            "  /t/tree/a/x.h \\\n"
            "  /t/tree/a\\ b.c\n");
  EXPECT_TRUE(depfile.linked.empty());
}

TEST(Depfile, RelativePathsAreMadeAbsolute) {
  const PayloadTree tree = {"tree", {{"x.h", 1}}, {""}};
  const std::string here = std::filesystem::current_path().string();
  EXPECT_EQ(MakeDepfile({"./o/payload.zst"}, tree, "l").text,
            here + "/o/payload.zst: \\\n  " + here + "/tree \\\n  " + here + "/tree/x.h\n");
}

TEST(Depfile, DisputedNamesGetALink) {
  const PayloadTree tree = {
      "/t", {{"Base$18.class", 1}, {"a#b", 1}, {"plain", 1}, {"x;y", 1}}, {"", "q'"}};
  const Depfile depfile = MakeDepfile({"/o/p"}, tree, "/o/p.d.links");
  EXPECT_EQ(depfile.text,
            "/o/p: \\\n"
            "  /t \\\n"
            "  /o/p.d.links/0 \\\n"
            "  /o/p.d.links/1 \\\n"
            "  /o/p.d.links/2 \\\n"
            "  /t/plain \\\n"
            "  /o/p.d.links/3\n");
  EXPECT_EQ(depfile.linked, (Paths{"/t/q'", "/t/Base$18.class", "/t/a#b", "/t/x;y"}));
}

TEST(Depfile, EscapesWhatItMustNameItself) {
  EXPECT_EQ(EscapeForDepfile("/a b/c$d/e#f"), "/a\\ b/c$$d/e\\#f");
  EXPECT_EQ(EscapeForDepfile("/a\\b"), "/a\\b");
  EXPECT_EQ(EscapeForDepfile("/a\\ b"), "/a\\\\\\ b");
  EXPECT_EQ(EscapeForDepfile("/a\\\\#b"), "/a\\\\\\\\\\#b");
}

TEST(Depfile, TargetWithALineEndIsRefused) {
  const PayloadTree tree = {"/t", {}, {""}};
  EXPECT_THROW(MakeDepfile({"/o\n/p"}, tree, "/l"), Refusal);
}

}  // namespace
