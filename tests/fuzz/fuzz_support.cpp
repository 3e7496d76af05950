#include "tests/fuzz/fuzz_support.h"

#include <FL/Fl_Text_Buffer.H>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "recognition/check_log.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "tests/support/temp_dir.h"

namespace {

EmbeddedFileStore linked;

}  // namespace

const EmbeddedFileStore& Store = linked;

void Require(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

std::string AllOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

TwoTexts CutAtLineFeed(const std::string& text) {
  const std::size_t feed = text.find('\n');
  if (feed == std::string::npos) return {text, ""};
  return {text.substr(0, feed), text.substr(feed + 1)};
}

FuzzStore::FuzzStore(const std::vector<FuzzEntry>& entries) : entries_(entries) {
  for (const FuzzEntry& entry : entries_) {
    names_.push_back(entry.name.c_str());
    sizes_.push_back(static_cast<std::uint32_t>(entry.content.size()));
    contents_.emplace_back(entry.content.begin(), entry.content.end());
    contents_.back().shrink_to_fit();
    data_.push_back(contents_.back().data());
  }
  ResetEmbeddedFileStore();
  ResetHostSelection();
  linked = {nullptr,       0,           static_cast<std::uint32_t>(entries_.size()), names_.data(),
            sizes_.data(), data_.data()};
}

FuzzStore::~FuzzStore() {
  ResetEmbeddedFileStore();
  ResetHostSelection();
  linked = {};
}

PackedStore::PackedStore(std::vector<std::string> names, std::vector<std::uint32_t> sizes,
                         std::string frame)
    : names_(std::move(names)),
      sizes_(std::move(sizes)),
      frame_(std::move(frame)),
      data_(names_.size()) {
  for (const std::string& name : names_) pointers_.push_back(name.c_str());
  ResetEmbeddedFileStore();
  ResetHostSelection();
  linked = {reinterpret_cast<const unsigned char*>(frame_.data()),
            frame_.size(),
            static_cast<std::uint32_t>(names_.size()),
            pointers_.data(),
            sizes_.data(),
            data_.data()};
}

PackedStore::~PackedStore() {
  ResetEmbeddedFileStore();
  ResetHostSelection();
  linked = {};
}

const std::string& WorkFolder() {
  static const TempDir folder;
  return folder.path();
}

void PutFile(const std::string& path, const std::string& content) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  Require(file != nullptr, "the work folder can be written");
  Require(std::fwrite(content.data(), 1, content.size(), file) == content.size() &&
              std::fclose(file) == 0,
          "the work folder has room");
}

std::string GetFile(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  Require(file != nullptr, "a file of the work folder is still there");
  std::string content;
  char piece[4096];
  for (std::size_t count = 1; count > 0;) {
    count = std::fread(piece, 1, sizeof piece, file);
    content.append(piece, count);
  }
  std::fclose(file);
  return content;
}

int LowestFreeDescriptor() {
  const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(descriptor);
  return descriptor;
}

void StartLog() {
  if (LogBuffer == nullptr) LogBuffer = new Fl_Text_Buffer;
  LogBuffer->text("");
}

std::string LogText() {
  char* text = LogBuffer->text();
  std::string log = text;
  std::free(text);
  return log;
}
