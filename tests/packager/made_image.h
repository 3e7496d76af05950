// Program files made byte by byte around a store, so that a test can hold one of any form and with
// any damage, without a compiler for it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

struct MadeImage {
  enum class Form { kWindows, kElf32 };
  Form form = Form::kWindows;
  std::vector<std::pair<std::string, std::string>> entries;  // names and contents
  std::string note_name = std::string("Quirloduino\0", 12);
  std::uint32_t note_type = 1;
  bool other_note_first = false;  // one of somebody else stands before it
  // What the tables say beside the truth, added to it.
  std::uint32_t extra_entries = 0;
  std::uint32_t extra_frame = 0;
  std::uint32_t names_moved = 0;
};

// The whole file. All of it is read-only data; none of it could run.
std::string MakeImage(const MadeImage& made);
