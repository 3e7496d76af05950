#include "packager/table_files.h"

#include <charconv>

#include "packager/refusal.h"

namespace {

constexpr std::string_view kFirstLine = "quirloduino payload 1";

// Names that the rules let pass need no escape; one that `verify` was handed may.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\' || c == '?') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

// Takes payload.tbl apart line by line and counts the lines for its messages.
class TableReader {
 public:
  TableReader(const std::string& name, std::string_view text) : name_(name), rest_(text) {}

  bool AtEnd() const { return rest_.empty(); }

  std::string_view TakeLine() {
    ++line_;
    const std::size_t end = rest_.find('\n');
    if (end == std::string_view::npos) Refuse();
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    return line;
  }

  // A line of a word, a blank and a number.
  std::uint64_t TakeHeader(std::string_view word) {
    std::string_view line = TakeLine();
    if (!line.starts_with(word) || !line.substr(word.size()).starts_with(' ')) Refuse();
    return Number(line.substr(word.size() + 1));
  }

  PayloadFile TakeEntry() {
    const std::string_view line = TakeLine();
    const std::size_t tab = line.find('\t');
    if (tab == std::string_view::npos) Refuse();
    return {std::string(line.substr(tab + 1)), Number(line.substr(0, tab))};
  }

  [[noreturn]] void Refuse() const {
    throw Refusal(name_, "line " + std::to_string(line_) + " is malformed");
  }

 private:
  // All of `text`, decimal, without leading zeros.
  std::uint64_t Number(std::string_view text) const {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || std::to_string(number) != text) Refuse();
    return number;
  }

  const std::string& name_;
  std::string_view rest_;
  std::size_t line_ = 0;
};

}  // namespace

std::string TableText(const PayloadTable& table) {
  std::string text = std::string(kFirstLine) + "\n";
  text += "entries " + std::to_string(table.entries.size()) + "\n";
  text += "frame " + std::to_string(table.frame_length) + "\n";
  text += "content " + std::to_string(table.content_size) + "\n";
  for (const PayloadFile& entry : table.entries) {
    text += std::to_string(entry.size) + "\t" + entry.name + "\n";
  }
  return text;
}

PayloadTable ParseTableText(const std::string& name, std::string_view text) {
  TableReader reader(name, text);
  if (reader.TakeLine() != kFirstLine) reader.Refuse();
  const std::uint64_t count = reader.TakeHeader("entries");
  PayloadTable table{};
  table.frame_length = reader.TakeHeader("frame");
  table.content_size = reader.TakeHeader("content");
  while (!reader.AtEnd()) table.entries.push_back(reader.TakeEntry());
  if (table.entries.size() != count) {
    throw Refusal(name, "has " + std::to_string(table.entries.size()) + " entries and not the " +
                            std::to_string(count) + " of its header");
  }
  if (count == 0) throw Refusal(name, "has no entry");
  return table;
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
