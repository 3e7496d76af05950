// A build that packs through CMake and Ninja packs anew exactly when something changed.
#include <chrono>
#include <filesystem>

#include "tests/packager/payload_fixture.h"

namespace fs = std::filesystem;

namespace {

class Repacking : public PayloadTest {
 protected:
  // Sets up a build of the tree that lies in the folder of this name.
  void Configure(const std::string& tree_name) {
    tree_ = dir_ / tree_name;
    WriteTree(tree_, SoundPayload());
    WriteFile(tree_ + "/libraries/With Blank/a file.h", "1");
    WriteFile(dir_ / "tree.txt", tree_);
    WriteFile(dir_ / "project/CMakeLists.txt",
              "cmake_minimum_required(VERSION 3.25)\n"
              "project(packing NONE)\n"
              "file(READ \"${CMAKE_SOURCE_DIR}/../tree.txt\" tree)\n"
              "set(dir \"${CMAKE_CURRENT_BINARY_DIR}/packed\")\n"
              "set(outputs \"${dir}/payload.zst\" \"${dir}/payload.tbl\""
              " \"${dir}/payload_tables.cpp\")\n"
              "add_custom_command(OUTPUT ${outputs}\n"
              "  COMMAND \"${PACK}\" pack \"${tree}\" --output \"${dir}\" --level 1\n"
              "          --depfile \"${dir}/payload.d\"\n"
              "  DEPFILE \"${dir}/payload.d\" VERBATIM)\n"
              "add_custom_target(packed ALL DEPENDS ${outputs})\n");
    const ProgramResult result =
        RunProgram(CMAKE_PROGRAM, {"-S", dir_ / "project", "-B", dir_ / "build", "-G", "Ninja",
                                   std::string("-DPACK=") + PACK_PROGRAM});
    ASSERT_EQ(result.status, 0) << result.error;
  }

  // Builds and tells whether that packed.
  bool BuildPacks(int status = 0) {
    const std::string frame = dir_ / "build/packed/payload.zst";
    std::error_code ignored;
    const auto before = fs::last_write_time(frame, ignored);
    const ProgramResult result = RunProgram(CMAKE_PROGRAM, {"--build", dir_ / "build"});
    EXPECT_EQ(result.status == 0 ? 0 : 1, status) << result.output << result.error;
    return fs::last_write_time(frame, ignored) != before;
  }

  void ExpectPackedOnce(const char* what) {
    EXPECT_TRUE(BuildPacks()) << what;
    EXPECT_FALSE(BuildPacks()) << "for the second time: " << what;
  }

  void ExpectRepackedAfterEveryChange() {
    ExpectPackedOnce("at first");
    WriteFile(tree_ + "/1.8.19/WINDOWS/pde.jar/processing/app/Base$18.class", "changed");
    ExpectPackedOnce("a name with a dollar sign");
    WriteFile(tree_ + "/libraries/With Blank/a file.h", "changed");
    ExpectPackedOnce("a name with blanks");
    WriteFile(tree_ + "/libraries/With Blank/#1 new;^.h", "");
    ExpectPackedOnce("a new file");
    WriteFile(tree_ + "/libraries/With Blank/#1 new;^.h", "changed");
    ExpectPackedOnce("a name with other odd characters");
    fs::remove(tree_ + "/libraries/With Blank/#1 new;^.h");
    ExpectPackedOnce("a file gone");
    WriteFile(tree_ + "/libraries/New$/src/x.h", "");
    ExpectPackedOnce("a new folder");
    WriteFile(tree_ + "/libraries/New$/src/y.h", "");
    ExpectPackedOnce("a new file in a folder with a dollar sign");
    fs::remove_all(tree_ + "/libraries/New$");
    ExpectPackedOnce("a folder gone");
  }

  std::string tree_;
};

TEST_F(Repacking, FollowsEveryChange) {
  Configure("payload");
  ExpectRepackedAfterEveryChange();
}

TEST_F(Repacking, FollowsEveryChangeInATreeWithAnOddName) {
  Configure("pay$load #1 (x); back\\slash");
  ExpectRepackedAfterEveryChange();
}

TEST_F(Repacking, RefusedTreeIsTriedAgain) {
  Configure("payload");
  ExpectPackedOnce("at first");
  fs::remove(tree_ + "/quirloduino.txt");
  BuildPacks(1);
  EXPECT_FALSE(fs::exists(dir_ / "build/packed/payload.zst"));
  BuildPacks(1);
  WriteFile(tree_ + "/quirloduino.txt", "1.60-beta5");
  ExpectPackedOnce("mended");
}

}  // namespace
