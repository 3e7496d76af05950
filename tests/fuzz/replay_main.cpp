// Runs a target over the files and folders that are named, each file once: the corpus in the
// ordinary suite, or one input by hand. Names each file before its run, so that the last name in
// the output is the one that failed. Exit status 0, or 2 when there was nothing to run.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_support.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

std::vector<std::string> FilesAt(const std::string& path) {
  if (!fs::is_directory(path)) return {path};
  std::vector<std::string> files;
  for (const auto& entry : fs::directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const std::string& file : FilesAt(argv[i])) {
      std::printf("%s\n", file.c_str());
      std::fflush(stdout);
      const std::string input = ReadFile(file);
      // Of exactly its size and without a terminator, as libFuzzer gives it.
      const std::vector<std::uint8_t> bytes(input.begin(), input.end());
      LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
      ++count;
    }
  }
  if (count == 0) std::fprintf(stderr, "no input named\n");
  return count == 0 ? 2 : 0;
}
