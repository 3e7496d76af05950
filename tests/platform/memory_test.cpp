#include "platform/memory.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <vector>

namespace {

std::size_t PageSize() {
  return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// Fresh pages, none of which has been touched.
class FreshPages {
 public:
  explicit FreshPages(std::size_t count)
      : size_(count * PageSize()),
        address_(mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
    // Pages that the system hands out in larger groups would come without having been asked for.
    madvise(address_, size_, MADV_NOHUGEPAGE);
  }
  ~FreshPages() { munmap(address_, size_); }
  FreshPages(const FreshPages&) = delete;
  FreshPages& operator=(const FreshPages&) = delete;

  unsigned char* get() const { return static_cast<unsigned char*>(address_); }

  std::vector<bool> Present() const {
    std::vector<unsigned char> states(size_ / PageSize());
    EXPECT_EQ(mincore(address_, size_, states.data()), 0);
    std::vector<bool> present;
    for (const unsigned char state : states) present.push_back((state & 1) != 0);
    return present;
  }

 private:
  std::size_t size_;
  void* address_;
};

bool SystemKnowsTheAdvice() {
  const FreshPages page(1);
  return madvise(page.get(), PageSize(), MADV_POPULATE_WRITE) == 0;
}

TEST(ExpectWrites, PageByPageNothingIsThereBefore) {
  const FreshPages pages(4);
  EXPECT_EQ(pages.Present(), std::vector<bool>(4, false));
}

TEST(ExpectWrites, GivesThePagesOfTheBlockAndNoOthers) {
  if (!SystemKnowsTheAdvice()) GTEST_SKIP() << "this Linux is older than 5.14";
  const FreshPages pages(6);
  // From the middle of the second page to the first byte of the fifth.
  ExpectWrites(pages.get() + PageSize() + PageSize() / 2, PageSize() * 5 / 2 + 1);
  EXPECT_EQ(pages.Present(), (std::vector<bool>{false, true, true, true, true, false}));
}

TEST(ExpectWrites, ChangesNoContent) {
  const FreshPages pages(3);
  for (std::size_t i = 0; i < 3 * PageSize(); i += 7) pages.get()[i] = 0xA5;
  ExpectWrites(pages.get() + 1, 3 * PageSize() - 2);
  for (std::size_t i = 0; i < 3 * PageSize(); ++i) {
    ASSERT_EQ(pages.get()[i], i % 7 == 0 ? 0xA5 : 0) << "byte " << i;
  }
}

TEST(ExpectWrites, OfNothingTouchesNothing) {
  const FreshPages pages(1);
  ExpectWrites(pages.get(), 0);
  EXPECT_EQ(pages.Present(), std::vector<bool>(1, false));
}

}  // namespace
