// The files that the installer carries in its own image: one Zstandard frame, the tables that
// name its entries, and the operations on entry names. The payload is expanded once, at program
// start, into one buffer that lives until the process ends. Nothing is read from beside the
// executable, and nothing here looks at the host.
//
// The format is described in docs/store_format.md. Results: true or false, a position or null, an
// index or -1; nothing here sets an error text.
#pragma once

#include <cstddef>
#include <cstdint>

#include "store/entry_names.h"

// The packed payload as it stands in the image. Three parallel arrays are the whole data model: an
// entry is its name, size and data pointer at one index. All but the data table are constant.
struct EmbeddedFileStore {
  const unsigned char* frame;  // exactly one frame: content size in its header, no dictionary
  std::size_t frame_length;    // bytes of the frame
  std::uint32_t entry_count;   // length of each array
  const char* const* names;    // relative paths in printable ASCII; valid for the whole run
  const std::uint32_t* sizes;  // bytes; 0 for an alias, which says nothing of what it installs
  const unsigned char** data;  // filled by LoadEmbeddedFiles; the bytes have no terminator
};

// The store that is linked into this program. Every part reads names, sizes and data straight from
// its arrays and may keep pointers into them. The packager generates it; tests link their own.
extern const EmbeddedFileStore& Store;

// One entry, as a convenience for a caller that needs the whole triple.
struct PayloadEntry {
  const char* name;
  std::uint32_t size;
  const unsigned char* data;
};
inline PayloadEntry EntryAt(std::uint32_t index) {
  return {Store.names[index], Store.sizes[index], Store.data[index]};
}

// Expands the frame with one call into one allocated block and fills the data table: entry i
// starts at the sum of the sizes before it, without gaps. The sizes are summed in 32 bits, so the
// content must be below 4 GiB. False when the block can't be had or the frame doesn't expand to
// exactly the sum of the sizes; the data table is then of no use and the program must end.
bool LoadEmbeddedFiles();

// The first index with exactly this name, or -1. Linear, without a cache.
int FindEntryByName(const char* name);

// Whether `text` begins with the selected release's name (HostVersion). No separator is compared,
// since the question is put both ways: does this entry belong to the release, and is the release
// the one of this literal. So no release's name may be the beginning of another's. With no release
// selected every text qualifies.
bool InSelectedRelease(const char* text);

// The supported releases, ascending, joined by ", ": at most 255 characters. A release is what
// stands before kCriteriaFileEnding in an entry's name. Text and list are built at the first call,
// list and texts then live until the process ends.
const char* SupportedVersions();

// The length of the list, at most kMostReleases, and its texts counted from 0; an index at or
// beyond the count gives an empty text. Both build the list if need be.
std::size_t SupportedVersionCount();
const char* SupportedVersionAt(std::size_t index);

// Forgets the expanded payload (and frees it) and the list of releases, for tests that change the
// store under the program.
void ResetEmbeddedFileStore();
