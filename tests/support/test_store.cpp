#include "tests/support/test_store.h"

#include <zstd.h>

#include <stdexcept>
#include <utility>

#include "store/embedded_file_store.h"
#include "store/host_selection.h"

namespace {

EmbeddedFileStore linked;

}  // namespace

const EmbeddedFileStore& Store = linked;

std::string PackFrame(const std::string& content) {
  ZSTD_CCtx* context = ZSTD_createCCtx();
  ZSTD_CCtx_setParameter(context, ZSTD_c_checksumFlag, 1);
  std::string frame(ZSTD_compressBound(content.size()), '\0');
  const std::size_t length =
      ZSTD_compress2(context, frame.data(), frame.size(), content.data(), content.size());
  ZSTD_freeCCtx(context);
  if (ZSTD_isError(length) != 0) throw std::runtime_error(ZSTD_getErrorName(length));
  frame.resize(length);
  return frame;
}

TestStore::TestStore(std::vector<TestEntry> entries, bool load) : entries_(std::move(entries)) {
  for (const TestEntry& entry : entries_) {
    names_.push_back(entry.name.c_str());
    sizes_.push_back(static_cast<std::uint32_t>(entry.content.size()));
    content_ += entry.content;
  }
  data_.resize(entries_.size());
  ResetEmbeddedFileStore();
  ResetHostSelection();
  linked.entry_count = static_cast<std::uint32_t>(entries_.size());
  linked.names = names_.data();
  linked.sizes = sizes_.data();
  linked.data = data_.data();
  SetFrame(PackFrame(content_));
  if (load && !LoadEmbeddedFiles()) throw std::runtime_error("the test's store does not load");
}

TestStore::~TestStore() {
  ResetEmbeddedFileStore();
  ResetHostSelection();
  linked = {};
}

void TestStore::SetFrame(std::string frame) {
  frame_ = std::move(frame);
  linked.frame = reinterpret_cast<const unsigned char*>(frame_.data());
  linked.frame_length = frame_.size();
}
