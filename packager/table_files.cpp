#include "packager/table_files.h"

#include <string_view>

namespace {

constexpr std::string_view kFirstLine = "quirloduino payload 1\n";

// Names that the rules let pass need no escape; one that `verify` was handed may.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\' || c == '?') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

}  // namespace

std::string TableText(const PayloadTable& table) {
  std::string text(kFirstLine);
  text += "entries " + std::to_string(table.entries.size()) + "\n";
  text += "frame " + std::to_string(table.frame_length) + "\n";
  text += "content " + std::to_string(table.content_size) + "\n";
  for (const PayloadFile& entry : table.entries) {
    text += std::to_string(entry.size) + "\t" + entry.name + "\n";
  }
  return text;
}

std::string TableSource(const PayloadTable& table) {
  const std::string count = std::to_string(table.entries.size());
  std::string text =
      "// Made by quirloduino-pack; changes to it are lost.\n"
      "#include \"store/embedded_file_store.h\"\n"
      "\n"
      "extern \"C\" const unsigned char quirloduino_payload_frame[];\n"
      "\n"
      "namespace {\n"
      "\n"
      "constexpr const char* kNames[] = {\n";
  for (const PayloadFile& entry : table.entries) text += "    " + Quoted(entry.name) + ",\n";
  text +=
      "};\n"
      "\n"
      "constexpr std::uint32_t kSizes[] = {\n";
  for (const PayloadFile& entry : table.entries)
    text += "    " + std::to_string(entry.size) + "U,\n";
  text +=
      "};\n"
      "\n"
      "const unsigned char* data[" +
      count +
      "];\n"
      "\n"
      "constexpr EmbeddedFileStore kPacked = {\n"
      "    quirloduino_payload_frame, " +
      std::to_string(table.frame_length) + "U, " + count +
      "U, kNames, kSizes, data};\n"
      "\n"
      "}  // namespace\n"
      "\n"
      "const EmbeddedFileStore& Store = kPacked;\n";
  return text;
}
