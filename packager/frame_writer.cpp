#include "packager/frame_writer.h"

#include <zstd.h>

#include <algorithm>
#include <bit>
#include <string>
#include <vector>

#include "packager/file_io.h"
#include "packager/refusal.h"

namespace {

// The largest window that a 32-bit program agrees to read. Content up to that size needs no window
// at all: the frame is then a single segment.
constexpr int kLargestWindowLog = 30;
constexpr int kSmallestWindowLog = 10;

int WindowLogFor(std::uint64_t content_size) {
  const int log = content_size > 1 ? static_cast<int>(std::bit_width(content_size - 1)) : 0;
  return std::clamp(log, kSmallestWindowLog, kLargestWindowLog);
}

// The library's own tables at its highest level see an eighth of a large content and a match every
// 128 bytes far away. These see all of it: a release is packed once and carried by everybody. They
// need 13 times the memory of the content. The library cuts them down to what small content needs.
struct Setting {
  ZSTD_cParameter parameter;
  int above_window_log;
};
constexpr Setting kWholeContentTables[] = {{ZSTD_c_chainLog, 1},  // a binary tree of all positions
                                           {ZSTD_c_hashLog, -1},
                                           {ZSTD_c_ldmHashLog, -3}};
constexpr int kSearchLog = 10;      // 1024 candidates, twice the library's
constexpr int kLdmHashRateLog = 4;  // a far match is looked for every 16 bytes

struct ContextDeleter {
  void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
};

}  // namespace

struct FrameWriter::State {
  State(const std::filesystem::path& path, std::uint64_t content_size, const FrameOptions& options)
      : name(path.string()), file(path), context(ZSTD_createCCtx()), buffer(ZSTD_CStreamOutSize()) {
    if (context == nullptr) throw Refusal(name, "no memory for the compression");
    Set(ZSTD_c_compressionLevel, options.level);
    Set(ZSTD_c_checksumFlag, 1);
    Set(ZSTD_c_contentSizeFlag, 1);
    Set(ZSTD_c_windowLog, WindowLogFor(content_size));
    Set(ZSTD_c_enableLongDistanceMatching, 1);
    if (options.level == kHighestLevel) SearchWholeContent(WindowLogFor(content_size));
    // Without a worker the library compresses the content as one whole, with one or more it cuts
    // it into jobs. The cuts follow from level, window and content size alone, so with at least one
    // worker, always, the frame is the same for any number of them.
    Set(ZSTD_c_nbWorkers, static_cast<int>(std::clamp(options.threads, 1U, kMostThreads)));
    Check(ZSTD_CCtx_setPledgedSrcSize(context.get(), content_size));
  }

  void SearchWholeContent(int window_log) {
    for (const Setting& setting : kWholeContentTables) {
      const ZSTD_bounds bounds = ZSTD_cParam_getBounds(setting.parameter);
      Set(setting.parameter,
          std::clamp(window_log + setting.above_window_log, bounds.lowerBound, bounds.upperBound));
    }
    Set(ZSTD_c_searchLog, kSearchLog);
    Set(ZSTD_c_ldmHashRateLog, kLdmHashRateLog);
  }

  void Set(ZSTD_cParameter parameter, int value) {
    Check(ZSTD_CCtx_setParameter(context.get(), parameter, value));
  }

  std::size_t Check(std::size_t result) const {
    if (ZSTD_isError(result) != 0) {
      throw Refusal(name, std::string("can't be compressed (") + ZSTD_getErrorName(result) + ")");
    }
    return result;
  }

  // One step of the compressor; returns what it still holds back.
  std::size_t Step(ZSTD_inBuffer* input, ZSTD_EndDirective directive) {
    ZSTD_outBuffer output{buffer.data(), buffer.size(), 0};
    const std::size_t left = Check(ZSTD_compressStream2(context.get(), &output, input, directive));
    file.Write(buffer.data(), output.pos);
    length += output.pos;
    return left;
  }

  std::string name;
  OutputFile file;
  std::unique_ptr<ZSTD_CCtx, ContextDeleter> context;
  std::vector<char> buffer;
  std::uint64_t length = 0;
};

FrameWriter::FrameWriter(const std::filesystem::path& path, std::uint64_t content_size,
                         const FrameOptions& options)
    : state_(std::make_unique<State>(path, content_size, options)) {}

FrameWriter::~FrameWriter() = default;

void FrameWriter::Append(std::string_view bytes) {
  ZSTD_inBuffer input{bytes.data(), bytes.size(), 0};
  while (input.pos < input.size) state_->Step(&input, ZSTD_e_continue);
}

std::uint64_t FrameWriter::Finish() {
  ZSTD_inBuffer input{nullptr, 0, 0};
  while (state_->Step(&input, ZSTD_e_end) != 0) {
  }
  state_->file.Close();
  return state_->length;
}
