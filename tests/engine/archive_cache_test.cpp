// How often an archive is opened, and what commits it.
#include <gtest/gtest.h>

#include <string>

#include "engine/install_error.h"
#include "engine/writers.h"
#include "tests/engine/engine_test.h"
#include "tests/engine/faults.h"
#include "tests/support/jars.h"

namespace {

class ArchiveCache : public EngineTest {
 protected:
  ArchiveCache() {
    WriteJar(*this / "lib/pde.jar", {{"kept", "kept"}});
    WriteJar(*this / "lib/core.jar", {{"kept", "kept"}});
    Load({{"1.8.19/WINDOWS/pde.jar/A.class", "a"},
          {"1.8.19/WINDOWS/pde.jar/B.class", "b"},
          {"1.8.9/boards.txt", "of another release"},
          {"examples/a.ino", "plain"}});
  }
  int Write(const char* object, const char* jar) const {
    return WriteEntryToArchive(host(), object, 0, jar);
  }
};

TEST_F(ArchiveCache, TwoObjectsInARowOpenTheArchiveOnce) {
  const CallCount opened(Call::kZipOpen);
  EXPECT_EQ(Write("A.class", "lib/pde.jar"), 1);
  EXPECT_EQ(Write("B.class", "lib/pde.jar"), 1);
  EXPECT_EQ(opened.Get(), 1);
  EXPECT_TRUE(CloseOpenArchive());
  EXPECT_EQ(ReadJar(*this / "lib/pde.jar"),
            (JarMembers{{"A.class", "a"}, {"B.class", "a"}, {"kept", "kept"}}));
}

TEST_F(ArchiveCache, PlainFileClosesAndTheNextObjectReopens) {
  const CallCount opened(Call::kZipOpen);
  EXPECT_EQ(Write("A.class", "lib/pde.jar"), 1);
  EXPECT_EQ(WriteEntryToFile(host(), "", "e", 3), 1);
  EXPECT_EQ(OpenArchive.handle, nullptr);
  EXPECT_EQ(ReadTree(host()).count("e"), 1U);
  EXPECT_EQ(opened.Get(), 1);
  EXPECT_EQ(Write("B.class", "lib/pde.jar"), 1);
  EXPECT_EQ(opened.Get(), 2);
  EXPECT_TRUE(CloseOpenArchive());
  EXPECT_EQ(ReadJar(*this / "lib/pde.jar").size(), 3U);
}

TEST_F(ArchiveCache, ObjectOfAnotherArchiveClosesTheFirst) {
  const CallCount opened(Call::kZipOpen);
  EXPECT_EQ(Write("A.class", "lib/pde.jar"), 1);
  EXPECT_EQ(Write("B.class", "lib/core.jar"), 1);
  EXPECT_EQ(opened.Get(), 2);
  EXPECT_EQ(OpenArchive.path, *this / "lib/core.jar");
  EXPECT_EQ(ReadJar(*this / "lib/pde.jar"), (JarMembers{{"A.class", "a"}, {"kept", "kept"}}));
  EXPECT_EQ(ReadJar(*this / "lib/core.jar"), (JarMembers{{"kept", "kept"}}));
}

TEST_F(ArchiveCache, OtherTextForTheSameFileIsAnotherArchive) {
  const CallCount opened(Call::kZipOpen);
  EXPECT_EQ(Write("A.class", "lib/pde.jar"), 1);
  EXPECT_EQ(Write("B.class", "lib//pde.jar"), 1);
  EXPECT_EQ(opened.Get(), 2);
  EXPECT_TRUE(CloseOpenArchive());
  EXPECT_EQ(ReadJar(*this / "lib/pde.jar").size(), 3U);
}

TEST_F(ArchiveCache, AbsentArchiveClosesTheFirstAndLeavesNoneOpen) {
  EXPECT_EQ(Write("A.class", "lib/pde.jar"), 1);
  EXPECT_EQ(Write("B.class", "lib/missing.jar"), -1);
  EXPECT_EQ(OpenArchive.handle, nullptr);
  EXPECT_EQ(ReadJar(*this / "lib/pde.jar"), (JarMembers{{"A.class", "a"}, {"kept", "kept"}}));
}

TEST_F(ArchiveCache, SkippedEntryBetweenTwoObjectsLeavesTheArchiveOpen) {
  const CallCount opened(Call::kZipOpen);
  EXPECT_EQ(Dispose("1.8.19/WINDOWS/pde.jar/A.class"), 1);
  EXPECT_EQ(Dispose("1.8.9/boards.txt"), 0);
  EXPECT_EQ(Dispose("1.8.19/WINDOWS/pde.jar/B.class"), 1);
  EXPECT_EQ(opened.Get(), 1);
  EXPECT_EQ(Dispose("examples/a.ino"), 1);
  EXPECT_EQ(ReadJar(*this / "lib/pde.jar"),
            (JarMembers{{"A.class", "a"}, {"B.class", "b"}, {"kept", "kept"}}));
}

TEST_F(ArchiveCache, RemovedEntryLeavesTheArchiveOpen) {
  Load({{"1.8.19/WINDOWS/pde.jar/A.class", "a"},
        {"cores/quirlo4/libc.c", "// this file no longer used\n"}});
  EXPECT_EQ(Dispose("1.8.19/WINDOWS/pde.jar/A.class"), 1);
  EXPECT_EQ(Dispose("cores/quirlo4/libc.c"), 0);
  EXPECT_NE(OpenArchive.handle, nullptr);
}

}  // namespace
