// What it costs merely to have the content's bytes once more: maps the expanded content, which is
// in the page cache, and copies it into fresh memory.
//   memcpy_control CONTENT
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::size_t size = std::filesystem::file_size(argv[1]);
  const int file = open(argv[1], O_RDONLY);
  void* content = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
  void* copy = std::malloc(size);
  if (content == MAP_FAILED || copy == nullptr) return 1;
  std::memcpy(copy, content, size);
  // Looked at, so that the copy is made.
  const volatile char* last = static_cast<char*>(copy) + size - 1;
  return *last == static_cast<char*>(content)[size - 1] ? 0 : 1;
}
