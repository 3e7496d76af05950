// The floor of the program's start: reads the frame, expands it with one call into fresh memory.
// With a third argument it also writes the content there.
//   start_control FRAME CONTENT_SIZE [OUTPUT]
#include <zstd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const std::size_t frame_size = std::filesystem::file_size(argv[1]);
  const std::size_t size = std::strtoull(argv[2], nullptr, 10);
  char* frame = static_cast<char*>(std::malloc(frame_size));
  char* content = static_cast<char*>(std::malloc(size));
  std::FILE* file = std::fopen(argv[1], "rb");
  if (frame == nullptr || content == nullptr || file == nullptr) return 1;
  if (std::fread(frame, 1, frame_size, file) != frame_size) return 1;
  if (ZSTD_decompress(content, size, frame, frame_size) != size) return 1;
  if (argc == 3) return 0;
  std::FILE* output = std::fopen(argv[3], "wb");
  if (output == nullptr || std::fwrite(content, 1, size, output) != size) return 1;
  return std::fclose(output) == 0 ? 0 : 1;
}
