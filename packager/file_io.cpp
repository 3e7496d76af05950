#include "packager/file_io.h"

#include <algorithm>
#include <cerrno>
#include <vector>

#include "packager/interruption.h"
#include "packager/refusal.h"

namespace {

constexpr std::size_t kPieceSize = std::size_t{1} << 20;

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using InputFile = std::unique_ptr<std::FILE, Closer>;

InputFile OpenForReading(const std::filesystem::path& path, std::string_view name) {
  errno = 0;
  InputFile file(std::fopen(path.string().c_str(), "rb"));
  if (file == nullptr) throw Refusal(name, WithReason("can't be opened", errno));
  return file;
}

// Reads until the end and returns the count of bytes. `expected` of them are likely: most files are
// far smaller than a piece, and to clear a whole one for each takes longer than to read them.
std::uintmax_t ReadToEnd(std::FILE* file, std::string_view name, std::uintmax_t expected,
                         const std::function<void(std::string_view)>& take) {
  std::vector<char> buffer(std::clamp<std::uintmax_t>(expected, 1, kPieceSize));
  std::uintmax_t total = 0;
  for (;;) {
    StopIfInterrupted();
    errno = 0;
    const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), file);
    if (std::ferror(file) != 0) throw Refusal(name, WithReason("can't be read", errno));
    if (got == 0) return total;
    total += got;
    take({buffer.data(), got});
  }
}

}  // namespace

void ReadInPieces(const std::filesystem::path& path, std::string_view name, std::uintmax_t size,
                  const std::function<void(std::string_view)>& take) {
  const InputFile file = OpenForReading(path, name);
  if (ReadToEnd(file.get(), name, size, take) != size) {
    throw Refusal(name, "the file's length changed while it was being packed");
  }
}

std::string ReadWholeFile(const std::filesystem::path& path, std::string_view name) {
  const InputFile file = OpenForReading(path, name);
  std::string content;
  ReadToEnd(file.get(), name, kPieceSize, [&content](std::string_view piece) { content += piece; });
  return content;
}

std::string ReadWholeFile(const std::filesystem::path& path, std::string_view name,
                          std::uintmax_t size) {
  std::string content;
  content.reserve(size);
  ReadInPieces(path, name, size, [&content](std::string_view piece) { content += piece; });
  return content;
}

void PrintText(const std::string& text) {
  errno = 0;
  if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
    throw Refusal("standard output", WithReason("can't be written", errno));
  }
}

OutputFile::OutputFile(const std::filesystem::path& path) : name_(path.string()) {
  errno = 0;
  file_.reset(std::fopen(name_.c_str(), "wb"));
  if (file_ == nullptr) throw Refusal(name_, WithReason("can't be created", errno));
}

void OutputFile::Write(const void* bytes, std::size_t count) {
  errno = 0;
  if (std::fwrite(bytes, 1, count, file_.get()) != count) {
    throw Refusal(name_, WithReason("can't be written", errno));
  }
}

void OutputFile::Close() {
  errno = 0;
  if (std::fclose(file_.release()) != 0) {
    throw Refusal(name_, WithReason("can't be written", errno));
  }
}
