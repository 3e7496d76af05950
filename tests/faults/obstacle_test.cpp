// Links where the install's files and folders go. The containment rule is one of texts: no folder
// is made whose path doesn't begin with the host's. What stands in the host already, links among
// it, is the owner's own arrangement (a toolchain kept on another disk, say) and is followed, as
// the IDE follows it.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/faults/tried_install.h"
#include "tests/support/special_file.h"

namespace fs = std::filesystem;

namespace {

class HardenLinkInTheHost : public testing::Test {
 protected:
  HardenLinkInTheHost() { fs::create_directory(Outside("")); }

  std::string Host(const std::string& below) const { return install_.host().host() + "/" + below; }
  // A place beside the host that only links lead to.
  std::string Outside(const std::string& below) const {
    return install_.host().root() + "/outside/" + below;
  }

  // Puts a link at a path of the host, in the place of what stands there.
  void Link(const std::string& path, const std::string& target) const {
    fs::create_directories(fs::path(Host(path)).parent_path());
    fs::remove_all(Host(path));
    fs::create_symlink(target, Host(path));
  }

  void ExpectDone() const {
    const ProgramResult result = RunProgram(PROGRAM, {install_.host().argument()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output + result.error, "");
  }
  void ExpectError(const std::string& words) const {
    const ProgramResult result = RunProgram(PROGRAM, {install_.host().argument()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "Error: " + words + "\n");
    EXPECT_FALSE(fs::exists(Host("lib/quirloduino.txt")));
  }
  // The host folder with its links followed.
  void ExpectComplete() const {
    for (const auto& [path, content] : install_.complete()) {
      if (path.find("!/") == std::string::npos) {
        ASSERT_TRUE(fs::exists(Host(path))) << path;
        EXPECT_EQ(ReadFile(Host(path)), content) << path;
      }
    }
  }

  TriedInstall install_{PROGRAM, FaultHost::Kind::kFresh};
};

TEST_F(HardenLinkInTheHost, ToAFolderOutsideIsFollowedAndStaysALink) {
  Link("hardware", Outside(""));
  ExpectDone();
  EXPECT_TRUE(fs::is_symlink(Host("hardware")));
  EXPECT_TRUE(fs::exists(Outside("tools/quirlo.exe")));
  ExpectComplete();
}

TEST_F(HardenLinkInTheHost, ThatDanglesWhereAFolderGoesIsNamedAndItsTargetIsNotMade) {
  Link("hardware", Outside("nothing"));
  ExpectError("Unable to create directory \"" + install_.host().text() + "hardware/\".");
  EXPECT_FALSE(fs::exists(Outside("nothing")));
  EXPECT_TRUE(fs::is_symlink(Host("hardware")));
}

TEST_F(HardenLinkInTheHost, ThatLeadsToItselfIsNamed) {
  Link("hardware", "hardware");
  ExpectError("Unable to create directory \"" + install_.host().text() + "hardware/\".");
}

TEST_F(HardenLinkInTheHost, ToAFileWhereAFolderGoesIsNamedAndTheFileStays) {
  WriteFile(Outside("file"), "somebody's");
  Link("hardware", Outside("file"));
  ExpectError("Unable to create directory \"" + install_.host().text() + "hardware/\".");
  EXPECT_EQ(ReadFile(Outside("file")), "somebody's");
}

// Opening for writing follows it, as the IDE would in saving there.
TEST_F(HardenLinkInTheHost, ToAFileWhereAFileGoesIsWrittenThrough) {
  WriteFile(Outside("boards"), "somebody's, and longer than what is written");
  Link("hardware/quirlo/avr/boards.txt", Outside("boards"));
  ExpectDone();
  EXPECT_TRUE(fs::is_symlink(Host("hardware/quirlo/avr/boards.txt")));
  EXPECT_EQ(ReadFile(Outside("boards")), install_.complete().at("hardware/quirlo/avr/boards.txt"));
  ExpectComplete();
}

TEST_F(HardenLinkInTheHost, ThatDanglesWhereAFileGoesMakesItsTarget) {
  Link("hardware/quirlo/avr/boards.txt", Outside("boards"));
  ExpectDone();
  EXPECT_EQ(ReadFile(Outside("boards")), install_.complete().at("hardware/quirlo/avr/boards.txt"));
}

TEST_F(HardenLinkInTheHost, ThatDanglesInNoFolderWhereAFileGoesIsNamed) {
  Link("hardware/quirlo/avr/boards.txt", Outside("nothing/boards"));
  ExpectError("Unable to write file \"hardware/quirlo/avr/boards.txt\".");
  EXPECT_FALSE(fs::exists(Outside("nothing")));
}

TEST_F(HardenLinkInTheHost, ToAFolderWhereAFileGoesIsNamedAndTheFolderStays) {
  fs::create_directory(Outside("folder"));
  Link("hardware/quirlo/avr/boards.txt", Outside("folder"));
  ExpectError("Unable to write file \"hardware/quirlo/avr/boards.txt\".");
  EXPECT_TRUE(fs::is_empty(Outside("folder")));
}

// The archive library puts a new file in the place of the old one, so the link goes, and what it
// led to stays as it was.
TEST_F(HardenLinkInTheHost, InPlaceOfAnArchiveBecomesAnArchiveAndItsTargetStays) {
  fs::rename(Host("lib/pde.jar"), Outside("pde.jar"));
  const std::string bytes = ReadFile(Outside("pde.jar"));
  fs::create_symlink(Outside("pde.jar"), Host("lib/pde.jar"));
  ExpectDone();
  EXPECT_FALSE(fs::is_symlink(Host("lib/pde.jar")));
  EXPECT_EQ(Difference(install_.complete(), install_.host().Read()), "");
  EXPECT_EQ(ReadFile(Outside("pde.jar")), bytes);
}

TEST_F(HardenLinkInTheHost, ThatDanglesInPlaceOfAnArchiveIsRefused) {
  Link("lib/pde.jar", Outside("nothing.jar"));
  const ProgramResult result = RunProgram(PROGRAM, {install_.host().argument()});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.error.starts_with("Directory \"" + install_.host().text() +
                                       "\" is not a supported Arduino\n"));
  EXPECT_TRUE(fs::is_symlink(Host("lib/pde.jar")));
  EXPECT_FALSE(fs::exists(Outside("nothing.jar")));
}

// The removal opens the link's target and takes the link away.
TEST_F(HardenLinkInTheHost, InPlaceOfARetiredFileGoesAndItsTargetStays) {
  WriteFile(Outside("libc.c"), "somebody's");
  Link("hardware/quirlo/avr/cores/quirlo4/libc.c", Outside("libc.c"));
  ExpectDone();
  EXPECT_FALSE(fs::is_symlink(Host("hardware/quirlo/avr/cores/quirlo4/libc.c")));
  EXPECT_EQ(ReadFile(Outside("libc.c")), "somebody's");
}

// A pipe that nobody writes to, a socket, a device without an end. The program neither waits nor
// reads, it takes each for a file that can't be opened.
class HardenSpecialFile : public HardenLinkInTheHost {
 protected:
  // Puts each kind at a path of a fresh host in turn, and gives what the install says of it.
  std::string Errors(const std::string& path) const {
    std::string errors;
    for (const SpecialFile& special : kSpecialFiles) {
      install_.host().Reset();
      fs::remove_all(Host(path));
      special.make(Host(path));
      const ProgramResult result = RunProgram(PROGRAM, {install_.host().argument()});
      EXPECT_EQ(result.status, 1) << special.kind;
      EXPECT_TRUE(IsSpecialFile(Host(path))) << special.kind;
      if (errors.find(result.error) == std::string::npos) errors += result.error;
    }
    return errors;
  }
  std::string Unsupported() const {
    return "Directory \"" + install_.host().text() + "\" is not a supported Arduino\n" +
           install_.supported();
  }
};

TEST_F(HardenSpecialFile, InPlaceOfWhatProvesAnArduinoIsRefused) {
  for (const char* path : {"lib/version.txt", "lib/pde.jar"}) {
    EXPECT_EQ(Errors(path), Unsupported()) << path;
  }
}

TEST_F(HardenSpecialFile, InPlaceOfAFileOrTheMarkerFailsTheInstall) {
  for (const char* path : {"hardware/tools/quirlo.exe", "lib/quirloduino.txt"}) {
    EXPECT_EQ(Errors(path), "Error: Unable to write file \"" + std::string(path) + "\".\n");
  }
}

TEST_F(HardenLinkInTheHost, AsTheHostItselfIsFollowed) {
  fs::rename(install_.host().host(), Outside("arduino"));
  fs::create_directory_symlink(Outside("arduino"), install_.host().host());
  ExpectDone();
  EXPECT_EQ(Difference(install_.complete(), ReadInstall(Outside("arduino"))), "");
}

}  // namespace
