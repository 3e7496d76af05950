// The store when memory runs out. Linked with --wrap=malloc.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "store/embedded_file_store.h"
#include "tests/support/test_store.h"

namespace {

constexpr int kNever = -1;

int allowed_calls = kNever;  // calls that still succeed
std::size_t last_size;       // bytes of the last call

}  // namespace

extern "C" {
void* RealMalloc(std::size_t size) __asm__("__real_malloc");
void* WrappedMalloc(std::size_t size) __asm__("__wrap_malloc");

void* WrappedMalloc(std::size_t size) {
  last_size = size;
  if (allowed_calls == 0) return nullptr;
  if (allowed_calls > 0) --allowed_calls;
  return RealMalloc(size);
}
}

namespace {

class OutOfMemory : public testing::Test {
 protected:
  void TearDown() override { allowed_calls = kNever; }
};

std::vector<TestEntry> ThreeReleases() {
  return {{"1.8.19/WINDOWS/directory_criteria.txt", "criteria"},
          {"1.8.5/WINDOWS/directory_criteria.txt", "criteria"},
          {"1.8.9/WINDOWS/directory_criteria.txt", "criteria"}};
}

TEST_F(OutOfMemory, PayloadThatDoesNotFitIsNotLoaded) {
  const TestStore store(ThreeReleases(), false);
  allowed_calls = 0;
  EXPECT_FALSE(LoadEmbeddedFiles());
  EXPECT_EQ(Store.data[0], nullptr);
}

TEST_F(OutOfMemory, BlockOfThePayloadHasExactlyTheSumOfTheSizes) {
  const TestStore store(ThreeReleases(), false);
  ASSERT_TRUE(LoadEmbeddedFiles());
  EXPECT_EQ(last_size, store.content().size());
}

TEST_F(OutOfMemory, ReleaseListKeepsWhatWasGatheredSoFar) {
  const TestStore store(ThreeReleases());
  allowed_calls = 2;
  EXPECT_STREQ(SupportedVersions(), "1.8.5, 1.8.19");
  EXPECT_EQ(SupportedVersionCount(), 2U);
}

TEST_F(OutOfMemory, IncompleteReleaseListIsKeptForTheRun) {
  const TestStore store(ThreeReleases());
  allowed_calls = 1;
  EXPECT_STREQ(SupportedVersions(), "1.8.19");
  allowed_calls = kNever;
  EXPECT_STREQ(SupportedVersions(), "1.8.19");
  EXPECT_EQ(SupportedVersionCount(), 1U);
}

TEST_F(OutOfMemory, ReleaseListWithoutAnyMemoryIsEmpty) {
  const TestStore store(ThreeReleases());
  allowed_calls = 0;
  EXPECT_STREQ(SupportedVersions(), "");
  EXPECT_STREQ(SupportedVersionAt(0), "");
}

TEST_F(OutOfMemory, EmptyReleaseListIsBuiltAnewWhenMemoryIsBack) {
  const TestStore store(ThreeReleases());
  allowed_calls = 0;
  EXPECT_STREQ(SupportedVersions(), "");
  allowed_calls = kNever;
  EXPECT_STREQ(SupportedVersions(), "1.8.5, 1.8.9, 1.8.19");
}

}  // namespace
