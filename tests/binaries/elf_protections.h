// What a native executable's own headers say of its protections, read from the file.
#pragma once

#include <set>
#include <string>

struct ElfProtections {
  bool position_independent = false;  // lies at an address that is drawn at each start
  bool relro = false;                 // relocated tables become read-only ...
  bool bind_now = false;              // ... all of them, since every symbol is bound at the start
  bool stack_not_executable = false;
  bool writable_and_executable = false;  // a segment that is both
  bool text_relocations = false;         // code that is rewritten at the start
  bool search_path = false;              // folders of its own, searched for libraries
  std::set<std::string> imports;         // the symbols it takes from libraries
};

// Throws where the file is no 64-bit executable with dynamic symbols.
ElfProtections ReadElfProtections(const std::string& path);

// Whether a guarded stack's failure is among the imports, and any checked call of the C library.
bool HasStackProtector(const ElfProtections& protections);
bool HasCheckedCalls(const ElfProtections& protections);
