#include "packager/installer_file.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "packager/file_io.h"
#include "packager/program_image.h"

namespace {

// The note that each installer carries; cmake/payload_frame_*.S.in write it. Its description is the
// distance from itself to the variable Store.
constexpr std::string_view kNoteName("Quirloduino\0", 12);
constexpr std::uint32_t kNoteType = 1;
constexpr std::uint32_t kDescriptionSize = 4;

struct NoteHeader {
  std::uint32_t name_size;
  std::uint32_t description_size;
  std::uint32_t type;
};

// Notes and their parts are filled up to four bytes. (Those that are filled up to eight stand in
// segments of their own, and none of ours is among them.)
constexpr std::size_t kNoteAlignment = 4;

std::uint64_t FilledUp(std::uint64_t size) {
  return (size + kNoteAlignment - 1) / kNoteAlignment * kNoteAlignment;
}

// No name that the packager lets pass comes near it: the longest path of Windows is 260 bytes, and
// an alias has two.
constexpr std::size_t kMostNameBytes = 4096;

// The address of the variable Store by the note of ours in `piece`, if it has one.
std::optional<std::uint64_t> FindStore(const ProgramImage::Piece& piece) {
  std::uint64_t at = 0;
  NoteHeader note{};
  while (at + sizeof note <= piece.bytes.size()) {
    std::memcpy(&note, piece.bytes.data() + at, sizeof note);
    const std::uint64_t name = at + sizeof note;
    const std::uint64_t description = name + FilledUp(note.name_size);
    const std::uint64_t end = description + FilledUp(note.description_size);
    if (end > piece.bytes.size()) break;
    if (piece.bytes.substr(name, note.name_size) == kNoteName && note.type == kNoteType &&
        note.description_size == kDescriptionSize) {
      std::int32_t distance = 0;
      std::memcpy(&distance, piece.bytes.data() + description, sizeof distance);
      return piece.address + description + static_cast<std::uint64_t>(std::int64_t{distance});
    }
    at = end;
  }
  return std::nullopt;
}

// An EmbeddedFileStore as the installer's compiler laid it out: what is a pointer or a size_t there
// has the width of that program's pointers, not of ours.
struct StoreInImage {
  std::uint64_t frame;
  std::uint64_t frame_length;
  std::uint32_t entry_count;
  std::uint64_t names;
  std::uint64_t sizes;
};

StoreInImage ReadStore(const ProgramImage& image) {
  std::optional<std::uint64_t> variable;
  for (const ProgramImage::Piece& piece : image.notes()) {
    if (!variable) variable = FindStore(piece);
  }
  if (!variable) image.Refuse("is no Quirloduino installer");
  const std::uint64_t width = image.pointer_size();
  const std::uint64_t store = image.Pointer(*variable);
  return {image.Pointer(store), image.Word(store + width), image.Number32(store + 2 * width),
          image.Pointer(store + 3 * width), image.Pointer(store + 4 * width)};
}

PayloadTable ReadTable(const ProgramImage& image, const StoreInImage& store) {
  PayloadTable table{store.frame_length, 0, {}};
  const std::uint64_t width = image.pointer_size();
  // Asked for as wholes first, so that a damaged count is refused before memory is taken for it.
  image.Bytes(store.names, store.entry_count * width);
  image.Bytes(store.sizes, store.entry_count * std::uint64_t{sizeof(std::uint32_t)});
  if (store.entry_count == 0) image.Refuse("carries no entry");
  table.entries.reserve(store.entry_count);
  for (std::uint64_t i = 0; i < store.entry_count; ++i) {
    const std::uint64_t name = image.Pointer(store.names + i * width);
    const std::uint32_t size = image.Number32(store.sizes + i * sizeof(std::uint32_t));
    table.entries.push_back({std::string(image.Text(name, kMostNameBytes)), size});
    table.content_size += size;
  }
  return table;
}

}  // namespace

PayloadTable ReadInstallerTable(const std::filesystem::path& installer) {
  const std::string name = installer.string();
  const std::string file = ReadWholeFile(installer, name);
  const ProgramImage image(name, file);
  return ReadTable(image, ReadStore(image));
}

PackedPayload ReadInstaller(const std::filesystem::path& installer) {
  const std::string name = installer.string();
  return ReadInstaller(name, ReadWholeFile(installer, name));
}

PackedPayload ReadInstaller(const std::string& name, std::string_view file) {
  const ProgramImage image(name, file);
  const StoreInImage store = ReadStore(image);
  return ExpandPayload(name, ReadTable(image, store), image.Bytes(store.frame, store.frame_length));
}
