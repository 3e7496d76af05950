// Compresses a payload's content into the one Zstandard frame that the installer expands with a
// single call: content size in its header, content checksum behind it, no dictionary.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

struct FrameOptions {
  int level = 19;        // 1 to 22
  unsigned threads = 1;  // at least 1; changes the time taken and never a byte of the frame
  // Called again and again while the frame is made, also while Finish waits, with the bytes of the
  // content that are compressed so far. What it throws ends the work and leaves Append or Finish.
  std::function<void(std::uint64_t compressed)> on_step = {};
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

// The version of the Zstandard library that compresses, as "1.5.7". Another one makes other frames
// of the same content; any from 1.5.4 on expands them all.
std::string ZstandardVersion();
