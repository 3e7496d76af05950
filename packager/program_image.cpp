#include "packager/program_image.h"

#include <elf.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <type_traits>
#include <utility>

#include "packager/refusal.h"

// Both formats are little-endian here, and so is every machine that the tools are built on.
static_assert(std::endian::native == std::endian::little);

namespace {

struct Elf32 {
  using Header = Elf32_Ehdr;
  using Segment = Elf32_Phdr;
  using Dynamic = Elf32_Dyn;
  using Relocation = Elf32_Rela;
  static unsigned Type(const Relocation& relocation) { return ELF32_R_TYPE(relocation.r_info); }
};

struct Elf64 {
  using Header = Elf64_Ehdr;
  using Segment = Elf64_Phdr;
  using Dynamic = Elf64_Dyn;
  using Relocation = Elf64_Rela;
  static unsigned Type(const Relocation& relocation) {
    return static_cast<unsigned>(ELF64_R_TYPE(relocation.r_info));
  }
};

// The relocation by which a machine's loader adds the load address to a pointer; 0 for a machine
// whose programs keep the pointer's value in its place.
unsigned RelativeRelocation(unsigned machine) {
  if (machine == EM_X86_64) return R_X86_64_RELATIVE;
  if (machine == EM_AARCH64) return R_AARCH64_RELATIVE;
  return 0;
}

// Offsets in a Windows program's headers.
constexpr std::uint64_t kPeHeaderPointer = 0x3C;
constexpr std::uint64_t kSectionCount = 6;  // from the signature on, as the next three
constexpr std::uint64_t kOptionalHeaderSize = 20;
constexpr std::uint64_t kOptionalHeader = 24;
constexpr std::uint64_t kImageBase32 = kOptionalHeader + 28;
constexpr std::uint64_t kImageBase64 = kOptionalHeader + 24;
constexpr std::uint16_t kPe32 = 0x10B;
constexpr std::uint16_t kPe32Plus = 0x20B;

struct PeSection {
  char name[8];
  std::uint32_t virtual_size;
  std::uint32_t virtual_address;
  std::uint32_t raw_size;
  std::uint32_t raw_offset;
  std::uint32_t unused[3];
  std::uint32_t characteristics;
};
static_assert(sizeof(PeSection) == 40);

std::string_view NameOf(const PeSection& section) {
  return {section.name, strnlen(section.name, sizeof section.name)};
}

}  // namespace

ProgramImage::ProgramImage(std::string name, std::string_view file)
    : name_(std::move(name)), file_(file) {
  const bool is_elf =
      file.starts_with(ELFMAG) && file.size() > EI_DATA && file[EI_DATA] == ELFDATA2LSB;
  if (is_elf && file[EI_CLASS] == ELFCLASS64) {
    ReadElf<Elf64>();
  } else if (is_elf && file[EI_CLASS] == ELFCLASS32) {
    ReadElf<Elf32>();
  } else if (file.starts_with("MZ")) {
    ReadPe();
  } else {
    Refuse("is no program");
  }
}

void ProgramImage::Refuse(std::string_view why) const {
  throw Refusal(name_, why);
}

std::string_view ProgramImage::FileBytes(std::uint64_t offset, std::uint64_t size) const {
  if (offset > file_.size() || size > file_.size() - offset) Refuse("is a program cut short");
  return file_.substr(offset, size);
}

template <class T>
T ProgramImage::At(std::uint64_t offset) const {
  static_assert(std::is_trivially_copyable_v<T>);
  T value;
  std::memcpy(&value, FileBytes(offset, sizeof value).data(), sizeof value);
  return value;
}

void ProgramImage::AddSegment(std::uint64_t address, std::uint64_t offset, std::uint64_t size) {
  segments_.push_back({address, FileBytes(offset, size)});
}

template <class Elf>
void ProgramImage::ReadElf() {
  const auto header = At<typename Elf::Header>(0);
  pointer_size_ = sizeof header.e_entry;
  if (header.e_type != ET_EXEC && header.e_type != ET_DYN) Refuse("is no program");
  if (header.e_phentsize != sizeof(typename Elf::Segment)) Refuse("is a damaged program");
  std::vector<typename Elf::Segment> dynamic;
  for (unsigned i = 0; i < header.e_phnum; ++i) {
    const auto segment = At<typename Elf::Segment>(
        header.e_phoff + std::uint64_t{i} * sizeof(typename Elf::Segment));
    if (segment.p_type == PT_LOAD) AddSegment(segment.p_vaddr, segment.p_offset, segment.p_filesz);
    if (segment.p_type == PT_NOTE) {
      notes_.push_back({segment.p_vaddr, FileBytes(segment.p_offset, segment.p_filesz)});
    }
    if (segment.p_type == PT_DYNAMIC) dynamic.push_back(segment);
  }
  for (const auto& segment : dynamic) {
    ReadRelocations<Elf>(segment.p_vaddr, segment.p_filesz, RelativeRelocation(header.e_machine));
  }
}

template <class Elf>
void ProgramImage::ReadRelocations(std::uint64_t dynamic, std::uint64_t size, unsigned relative) {
  using Dynamic = typename Elf::Dynamic;
  using Relocation = typename Elf::Relocation;
  std::uint64_t table = 0;
  std::uint64_t table_size = 0;
  const std::string_view entries = Bytes(dynamic, size);
  for (std::size_t at = 0; at + sizeof(Dynamic) <= entries.size(); at += sizeof(Dynamic)) {
    Dynamic entry;
    std::memcpy(&entry, entries.data() + at, sizeof entry);
    if (entry.d_tag == DT_NULL) break;
    if (entry.d_tag == DT_RELA) table = entry.d_un.d_ptr;
    if (entry.d_tag == DT_RELASZ) table_size = entry.d_un.d_val;
  }
  if (relative == 0 || table_size == 0) return;
  const std::string_view relocations = Bytes(table, table_size);
  for (std::size_t at = 0; at + sizeof(Relocation) <= relocations.size();
       at += sizeof(Relocation)) {
    Relocation relocation;
    std::memcpy(&relocation, relocations.data() + at, sizeof relocation);
    if (Elf::Type(relocation) == relative) {
      relocated_[relocation.r_offset] = static_cast<std::uint64_t>(relocation.r_addend);
    }
  }
}

void ProgramImage::ReadPe() {
  const std::uint64_t header = At<std::uint32_t>(kPeHeaderPointer);
  if (FileBytes(header, 4) != std::string_view("PE\0\0", 4)) Refuse("is no program for Windows");
  const auto magic = At<std::uint16_t>(header + kOptionalHeader);
  if (magic != kPe32 && magic != kPe32Plus) Refuse("is no program for Windows");
  pointer_size_ = magic == kPe32 ? 4 : 8;
  const std::uint64_t base = magic == kPe32 ? At<std::uint32_t>(header + kImageBase32)
                                            : At<std::uint64_t>(header + kImageBase64);
  const auto count = At<std::uint16_t>(header + kSectionCount);
  const std::uint64_t first =
      header + kOptionalHeader + At<std::uint16_t>(header + kOptionalHeaderSize);
  for (unsigned i = 0; i < count; ++i) {
    const auto section = At<PeSection>(first + std::uint64_t{i} * sizeof(PeSection));
    // A section's end in the file is filled up; what lies beyond its size isn't loaded.
    const std::uint64_t size = std::min(section.virtual_size, section.raw_size);
    AddSegment(base + section.virtual_address, section.raw_offset, size);
    if (NameOf(section) == kNoteSection) notes_.push_back(segments_.back());
  }
}

std::string_view ProgramImage::From(std::uint64_t address) const {
  for (const Piece& segment : segments_) {
    if (address >= segment.address && address - segment.address < segment.bytes.size()) {
      return segment.bytes.substr(address - segment.address);
    }
  }
  return {};
}

std::string_view ProgramImage::Bytes(std::uint64_t address, std::uint64_t size) const {
  const std::string_view bytes = From(address);
  if (size > bytes.size()) Refuse("points at bytes that it doesn't hold");
  return bytes.substr(0, size);
}

std::string_view ProgramImage::Text(std::uint64_t address, std::size_t most) const {
  const std::string_view bytes = From(address).substr(0, most);
  const std::size_t end = bytes.find('\0');
  if (end == std::string_view::npos) Refuse("holds a text without an end");
  return bytes.substr(0, end);
}

std::uint32_t ProgramImage::Number32(std::uint64_t address) const {
  std::uint32_t number = 0;
  std::memcpy(&number, Bytes(address, sizeof number).data(), sizeof number);
  return number;
}

std::uint64_t ProgramImage::Word(std::uint64_t address) const {
  std::uint64_t word = 0;
  std::memcpy(&word, Bytes(address, pointer_size_).data(), pointer_size_);
  return word;
}

std::uint64_t ProgramImage::Pointer(std::uint64_t address) const {
  const auto relocated = relocated_.find(address);
  return relocated != relocated_.end() ? relocated->second : Word(address);
}
