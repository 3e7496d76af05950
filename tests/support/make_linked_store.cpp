// make_linked_store LIST DIRECTORY: turns a readable list of names and contents into the two files
// that quirloduino_add_store links into a program, without any of the packager's rules, so that a
// test may hold names, orders and frames that no packager would let through.
//
// The list, line by line:
//
//   # words               a comment; an empty line is passed over too
//   frame WAY             how the frame is made, once at most; see below
//   entry NAME            begins an entry; the name is all to the line's end, blanks included
//   | TEXT                the entry's content goes on with TEXT and a line feed
//   + TEXT                the same without the line feed
//
// Entries stand in the store in the order of the list. The ways to make the frame, against what the
// table of sizes declares:
//
//   sound                 as the packager makes it; so it is without a frame line
//   one-byte-more         a sound frame, but of one byte more
//   one-byte-less         a sound frame, but without the last byte
//   truncated             the first half of the sound frame
//   garbage               as many bytes as the sound frame has, none of which begin a frame
//   checksum-broken       the sound frame with one bit of its content checksum turned
//   empty                 no byte at all
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

namespace {

struct StoreList {
  std::string frame = "sound";
  std::vector<TestEntry> entries;
};

StoreList ParseList(std::istream& list) {
  StoreList parsed;
  std::string line;
  while (std::getline(list, line)) {
    const std::string word = line.substr(0, line.find(' '));
    const std::string rest = line.size() > word.size() ? line.substr(word.size() + 1) : "";
    if (word.empty() || word[0] == '#') continue;
    if (word == "frame") {
      parsed.frame = rest;
    } else if (word == "entry") {
      parsed.entries.push_back({rest, ""});
    } else if ((word == "|" || word == "+") && !parsed.entries.empty()) {
      parsed.entries.back().content += rest + (word == "|" ? "\n" : "");
    } else {
      throw std::runtime_error("line not understood: " + line);
    }
  }
  return parsed;
}

std::string MakeFrame(const std::string& way, const std::string& content) {
  std::string frame = PackFrame(content);
  if (way == "sound") return frame;
  if (way == "one-byte-more") return PackFrame(content + "x");
  if (way == "one-byte-less") return PackFrame(content.substr(0, content.size() - 1));
  if (way == "truncated") return frame.substr(0, frame.size() / 2);
  if (way == "garbage") return std::string(frame.size(), 'g');
  if (way == "empty") return "";
  if (way != "checksum-broken") throw std::runtime_error("no such frame: " + way);
  frame.back() = static_cast<char>(frame.back() ^ 1);
  return frame;
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= ' ' && byte < 0x7F && c != '"' && c != '\\') {
      quoted += c;
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\%03o", static_cast<unsigned>(byte));
      quoted += escape;
    }
  }
  return quoted + "\"";
}

// Every array has one element beyond the entries, as C++ knows no empty ones.
std::string MakeTables(const std::vector<TestEntry>& entries, std::size_t frame_length) {
  std::ostringstream names;
  std::ostringstream sizes;
  for (const TestEntry& entry : entries) {
    names << "    " << Quoted(entry.name) << ",\n";
    sizes << entry.content.size() << ", ";
  }
  std::ostringstream tables;
  tables << "#include \"store/embedded_file_store.h\"\n\n"
         << "extern \"C\" const unsigned char quirloduino_payload_frame[];\n\n"
         << "namespace {\n\n"
         << "const char* const kNames[] = {\n"
         << names.str() << "    nullptr};\n"
         << "const std::uint32_t kSizes[] = {" << sizes.str() << "0};\n"
         << "const unsigned char* data[" << entries.size() + 1 << "];\n"
         << "const EmbeddedFileStore kStore = {quirloduino_payload_frame, " << frame_length << ", "
         << entries.size() << ", kNames, kSizes, data};\n\n"
         << "}  // namespace\n\n"
         << "const EmbeddedFileStore& Store = kStore;\n";
  return tables.str();
}

void MakeLinkedStore(const std::string& list, const std::string& directory) {
  std::ifstream input(list, std::ios::binary);
  if (!input) throw std::runtime_error("can't read the list");
  const StoreList parsed = ParseList(input);
  std::string content;
  for (const TestEntry& entry : parsed.entries) content += entry.content;
  const std::string frame = MakeFrame(parsed.frame, content);
  WriteFile(directory + "/payload.zst", frame);
  WriteFile(directory + "/payload_tables.cpp", MakeTables(parsed.entries, frame.size()));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: make_linked_store LIST DIRECTORY\n");
    return 1;
  }
  try {
    MakeLinkedStore(argv[1], argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", argv[1], error.what());
    return 2;
  }
  return 0;
}
