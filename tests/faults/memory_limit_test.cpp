// An install with less memory than it needs: a limit on the address space of the process, from
// where the payload can't be held to where all succeeds.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <string>

#include "tests/faults/tried_install.h"
#include "tests/support/harden.h"

namespace {

constexpr rlim_t kPage = 4096;
constexpr rlim_t kEnough = rlim_t{1} << 30;

// The payload of MEMORY_PROGRAM begins with an entry of this size that no rule installs.
constexpr rlim_t kPayloadSize = 16 << 20;

class HardenMemory : public testing::Test {
 protected:
  void SetUp() override {
    if (SANITIZED) GTEST_SKIP() << "the sanitizer's own address space is beyond every limit";
  }

  ProgramResult RunWithin(rlim_t limit) const {
    // The shell sets the limit, in its unit of 1,024 bytes, and becomes the program.
    const std::string command = "ulimit -v " + std::to_string(limit / 1024) + "; exec \"" +
                                install_.program() + "\" \"" + install_.host().argument() + "\"";
    ProgramOptions options;
    options.without = {"DISPLAY"};
    return RunProgram("/bin/sh", {"-c", command}, options);
  }

  // The least limit, to the page, within which a run on an untouched host succeeds.
  rlim_t FindLeast() const {
    rlim_t fails = 0;
    rlim_t succeeds = kEnough;
    while (succeeds - fails > kPage) {
      const rlim_t middle = (fails + succeeds) / 2 / kPage * kPage;
      install_.host().Reset();
      (RunWithin(middle).status == 0 ? succeeds : fails) = middle;
    }
    return succeeds;
  }

  TriedInstall install_{MEMORY_PROGRAM, FaultHost::Kind::kWithOlderPackage};
};

bool IsSilent(const ProgramResult& result) {
  return result.status == 1 && (result.output + result.error).empty();
}

// The payload's block is the largest by far, so a limit that lacks some of it fails there.
TEST_F(HardenMemory, TooLittleForThePayloadIsStatusOneWithoutAWord) {
  const rlim_t least = FindLeast();
  for (const rlim_t lack : {rlim_t{1} << 20, kPayloadSize / 4, kPayloadSize / 2}) {
    install_.host().Reset();
    const ProgramResult result = RunWithin(least - lack);
    EXPECT_TRUE(IsSilent(result)) << lack << " bytes less: " << result.status << result.error;
    EXPECT_EQ(Difference(install_.before(), install_.host().Read()), "");
  }
  EXPECT_EQ(install_.Repeat(), "");
}

TEST_F(HardenMemory, EachPageBelowWhatIsNeededFailsCleanlyAndEachAboveSucceeds) {
  const rlim_t least = FindLeast();
  const rlim_t step = kPage * static_cast<rlim_t>(HardenStride(16));
  long silent = 0;
  long worded = 0;
  for (rlim_t limit = least - 128 * kPage; limit < least; limit += step) {
    SCOPED_TRACE(std::to_string(least - limit) + " bytes less than needed");
    install_.host().Reset();
    const ProgramResult result = RunWithin(limit);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    const Files after = install_.host().Read();
    if (IsSilent(result)) {
      ++silent;
      EXPECT_EQ(Difference(install_.before(), after), "");
    } else {
      ++worded;
      EXPECT_TRUE(result.error.starts_with("Error: ") || result.error.starts_with("Directory \""))
          << result.error;
    }
    EXPECT_EQ(install_.Repeat(), "");
  }
  for (int above = 0; above < 4; ++above) {
    install_.host().Reset();
    EXPECT_EQ(RunWithin(least + static_cast<rlim_t>(above) * kPage).status, 0);
    EXPECT_EQ(Difference(install_.complete(), install_.host().Read()), "");
  }
  EXPECT_GT(silent + worded, 0);
  HardenReport("memory: " + HardenNumber(static_cast<long>(least / 1024)) +
               " kB of address space needed around a payload of 16 MiB; of " +
               HardenNumber(silent + worded) + " limits in the 512 kB below, " +
               HardenNumber(silent) + " end without a word and " + HardenNumber(worded) +
               " with an error");
}

}  // namespace
