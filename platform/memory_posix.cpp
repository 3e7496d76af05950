#include "platform/memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

// Linux hands out a page at its first touch, each with an exception of its own, which is a good
// part of expanding into fresh memory. MADV_POPULATE_WRITE (madvise(2), since Linux 5.14; refused
// by older ones) takes them all with one call.
void ExpectWrites(void* block, std::size_t size) {
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  // The call wants the beginning of a page. The pages at both ends may hold the allocator's own
  // bytes too, which stay as they are.
  const std::uintptr_t before = address % page;
  madvise(static_cast<char*>(block) - before, before + size, MADV_POPULATE_WRITE);
}
