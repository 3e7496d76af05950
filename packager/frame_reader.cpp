#include "packager/frame_reader.h"

#include <zstd.h>

#include "packager/refusal.h"

namespace {

// The frame header's descriptor follows the four bytes of the magic number.
constexpr std::size_t kDescriptorPosition = 4;
constexpr unsigned kChecksumFlag = 1U << 2;

bool HasChecksum(std::string_view frame) {
  return (static_cast<unsigned char>(frame[kDescriptorPosition]) & kChecksumFlag) != 0;
}

}  // namespace

std::string ExpandFrame(const std::string& name, std::string_view frame,
                        std::uint64_t content_size) {
  if (ZSTD_findFrameCompressedSize(frame.data(), frame.size()) != frame.size() ||
      frame.size() <= kDescriptorPosition) {
    throw Refusal(name, "is not exactly one Zstandard frame");
  }
  if (ZSTD_getDictID_fromFrame(frame.data(), frame.size()) != 0) {
    throw Refusal(name, "the frame needs a dictionary");
  }
  if (!HasChecksum(frame)) throw Refusal(name, "the frame has no content checksum");
  if (ZSTD_getFrameContentSize(frame.data(), frame.size()) != content_size) {
    throw Refusal(
        name, "the frame's header must declare the content size " + std::to_string(content_size));
  }
  std::string content(content_size, '\0');
  const std::size_t got =
      ZSTD_decompress(content.data(), content.size(), frame.data(), frame.size());
  if (ZSTD_isError(got) != 0) {
    throw Refusal(name, std::string("can't be expanded (") + ZSTD_getErrorName(got) + ")");
  }
  if (got != content_size) throw Refusal(name, "expands to another size than it declares");
  return content;
}
