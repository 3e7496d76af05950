// A payload made in the test itself, in the place of the one that a program has linked in. A test
// executable links exactly one of the two: the target test_store, or a packed store of
// cmake/PayloadStore.cmake.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct TestEntry {
  std::string name;
  std::string content;
};

// Makes `entries` the linked store, in the given order and without any rule: names, orders and
// counts that no packager would accept are welcome. The frame is packed and expanded by
// LoadEmbeddedFiles at once unless `load` is false. All of it goes away with the object; the store
// is empty before and after, and all process-wide state of the program is as at its start.
class TestStore {
 public:
  explicit TestStore(std::vector<TestEntry> entries, bool load = true);
  ~TestStore();
  TestStore(const TestStore&) = delete;
  TestStore& operator=(const TestStore&) = delete;

  // The frame as it stands, and another one in its place (not loaded).
  const std::string& frame() const { return frame_; }
  void SetFrame(std::string frame);

  // Another size of an entry than its content has (not loaded).
  void SetSize(std::size_t index, std::uint32_t size) { sizes_[index] = size; }

  // All contents end to end.
  const std::string& content() const { return content_; }

 private:
  std::vector<TestEntry> entries_;
  std::string content_;
  std::string frame_;
  std::vector<const char*> names_;
  std::vector<std::uint32_t> sizes_;
  std::vector<const unsigned char*> data_;
};

// One frame with the content size in its header and a content checksum, as the packager makes it.
std::string PackFrame(const std::string& content);
