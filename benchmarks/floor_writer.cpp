// The floor of the silent install: expands the frame as the program does, then writes each file
// without asking anything. Folders that it made it remembers. TABLE is what list_writes prints.
//   floor_writer FRAME CONTENT_SIZE TABLE FOLDER
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zstd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unordered_set>

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  const std::size_t frame_size = std::filesystem::file_size(argv[1]);
  const std::size_t size = std::strtoull(argv[2], nullptr, 10);
  char* frame = static_cast<char*>(std::malloc(frame_size));
  char* content = static_cast<char*>(std::malloc(size));
  const int input = open(argv[1], O_RDONLY);
  if (read(input, frame, frame_size) != static_cast<ssize_t>(frame_size)) return 1;
  if (ZSTD_decompress(content, size, frame, frame_size) != size) return 1;

  std::ifstream table(argv[3]);
  std::unordered_set<std::string> folders;
  std::size_t offset = 0;
  std::size_t length = 0;
  std::string path;
  while (table >> offset >> length && table.get() == '\t' && std::getline(table, path)) {
    path.insert(0, argv[4]);
    const std::size_t last = path.rfind('/');
    if (folders.insert(path.substr(0, last)).second) {
      for (std::size_t slash = path.find('/', 1); slash <= last;
           slash = path.find('/', slash + 1)) {
        mkdir(path.substr(0, slash).c_str(), 0777);
      }
    }
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (write(file, content + offset, length) != static_cast<ssize_t>(length)) return 1;
    close(file);
  }
  return table.eof() ? 0 : 1;
}
