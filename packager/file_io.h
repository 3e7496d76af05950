// Reading and writing whole files, with every failure as a Refusal that names the file.
#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

// Passes a file's bytes to `take` in pieces of at most 1 MiB. Messages call the file `name`. Throws
// when it can't be read, or when it doesn't yield exactly `size` bytes: then somebody changed it
// after its size was taken, and the tables would not fit the frame.
void ReadInPieces(const std::filesystem::path& path, std::string_view name, std::uintmax_t size,
                  const std::function<void(std::string_view piece)>& take);

// All bytes of a file; the second form of the first, which also throws unless there are `size`.
std::string ReadWholeFile(const std::filesystem::path& path, std::string_view name);
std::string ReadWholeFile(const std::filesystem::path& path, std::string_view name,
                          std::uintmax_t size);

// Writes to the standard output, which may be a full disk.
void PrintText(const std::string& text);

// A file being written. Close must be called to know that every byte has arrived; a file that is
// destroyed without it is closed all the same and holds whatever arrived.
class OutputFile {
 public:
  // Creates or empties the file.
  explicit OutputFile(const std::filesystem::path& path);

  void Write(const void* bytes, std::size_t count);
  void Close();

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::string name_;
  std::unique_ptr<std::FILE, Closer> file_;
};
