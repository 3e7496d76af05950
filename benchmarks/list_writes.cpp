// What an install of one release writes, without writing it: the engine's rules decide, and in the
// place of its writers stand two that print offset in the content, size and path of each file. The
// objects of archives get paths below "jar-objects/".
//   list_writes PACKED RELEASE
#include <cstdio>

#include "benchmarks/packed_store.h"
#include "engine/file_disposition.h"
#include "engine/writers.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"

namespace {

unsigned long long OffsetOf(std::uint32_t index) {
  return static_cast<unsigned long long>(Store.data[index] - Store.data[0]);
}

}  // namespace

OpenArchiveState OpenArchive;

int WriteEntryToFile(const char*, const char* subfolder, const char* name, std::uint32_t index) {
  std::printf("%llu\t%u\t%s%s\n", OffsetOf(index), Store.sizes[index], subfolder, name);
  return 1;
}

int WriteEntryToArchive(const char*, const char* object, std::uint32_t index, const char* archive) {
  std::printf("%llu\t%u\tjar-objects/%s/%s\n", OffsetOf(index), Store.sizes[index], archive,
              object);
  return 1;
}

bool CloseOpenArchive() {
  return true;
}

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  if (!LoadPackedStore(argv[1])) return 1;
  SelectRelease(argv[2]);
  for (std::uint32_t i = 0; i < Store.entry_count; ++i) {
    if (DisposeEntry("/", i) < 0) return 1;
  }
  return 0;
}
