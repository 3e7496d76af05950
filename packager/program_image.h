// A program file as the system would load it, without loading it: its bytes by the address that
// they get in memory, and pointers as the loader would leave them. Reads ELF programs, 32 and 64
// bits, position-independent or not, and Windows programs (PE); stripped or signed ones like any
// other. Where the formats' figures come from: elf(5) and the System V ABI; Microsoft's "PE
// Format".
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class ProgramImage {
 public:
  // Takes apart `file`, the whole file's bytes, which must outlive the image. Throws Refusal, in
  // words about `name`, for anything that is no such program or is cut short.
  ProgramImage(std::string name, std::string_view file);

  // A read-only piece that the system loads with the program, with the address of its first byte.
  struct Piece {
    std::uint64_t address;
    std::string_view bytes;
  };
  // Where a program may carry notes about itself: an ELF program's note segments, the section
  // called kNoteSection of a Windows program.
  const std::vector<Piece>& notes() const { return notes_; }
  static constexpr std::string_view kNoteSection = ".quirlo";

  // The `size` bytes from `address` on. Throws Refusal unless the file holds all of them.
  std::string_view Bytes(std::uint64_t address, std::uint64_t size) const;

  // The text from `address` up to its terminator, which must come within `most` bytes.
  std::string_view Text(std::uint64_t address, std::size_t most) const;

  std::uint32_t Number32(std::uint64_t address) const;
  // A number of pointer_size() bytes: size_t, or a pointer's value before the loader changed it.
  std::uint64_t Word(std::uint64_t address) const;
  // The address that a pointer stored at `address` will hold.
  std::uint64_t Pointer(std::uint64_t address) const;
  std::size_t pointer_size() const { return pointer_size_; }

  [[noreturn]] void Refuse(std::string_view why) const;

 private:
  template <class Elf>
  void ReadElf();
  template <class Elf>
  void ReadRelocations(std::uint64_t dynamic, std::uint64_t size, unsigned relative);
  void ReadPe();
  void AddSegment(std::uint64_t address, std::uint64_t offset, std::uint64_t size);

  // The structure or number of type T at `offset` of the file.
  template <class T>
  T At(std::uint64_t offset) const;
  std::string_view FileBytes(std::uint64_t offset, std::uint64_t size) const;
  // The bytes of the file from `address` on to the end of its segment.
  std::string_view From(std::uint64_t address) const;

  std::string name_;
  std::string_view file_;
  std::size_t pointer_size_ = 0;
  std::vector<Piece> segments_;
  std::vector<Piece> notes_;
  std::map<std::uint64_t, std::uint64_t> relocated_;  // pointers whose value isn't in their place
};
