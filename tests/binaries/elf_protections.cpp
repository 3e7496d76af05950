#include "tests/binaries/elf_protections.h"

#include <elf.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "tests/support/temp_dir.h"

namespace {

// A record of the file, copied out so that its place needs no alignment.
template <typename Record>
Record At(const std::string& file, std::size_t offset) {
  if (offset > file.size() || file.size() - offset < sizeof(Record)) {
    throw std::runtime_error("a header lies outside of the file");
  }
  Record record;
  std::memcpy(&record, file.data() + offset, sizeof record);
  return record;
}

template <typename Record>
std::vector<Record> Table(const std::string& file, std::size_t offset, std::size_t count) {
  std::vector<Record> table;
  for (std::size_t i = 0; i < count; ++i) {
    table.push_back(At<Record>(file, offset + i * sizeof(Record)));
  }
  return table;
}

void ReadSegments(const std::string& file, const Elf64_Ehdr& header, ElfProtections* found) {
  for (const auto& segment : Table<Elf64_Phdr>(file, header.e_phoff, header.e_phnum)) {
    const bool executable = (segment.p_flags & PF_X) != 0;
    if (segment.p_type == PT_GNU_RELRO) found->relro = true;
    if (segment.p_type == PT_GNU_STACK) found->stack_not_executable = !executable;
    if (segment.p_type == PT_LOAD && executable && (segment.p_flags & PF_W) != 0) {
      found->writable_and_executable = true;
    }
  }
}

void ReadDynamicEntry(const Elf64_Dyn& entry, ElfProtections* found) {
  const auto value = entry.d_un.d_val;
  switch (entry.d_tag) {
    case DT_FLAGS:
      if ((value & DF_BIND_NOW) != 0) found->bind_now = true;
      if ((value & DF_TEXTREL) != 0) found->text_relocations = true;
      break;
    case DT_FLAGS_1:
      if ((value & DF_1_NOW) != 0) found->bind_now = true;
      if ((value & DF_1_PIE) != 0) found->position_independent = true;
      break;
    case DT_TEXTREL:
      found->text_relocations = true;
      break;
    case DT_RPATH:
    case DT_RUNPATH:
      found->search_path = true;
      break;
    default:
      break;
  }
}

void ReadImports(const std::string& file, const Elf64_Shdr& symbols, const Elf64_Shdr& names,
                 ElfProtections* found) {
  const std::size_t count = symbols.sh_size / sizeof(Elf64_Sym);
  for (const auto& symbol : Table<Elf64_Sym>(file, symbols.sh_offset, count)) {
    if (symbol.st_shndx != SHN_UNDEF || symbol.st_name >= names.sh_size) continue;
    found->imports.insert(file.c_str() + names.sh_offset + symbol.st_name);
  }
}

}  // namespace

ElfProtections ReadElfProtections(const std::string& path) {
  const std::string file = ReadFile(path);
  const auto header = At<Elf64_Ehdr>(file, 0);
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS64) {
    throw std::runtime_error(path + " is no 64-bit ELF file");
  }
  ElfProtections found;
  ReadSegments(file, header, &found);
  const auto sections = Table<Elf64_Shdr>(file, header.e_shoff, header.e_shnum);
  for (const Elf64_Shdr& section : sections) {
    if (section.sh_type == SHT_DYNSYM) {
      ReadImports(file, section, sections.at(section.sh_link), &found);
    }
    if (section.sh_type != SHT_DYNAMIC) continue;
    const std::size_t count = section.sh_size / sizeof(Elf64_Dyn);
    for (const auto& entry : Table<Elf64_Dyn>(file, section.sh_offset, count)) {
      ReadDynamicEntry(entry, &found);
    }
  }
  if (found.imports.empty()) throw std::runtime_error(path + " has no dynamic symbols");
  found.position_independent = found.position_independent && header.e_type == ET_DYN;
  return found;
}

bool HasStackProtector(const ElfProtections& protections) {
  return protections.imports.count("__stack_chk_fail") == 1;
}

bool HasCheckedCalls(const ElfProtections& protections) {
  const auto is_checked = [](const std::string& name) {
    return name.size() > 6 && name.compare(0, 2, "__") == 0 && name != "__stack_chk_fail" &&
           name.compare(name.size() - 4, 4, "_chk") == 0;
  };
  return std::any_of(protections.imports.begin(), protections.imports.end(), is_checked);
}
