// The store when memory runs out. Linked with --wrap=malloc.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "store/embedded_file_store.h"
#include "tests/support/test_store.h"

namespace {

constexpr int kNever = -1;

int calls_before_failure = kNever;  // then one call fails, and the next succeed again
std::size_t last_size;              // bytes of the last call

}  // namespace

extern "C" {
void* RealMalloc(std::size_t size) __asm__("__real_malloc");
void* WrappedMalloc(std::size_t size) __asm__("__wrap_malloc");

void* WrappedMalloc(std::size_t size) {
  last_size = size;
  if (calls_before_failure == kNever) return RealMalloc(size);
  return calls_before_failure-- == 0 ? nullptr : RealMalloc(size);
}
}

namespace {

class OutOfMemory : public testing::Test {
 protected:
  void TearDown() override { calls_before_failure = kNever; }
};

std::vector<TestEntry> ThreeReleases() {
  return {{"1.8.19/WINDOWS/directory_criteria.txt", "criteria"},
          {"1.8.5/WINDOWS/directory_criteria.txt", "criteria"},
          {"1.8.9/WINDOWS/directory_criteria.txt", "criteria"}};
}

TEST_F(OutOfMemory, PayloadThatDoesNotFitIsNotLoaded) {
  const TestStore store(ThreeReleases(), false);
  calls_before_failure = 0;
  EXPECT_FALSE(LoadEmbeddedFiles());
  EXPECT_EQ(Store.data[0], nullptr);
}

TEST_F(OutOfMemory, BlockOfThePayloadHasExactlyTheSumOfTheSizes) {
  const TestStore store(ThreeReleases(), false);
  ASSERT_TRUE(LoadEmbeddedFiles());
  EXPECT_EQ(last_size, store.content().size());
}

TEST_F(OutOfMemory, ReleaseListEndsWithWhatWasGatheredSoFar) {
  const TestStore store(ThreeReleases());
  calls_before_failure = 1;
  EXPECT_STREQ(SupportedVersions(), "1.8.19");
  EXPECT_EQ(SupportedVersionCount(), 1U) << "and it is kept so for the run";
}

TEST_F(OutOfMemory, ReleaseListThatStayedEmptyIsBuiltAnewAtTheNextCall) {
  const TestStore store(ThreeReleases());
  calls_before_failure = 0;
  EXPECT_STREQ(SupportedVersions(), "");
  EXPECT_STREQ(SupportedVersions(), "1.8.5, 1.8.9, 1.8.19");
}

}  // namespace
