#include "tests/driver/inf_file_text.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace {

std::string Trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r");
  if (begin == std::string_view::npos) return "";
  return std::string(text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1));
}

// The text up to a comment.
std::string_view WithoutComment(std::string_view text) {
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') quoted = !quoted;
    if (text[i] == ';' && !quoted) return text.substr(0, i);
  }
  return text;
}

// Lines without comments, each with those that continue it.
std::vector<std::string> LogicalLines(std::string_view text) {
  std::vector<std::string> lines;
  bool continued = false;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string line = Trim(WithoutComment(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
    const bool continues = !line.empty() && line.back() == '\\';
    if (continues) line.pop_back();
    if (continued) {
      lines.back() += line;
    } else {
      lines.push_back(line);
    }
    continued = continues;
  }
  return lines;
}

// Takes the quotes off a field and the blanks around it; blanks in quotes stay.
std::string Unquote(std::string_view field) {
  const std::string text = Trim(field);
  std::string result;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '"') {
      result += text[i];
    } else if (quoted && i + 1 < text.size() && text[i + 1] == '"') {
      result += text[++i];
    } else {
      quoted = !quoted;
    }
  }
  return result;
}

// Splits at `separator` outside of quotes, at most into `most` pieces.
std::vector<std::string> SplitUnquoted(std::string_view text, char separator, std::size_t most) {
  std::vector<std::string> pieces;
  bool quoted = false;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size() && pieces.size() + 1 < most; ++i) {
    if (text[i] == '"') quoted = !quoted;
    if (text[i] != separator || quoted) continue;
    pieces.emplace_back(text.substr(begin, i - begin));
    begin = i + 1;
  }
  pieces.emplace_back(text.substr(begin));
  return pieces;
}

}  // namespace

bool SameWithoutCase(std::string_view first, std::string_view second) {
  return std::equal(
      first.begin(), first.end(), second.begin(), second.end(),
      [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

InfFileText::InfFileText(std::string_view text) {
  std::string current;
  bool in_section = false;
  for (const std::string& line : LogicalLines(text)) {
    if (line.empty()) continue;
    if (line.front() == '[' && line.back() == ']') {
      current = Trim(std::string_view(line).substr(1, line.size() - 2));
      in_section = true;
      Section(current);
    } else if (in_section) {
      AddLine(Section(current), line);
    }
  }
}

InfTextSection& InfFileText::Section(const std::string& name) {
  for (InfTextSection& section : sections_) {
    if (SameWithoutCase(section.name, name)) return section;
  }
  return sections_.emplace_back(InfTextSection{name, {}});
}

void InfFileText::AddLine(InfTextSection& section, std::string_view text) {
  InfTextLine line;
  const std::vector<std::string> sides = SplitUnquoted(text, '=', 2);
  if (sides.size() == 2) line.key = Unquote(sides[0]);
  for (const std::string& field : SplitUnquoted(sides.back(), ',', std::string::npos)) {
    line.fields.push_back(Unquote(field));
  }
  section.lines.push_back(line);
}

const InfTextSection* InfFileText::FindSection(std::string_view name) const {
  for (const InfTextSection& section : sections_) {
    if (SameWithoutCase(section.name, name)) return &section;
  }
  return nullptr;
}

const InfTextLine* InfFileText::FindLine(std::string_view section, std::string_view key) const {
  const InfTextSection* found = FindSection(section);
  if (found == nullptr) return nullptr;
  for (const InfTextLine& line : found->lines) {
    if (line.key && SameWithoutCase(Substitute(*line.key), key)) return &line;
    if (!line.key && line.fields.size() == 1 && SameWithoutCase(Substitute(line.fields[0]), key)) {
      return &line;
    }
  }
  return nullptr;
}

std::string InfFileText::Substitute(const std::string& field) const {
  std::string result;
  for (std::size_t i = 0; i < field.size(); ++i) {
    const std::size_t end = field[i] == '%' ? field.find('%', i + 1) : std::string::npos;
    if (end == std::string::npos) {
      result += field[i];
      continue;
    }
    const std::string name = field.substr(i + 1, end - i - 1);
    const InfTextSection* strings = FindSection("Strings");
    const InfTextLine* value = nullptr;
    if (strings != nullptr) {
      for (const InfTextLine& line : strings->lines) {
        if (line.key && SameWithoutCase(*line.key, name)) value = &line;
      }
    }
    if (name.empty()) {
      result += '%';
    } else if (value != nullptr) {
      result += value->fields.front();
    } else {
      result += field.substr(i, end - i + 1);  // an unknown name stands as written
    }
    i = end;
  }
  return result;
}

std::string InfFileText::CompactText(const InfTextLine& line) const {
  std::string text;
  for (std::size_t i = 0; i < line.fields.size(); ++i) {
    if (i > 0) text += ',';
    text += Substitute(line.fields[i]);
  }
  return text;
}

bool InfFileText::HasModernSignature() const {
  const InfTextLine* line = FindLine("Version", "Signature");
  if (line == nullptr) return false;
  const std::string signature = CompactText(*line);
  return SameWithoutCase(signature, "$Windows NT$") || SameWithoutCase(signature, "$Chicago$") ||
         SameWithoutCase(signature, "$Windows 95$");
}
