// precompile_helper CORE_FOLDER BUILD_FOLDER: runs before a sketch is built. The IDE keeps its
// build folder between runs; the images of an earlier build are taken out of it, so that what can
// be sent to a board after a build that failed is nothing, and never the program before. Exit
// status 0, or 1 with the reason when the core isn't there or an image stays.
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

int Fail(const std::string& reason) {
  std::fprintf(stderr, "precompile_helper: %s\n", reason.c_str());
  return 1;
}

bool IsImage(const fs::path& path) {
  return path.extension() == ".elf" || path.extension() == ".hex";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return Fail("usage: precompile_helper CORE_FOLDER BUILD_FOLDER");
  const fs::path core = argv[1];
  std::error_code error;
  if (!fs::is_regular_file(core / "Arduino.h", error))
    return Fail("no core of a board in " + core.string());

  std::vector<fs::path> images;
  for (fs::directory_iterator at(argv[2], error), end; !error && at != end; at.increment(error))
    if (IsImage(at->path())) images.push_back(at->path());
  for (const fs::path& image : images)
    if (!fs::remove(image, error)) return Fail("can't remove " + image.string());
  return 0;
}
