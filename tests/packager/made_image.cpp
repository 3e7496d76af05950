#include "tests/packager/made_image.h"

#include <zstd.h>

namespace {

constexpr std::uint32_t kImageBase = 0x400000;
constexpr std::uint32_t kDataAddress = 0x1000;  // from the base on, as the next
constexpr std::uint32_t kNoteAddress = 0x1000000;
constexpr std::size_t kDataOffset = 0x400;  // in the file
constexpr std::size_t kFileAlignment = 0x200;

std::string Little(std::uint64_t number, std::size_t width) {
  std::string bytes;
  for (std::size_t i = 0; i < width; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
  return bytes;
}
std::string Little32(std::uint64_t number) {
  return Little(number, 4);
}

void FillUp(std::string* bytes, std::size_t alignment) {
  bytes->resize((bytes->size() + alignment - 1) / alignment * alignment, '\0');
}

void Put(std::string* file, std::size_t at, const std::string& bytes) {
  if (file->size() < at + bytes.size()) file->resize(at + bytes.size(), '\0');
  file->replace(at, bytes.size(), bytes);
}

std::string Frame(const std::string& content) {
  std::string frame(ZSTD_compressBound(content.size()), '\0');
  ZSTD_CCtx* context = ZSTD_createCCtx();
  ZSTD_CCtx_setParameter(context, ZSTD_c_checksumFlag, 1);
  frame.resize(ZSTD_compress2(context, frame.data(), frame.size(), content.data(), content.size()));
  ZSTD_freeCCtx(context);
  return frame;
}

// The store as a 32-bit compiler lays it out, and the address of the variable that refers to it.
struct Data {
  std::string bytes;
  std::uint32_t variable = 0;
};

Data MakeData(const MadeImage& made) {
  Data data;
  const auto here = [&data] {
    FillUp(&data.bytes, 4);
    return kImageBase + kDataAddress + static_cast<std::uint32_t>(data.bytes.size());
  };
  std::string content;
  std::string names;
  std::string sizes;
  for (const auto& [name, bytes] : made.entries) {
    content += bytes;
    sizes += Little32(bytes.size());
    names += Little32(here());
    data.bytes += name + '\0';
  }
  const std::string frame = Frame(content);
  const std::uint32_t frame_at = here();
  data.bytes += frame;
  const std::uint32_t names_at = here();
  data.bytes += names;
  const std::uint32_t sizes_at = here();
  data.bytes += sizes;
  const std::uint32_t store_at = here();
  data.bytes += Little32(frame_at) + Little32(frame.size() + made.extra_frame) +
                Little32(made.entries.size() + made.extra_entries) +
                Little32(names_at + made.names_moved) + Little32(sizes_at) + Little32(0);
  data.variable = here();
  data.bytes += Little32(store_at);
  return data;
}

std::string MakeNotes(const MadeImage& made, std::uint32_t variable) {
  std::string notes;
  if (made.other_note_first)
    notes = Little32(4) + Little32(5) + Little32(7) + "GNU" + '\0' + "12345" + std::string(3, '\0');
  notes +=
      Little32(made.note_name.size()) + Little32(4) + Little32(made.note_type) + made.note_name;
  FillUp(&notes, 4);
  const std::uint64_t description = kImageBase + kNoteAddress + notes.size();
  return notes + Little32(variable - description);
}

std::string WindowsFile(const Data& data, const std::string& notes) {
  const std::size_t header = 0x80;
  const std::size_t sections = header + 24 + 224;
  std::string file;
  Put(&file, 0, "MZ");
  Put(&file, 0x3C, Little32(header));
  Put(&file, header, std::string("PE\0\0", 4) + Little(0x14C, 2) + Little(2, 2));
  Put(&file, header + 20, Little(224, 2));
  Put(&file, header + 24, Little(0x10B, 2));
  Put(&file, header + 24 + 28, Little32(kImageBase));
  std::string body = data.bytes;
  FillUp(&body, kFileAlignment);
  const auto section = [](const std::string& name, std::size_t size, std::uint32_t address,
                          std::size_t offset) {
    const std::size_t raw = (size + kFileAlignment - 1) / kFileAlignment * kFileAlignment;
    return name + std::string(8 - name.size(), '\0') + Little32(size) + Little32(address) +
           Little32(raw) + Little32(offset) + std::string(16, '\0');
  };
  Put(&file, sections,
      section(".rdata", data.bytes.size(), kDataAddress, kDataOffset) +
          section(".quirlo", notes.size(), kNoteAddress, kDataOffset + body.size()));
  Put(&file, kDataOffset, body + notes);
  FillUp(&file, kFileAlignment);
  return file;
}

std::string Elf32File(const Data& data, const std::string& notes) {
  const auto segment = [](unsigned type, std::size_t offset, std::uint32_t address,
                          std::size_t size) {
    return Little32(type) + Little32(offset) + Little32(kImageBase + address) +
           Little32(kImageBase + address) + Little32(size) + Little32(size) + Little32(4) +
           Little32(4);
  };
  const std::size_t notes_offset = kDataOffset + data.bytes.size();
  std::string file = std::string(
                         "\x7F"
                         "ELF\1\1\1",
                         7) +
                     std::string(9, '\0');
  file += Little(2, 2) + Little(3, 2) + Little32(1) + Little32(0) + Little32(52) + Little32(0) +
          Little32(0) + Little(52, 2) + Little(32, 2) + Little(3, 2) + std::string(6, '\0');
  file += segment(1, kDataOffset, kDataAddress, data.bytes.size());
  file += segment(1, notes_offset, kNoteAddress, notes.size());
  file += segment(4, notes_offset, kNoteAddress, notes.size());
  Put(&file, kDataOffset, data.bytes + notes);
  return file;
}

}  // namespace

std::string MakeImage(const MadeImage& made) {
  const Data data = MakeData(made);
  const std::string notes = MakeNotes(made, data.variable);
  return made.form == MadeImage::Form::kWindows ? WindowsFile(data, notes) : Elf32File(data, notes);
}
