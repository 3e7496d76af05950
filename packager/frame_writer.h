// Compresses a payload's content into the one Zstandard frame that the installer expands with a
// single call: content size in its header, content checksum behind it, no dictionary.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>

struct FrameOptions {
  int level = 19;        // 1 to 22
  unsigned threads = 1;  // at least 1; changes the time taken and never a byte of the frame
};

inline constexpr int kLowestLevel = 1;
inline constexpr int kHighestLevel = 22;
inline constexpr unsigned kMostThreads = 64;

class FrameWriter {
 public:
  // Creates the file. Exactly `content_size` bytes must follow.
  FrameWriter(const std::filesystem::path& path, std::uint64_t content_size,
              const FrameOptions& options);
  ~FrameWriter();
  FrameWriter(const FrameWriter&) = delete;
  FrameWriter& operator=(const FrameWriter&) = delete;

  void Append(std::string_view bytes);

  // Ends the frame and closes the file. Returns the frame's length in bytes.
  std::uint64_t Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};
