#include "packager/output_set.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "packager/depfile.h"
#include "packager/refusal.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

using Tree = std::map<std::string, std::string>;

TEST(OutputSet, EarlierFilesAreGoneAtOnce) {
  const TempDir dir;
  WriteFile(dir / "a", "old");
  WriteFile(dir / "a.part", "left by a run that was interrupted");
  WriteFile(dir / "b", "another's");
  const OutputSet outputs({dir / "a"});
  EXPECT_EQ(ReadTree(dir.path()), (Tree{{"b", "another's"}}));
}

TEST(OutputSet, FilesAppearTogetherWhenCommitted) {
  const TempDir dir;
  {
    OutputSet outputs({dir / "x/a", dir / "y/b"});
    WriteFile(OutputSet::TemporaryName(dir / "x/a"), "1");
    WriteFile(OutputSet::TemporaryName(dir / "y/b"), "2");
    outputs.Commit();
  }
  EXPECT_EQ(ReadTree(dir.path()), (Tree{{"x/", ""}, {"x/a", "1"}, {"y/", ""}, {"y/b", "2"}}));
}

TEST(OutputSet, NothingStaysWithoutACommit) {
  const TempDir dir;
  {
    const OutputSet outputs({dir / "a", dir / "b"});
    WriteFile(OutputSet::TemporaryName(dir / "a"), "1");
  }
  EXPECT_TRUE(ReadTree(dir.path()).empty());
}

TEST(OutputSet, NothingStaysWhenTheLastFileCanNotBeNamed) {
  const TempDir dir;
  {
    OutputSet outputs({dir / "a", dir / "b"});
    WriteFile(OutputSet::TemporaryName(dir / "a"), "1");
    EXPECT_THROW(outputs.Commit(), Refusal);  // b was never written
  }
  EXPECT_TRUE(ReadTree(dir.path()).empty());
}

TEST(OutputSet, FoldersMadeForNothingGoAgain) {
  const TempDir dir;
  WriteFile(dir / "was/there", "");
  {
    const OutputSet outputs({dir / "x/y/a", dir / "was/b", dir / "was/new/c"});
    EXPECT_EQ(ReadTree(dir.path()),
              (Tree{{"was/", ""}, {"was/new/", ""}, {"was/there", ""}, {"x/", ""}, {"x/y/", ""}}));
  }
  EXPECT_EQ(ReadTree(dir.path()), (Tree{{"was/", ""}, {"was/there", ""}}));
}

TEST(OutputSet, SecondOneForAFolderIsRefusedAndTouchesNothing) {
  const TempDir dir;
  const OutputSet first({dir / "a"});
  WriteFile(OutputSet::TemporaryName(dir / "a"), "begun");
  WriteFile(dir / "b", "another's");
  try {
    const OutputSet second({dir / "b"});
    FAIL();
  } catch (const Refusal& refusal) {
    EXPECT_EQ(refusal.what(), dir.path() + ": another run is packing into this folder");
  }
  EXPECT_EQ(ReadTree(dir.path()), (Tree{{"a.part", "begun"}, {"b", "another's"}}));
}

TEST(OutputSet, FolderIsFreeWhenTheFirstHasGone) {
  const TempDir dir;
  { const OutputSet first({dir / "a"}); }
  const OutputSet second({dir / "a"});
}

TEST(OutputSet, TwoNamesOfOneFolderAreOneFolder) {
  const TempDir dir;
  fs::create_directory(dir / "x");
  fs::create_directory_symlink(dir / "x", dir / "link");
  const OutputSet outputs({dir / "x/a", dir / "link/b", dir / "x/../x/c"});
}

TEST(LinkFolder, LinksGoWithTheFolderUnlessCommitted) {
  const TempDir dir;
  const std::string folder = dir / "links";
  {
    LinkFolder links(folder);
    links.Make({"/one", "/two"});
    EXPECT_EQ(ReadTree(folder), (Tree{{"0", "-> /one"}, {"1", "-> /two"}}));
  }
  EXPECT_FALSE(fs::exists(folder));
}

TEST(LinkFolder, EarlierLinksGoAndOtherFilesStay) {
  const TempDir dir;
  const std::string folder = dir / "links";
  {
    LinkFolder links(folder);
    links.Make({"/one", "/two"});
    links.Commit();
  }
  WriteFile(folder + "/mine", "kept");
  LinkFolder links(folder);
  EXPECT_EQ(ReadTree(folder), (Tree{{"mine", "kept"}}));
  links.Make({"/three"});
  EXPECT_EQ(ReadTree(folder), (Tree{{"0", "-> /three"}, {"mine", "kept"}}));
}

TEST(LinkFolder, NoLinksMakeNoFolder) {
  const TempDir dir;
  LinkFolder links(dir / "links");
  links.Make({});
  links.Commit();
  EXPECT_TRUE(ReadTree(dir.path()).empty());
}

}  // namespace
