// What the fuzz targets share. A target is one function, LLVMFuzzerTestOneInput, which takes any
// bytes and proves one promise of the program over them; it is linked with libFuzzer to search
// (preset fuzz), and with replay_main.cpp to run its corpus in the ordinary suite.
//
// Every input starts from the same state, so that a file of the corpus means the same alone as in
// the middle of a run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// The entry point by which libFuzzer and the replay know a target. 0, or -1 for an input that is no
// case of the promise and has no place in a corpus.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Ends the process with the promise in words when it doesn't hold, which is what libFuzzer and the
// replay report as a failure.
void Require(bool holds, const char* promise);

// The input as text, and the input cut at its first line feed: what stands before it (all, when
// there is none) and what stands behind.
std::string AllOf(const std::uint8_t* data, std::size_t size);
struct TwoTexts {
  std::string first;
  std::string rest;
};
TwoTexts CutAtLineFeed(const std::string& text);

// A payload without a frame: the linked store's tables point at these texts, each in an allocation
// of exactly its size, so that the sanitizer sees every byte read beyond an entry. The store is
// empty again, and its process-wide state as at the start, when the object goes.
struct FuzzEntry {
  std::string name;
  std::string content;
};
class FuzzStore {
 public:
  explicit FuzzStore(const std::vector<FuzzEntry>& entries);
  ~FuzzStore();
  FuzzStore(const FuzzStore&) = delete;
  FuzzStore& operator=(const FuzzStore&) = delete;

 private:
  std::vector<FuzzEntry> entries_;
  std::vector<const char*> names_;
  std::vector<std::uint32_t> sizes_;
  std::vector<std::vector<unsigned char>> contents_;
  std::vector<const unsigned char*> data_;
};

// A payload as a packager left it: the linked store is these names, sizes and frame, for
// LoadEmbeddedFiles to expand. The store is empty again when the object goes.
class PackedStore {
 public:
  PackedStore(std::vector<std::string> names, std::vector<std::uint32_t> sizes, std::string frame);
  ~PackedStore();
  PackedStore(const PackedStore&) = delete;
  PackedStore& operator=(const PackedStore&) = delete;

 private:
  std::vector<std::string> names_;
  std::vector<std::uint32_t> sizes_;
  std::string frame_;
  std::vector<const char*> pointers_;
  std::vector<const unsigned char*> data_;
};

// A folder for the files of this process, without a trailing separator, removed at its end. It lies
// where TMPDIR says; scripts/fuzz names a folder in memory.
const std::string& WorkFolder();

// Writes a file whose folder exists; reads one that exists. Plain calls, for speed.
void PutFile(const std::string& path, const std::string& content);
std::string GetFile(const std::string& path);

// The number that the next opened file would get. It grows when something stays open.
int LowestFreeDescriptor();

// The check log of the program, made on the first call: empties it, and gives its text.
void StartLog();
std::string LogText();
