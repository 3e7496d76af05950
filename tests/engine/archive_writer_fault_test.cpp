// Refusals of the archive library at each step behind the opening.
#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>

#include "engine/install_error.h"
#include "engine/writers.h"
#include "tests/engine/engine_test.h"
#include "tests/engine/faults.h"
#include "tests/support/jars.h"

namespace {

using Files = std::map<std::string, std::string>;

struct Refusal {
  const char* situation;
  Call call;
  const char* object;
  const char* text;
};

void PrintTo(const Refusal& refusal, std::ostream* out) {
  *out << refusal.text;
}

class ArchiveRefusal : public EngineTest, public testing::WithParamInterface<Refusal> {
 protected:
  ArchiveRefusal() {
    Load({{"entry", "ours"}});
    WriteJar(*this / "lib/pde.jar", {{"app/Base.class", "the host's"}});
  }

  // Leaves one change waiting in the open archive.
  void RecordOne() const {
    ASSERT_EQ(WriteEntryToArchive(host(), "First.class", 0, "lib/pde.jar"), 1);
  }
  void ExpectRefusal() const {
    const ScopedFailure failure(GetParam().call);
    const CallCount freed(Call::kZipSourceFree);
    EXPECT_EQ(WriteEntryToArchive(host(), GetParam().object, 0, "lib/pde.jar"), -1);
    // A source that was made and that no archive has taken over is given back.
    EXPECT_EQ(freed.Get(), GetParam().call == Call::kZipSourceBuffer ? 0 : 1);
    EXPECT_STREQ(InstallErrorText(), GetParam().text);
    EXPECT_EQ(OpenArchive.handle, nullptr);
  }
};

TEST_P(ArchiveRefusal, OfTheFirstObjectLeavesTheArchiveAsItWas) {
  const ::Files before = ReadTree(host());
  ExpectRefusal();
  EXPECT_EQ(ReadTree(host()), before);
}

TEST_P(ArchiveRefusal, OfALaterObjectCommitsTheEarlierOnes) {
  RecordOne();
  ExpectRefusal();
  EXPECT_EQ(ReadJar(*this / "lib/pde.jar"),
            (JarMembers{{"First.class", "ours"}, {"app/Base.class", "the host's"}}));
}

TEST_P(ArchiveRefusal, WordsStandOverThoseOfAFailedCommit) {
  const ::Files before = ReadTree(host());
  RecordOne();
  const ScopedReadOnlyFolder folder(*this / "lib");
  const ScopedOrdinaryUser user;
  ExpectRefusal();
  EXPECT_EQ(ReadTree(host()), before);
}

INSTANTIATE_TEST_SUITE_P(
    Steps, ArchiveRefusal,
    testing::Values(
        Refusal{"SourceOfAPresentObject", Call::kZipSourceBuffer, "app/Base.class",
                "Error decompression allocating buffer."},
        Refusal{"SourceOfANewObject", Call::kZipSourceBuffer, "app/Added.class",
                "Error decompression allocating buffer."},
        Refusal{"Replacement", Call::kZipReplace, "app/Base.class",
                "Unable to write \"lib/pde.jar\", replace replacing object \"app/Base.class\"."},
        Refusal{"Addition", Call::kZipAdd, "app/Added.class",
                "Unable to write \"lib/pde.jar\", add adding object \"app/Added.class\"."}),
    [](const testing::TestParamInfo<Refusal>& test) { return test.param.situation; });

// The archive's name in the words is the one that was cut and used.
TEST_F(EngineTest, RefusedArchiveIsNamedByItsCutName) {
  Load({{"entry", "ours"}});
  const std::string name = std::string(100, 'x') + "/" + std::string(154, 'y');
  WriteJar(*this / name, {{"Base.class", "the host's"}});
  const ScopedCurrentFolder inside(host());
  {
    const ScopedFailure failure(Call::kZipAdd);
    EXPECT_EQ(WriteEntryToArchive("", "A.class", 0, (name + "yyy").c_str()), -1);
  }
  EXPECT_EQ(InstallErrorText(), "Unable to write \"" + name + "\", add adding object \"A.class\".");
}

}  // namespace
