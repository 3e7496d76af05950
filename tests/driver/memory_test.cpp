// What happens when memory runs out, and what becomes of the texts that the tables hold. The
// program's malloc is replaced: of all that is linked here only its own code calls it.
#include <cstddef>
#include <cstdlib>

#include "driver/driver_install.h"
#include "driver/driver_survey.h"
#include "driver/inf_identity.h"
#include "tests/driver/driver_test.h"

namespace {

// Which call of the driver's allocations fails, counted from 1; 0 for none.
int failing_allocation;
int allocations;

bool AllocationFails() {
  return failing_allocation != 0 && ++allocations == failing_allocation;
}

}  // namespace

// The linker's names for the replaced functions and their replacements.
void* RealMalloc(std::size_t size) __asm__("__real_malloc");
void* RealCalloc(std::size_t count, std::size_t size) __asm__("__real_calloc");
void* WrapMalloc(std::size_t size) __asm__("__wrap_malloc");
void* WrapCalloc(std::size_t count, std::size_t size) __asm__("__wrap_calloc");

void* WrapMalloc(std::size_t size) {
  return AllocationFails() ? nullptr : RealMalloc(size);
}

void* WrapCalloc(std::size_t count, std::size_t size) {
  return AllocationFails() ? nullptr : RealCalloc(count, size);
}

namespace {

class Memory : public DriverTest {
 protected:
  Memory() { allocations = 0; }
  ~Memory() override { failing_allocation = 0; }
};

TEST_F(Memory, FileWithoutMemoryForItsPathHasNoRowAndTheNextIsStaged) {
  store_ = nullptr;
  store_ = std::make_unique<TestStore>(std::vector<TestEntry>{{"a.inf", "1"}, {"b.inf", "2"}});
  failing_allocation = 1;
  stage_driver_files();
  EXPECT_EQ(StagedInfCount, 1);
  EXPECT_EQ(StagedInfPaths[0], Staged("b.inf"));
  EXPECT_EQ(ReadFile(Staged("a.inf")), "1");  // it was written before
}

TEST_F(Memory, ListWithoutMemoryHoldsNoMatch) {
  stage_driver_files();
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  failing_allocation = 1;
  EXPECT_EQ(count_missing_infs(), 1);
  EXPECT_THAT(Machine.CallsOf({"GetInfFileList"}), ::testing::SizeIs(1));
}

TEST_F(Memory, MatchWithoutMemoryForItsNameCountsAsMissing) {
  stage_driver_files();
  Machine.inf_files = {{"oem1.inf", kDriverInf}};
  failing_allocation = 2;
  EXPECT_EQ(count_missing_infs(), 1);
  EXPECT_EQ(InstalledInfNames[0], nullptr);
}

TEST_F(Memory, InstalledFileWithoutMemoryForItsNameIsCopiedAgainAtTheNextTry) {
  Stage({{"a.inf", InfWith("A=a\n")}}, {""});
  Machine.copy_deletes_source = false;
  failing_allocation = 1;
  EXPECT_EQ(install_missing_infs(), 0);
  EXPECT_EQ(InstalledInfNames[0], nullptr);
  EXPECT_EQ(install_missing_infs(), 0);
  EXPECT_STREQ(InstalledInfNames[0], "C:\\WINDOWS\\INF\\oem0.inf");
}

}  // namespace
