#include "packager/frame_writer.h"

#define ZSTD_STATIC_LINKING_ONLY  // for ZSTD_getFrameProgression
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

// At its highest level the library is given the content in halves, which two processors compress
// side by side. Each half still looks for far matches in all of the content, so the cut costs a
// fifth of a per cent of the frame's size. More pieces would cost more, and one alone takes half as
// long again.
constexpr std::uint64_t kPiecesAtHighestLevel = 2;

int PieceSizeFor(std::uint64_t content_size) {
  const ZSTD_bounds bounds = ZSTD_cParam_getBounds(ZSTD_c_jobSize);
  const std::uint64_t size = (content_size + kPiecesAtHighestLevel - 1) / kPiecesAtHighestLevel;
  return static_cast<int>(std::min(size, static_cast<std::uint64_t>(bounds.upperBound)));
}

struct ContextDeleter {
  void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
};

// To free a compressor is to wait for what its threads are at, which takes minutes at the highest
// level. A frame that isn't finished is one that a failure or an interruption cut off, so its
// compressor is kept until the process ends.
void KeepUntilTheEnd(ZSTD_CCtx* context) {
  static auto& kept = *new std::vector<ZSTD_CCtx*>;
  kept.push_back(context);
}

}  // namespace

struct FrameWriter::State {
  State(const std::filesystem::path& path, std::uint64_t content_size, const FrameOptions& asked)
      : options(asked),
        name(path.string()),
        file(path),
        context(ZSTD_createCCtx()),
        buffer(ZSTD_CStreamOutSize()) {
    if (context == nullptr) throw Refusal(name, "no memory for the compression");
    Set(ZSTD_c_compressionLevel, options.level);
    Set(ZSTD_c_checksumFlag, 1);
    Set(ZSTD_c_contentSizeFlag, 1);
    Set(ZSTD_c_windowLog, WindowLogFor(content_size));
    Set(ZSTD_c_enableLongDistanceMatching, 1);
    // Without a worker the library compresses the content as one whole, with one or more it cuts
    // it into jobs. The cuts follow from level, window and content size alone, so with at least one
    // worker, always, the frame is the same for any number of them.
    Set(ZSTD_c_nbWorkers, static_cast<int>(std::clamp(options.threads, 1U, kMostThreads)));
    if (options.level == kHighestLevel) Set(ZSTD_c_jobSize, PieceSizeFor(content_size));
    Check(ZSTD_CCtx_setPledgedSrcSize(context.get(), content_size));
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
    if (options.on_step) options.on_step(ZSTD_getFrameProgression(context.get()).consumed);
    return left;
  }

  FrameOptions options;
  std::string name;
  OutputFile file;
  std::unique_ptr<ZSTD_CCtx, ContextDeleter> context;
  std::vector<char> buffer;
  std::uint64_t length = 0;
  bool finished = false;
};

FrameWriter::FrameWriter(const std::filesystem::path& path, std::uint64_t content_size,
                         const FrameOptions& options)
    : state_(std::make_unique<State>(path, content_size, options)) {}

FrameWriter::~FrameWriter() {
  if (!state_->finished) KeepUntilTheEnd(state_->context.release());
}

std::string ZstandardVersion() {
  return ZSTD_versionString();
}

void FrameWriter::Append(std::string_view bytes) {
  ZSTD_inBuffer input{bytes.data(), bytes.size(), 0};
  while (input.pos < input.size) state_->Step(&input, ZSTD_e_continue);
}

std::uint64_t FrameWriter::Finish() {
  ZSTD_inBuffer input{nullptr, 0, 0};
  while (state_->Step(&input, ZSTD_e_end) != 0) {
  }
  state_->file.Close();
  state_->finished = true;
  return state_->length;
}
