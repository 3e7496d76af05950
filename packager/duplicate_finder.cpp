#include "packager/duplicate_finder.h"

#include <map>
#include <numeric>

#include "packager/entry_names.h"
#include "packager/file_io.h"
#include "packager/progress_bar.h"
#include "recognition/cksum.h"

namespace {

using Indices = std::vector<std::size_t>;

std::string ReadContent(const std::filesystem::path& root, const PayloadFile& file) {
  return ReadWholeFile(root / file.name, file.name, file.size);
}

std::uint32_t ChecksumOf(const std::filesystem::path& root, const PayloadFile& file) {
  std::uint32_t crc = 0;
  ReadInPieces(root / file.name, file.name, file.size, [&crc](std::string_view piece) {
    crc = CksumUpdate(crc, piece.data(), piece.size());
  });
  return CksumFinish(crc, file.size);
}

// No content can hold a file of this size, so there is no use in reading it.
constexpr std::uint64_t kTooLarge = std::uint64_t{1} << 32;

// The files that can have a twin at all, by size and in table order.
std::map<std::uint64_t, Indices> BySize(const std::vector<PayloadFile>& files) {
  std::map<std::uint64_t, Indices> by_size;
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (files[i].size > 0 && files[i].size < kTooLarge && files[i].name.starts_with(kArmFolder)) {
      by_size[files[i].size].push_back(i);
    }
  }
  return by_size;
}

}  // namespace

std::vector<std::size_t> FindDuplicates(const std::filesystem::path& root,
                                        const std::vector<PayloadFile>& files) {
  Indices first_of(files.size());
  std::iota(first_of.begin(), first_of.end(), std::size_t{0});
  const std::map<std::uint64_t, Indices> by_size = BySize(files);
  std::uint64_t total = 0;
  for (const auto& [size, candidates] : by_size) {
    if (candidates.size() > 1) total += size * candidates.size();
  }
  ProgressBar progress("Looking for files that are the same", total);
  for (const auto& [size, candidates] : by_size) {
    if (candidates.size() < 2) continue;
    std::map<std::uint32_t, Indices> originals;  // by checksum; more than one in a collision
    for (const std::size_t index : candidates) {
      Indices& same_checksum = originals[ChecksumOf(root, files[index])];
      for (const std::size_t original : same_checksum) {
        if (ReadContent(root, files[original]) != ReadContent(root, files[index])) continue;
        first_of[index] = original;
        break;
      }
      if (first_of[index] == index) same_checksum.push_back(index);
      progress.Advance(size);
    }
  }
  return first_of;
}
