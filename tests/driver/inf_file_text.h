// A parsed INF file, as the system's documentation tells its syntax: sections and keys compare
// without case, a section that appears twice is one, ';' begins a comment, a backslash at the end
// continues a line, quotes keep blanks and special characters, "" in quotes is a quote, %name%
// stands for a text of [Strings] and %% for a percent sign.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct InfTextLine {
  std::optional<std::string> key;
  std::vector<std::string> fields;
};

struct InfTextSection {
  std::string name;
  std::vector<InfTextLine> lines;
};

class InfFileText {
 public:
  explicit InfFileText(std::string_view text);

  const std::vector<InfTextSection>& sections() const { return sections_; }
  const InfTextSection* FindSection(std::string_view name) const;

  // The first line with this key. A line of one field and no key is its own key.
  const InfTextLine* FindLine(std::string_view section, std::string_view key) const;

  // The value of a line in the system's compact form: without blanks around the fields, quotes and
  // key, strings substituted, fields joined by commas.
  std::string CompactText(const InfTextLine& line) const;

  // Whether [Version] has a signature of the modern style; the system refuses others.
  bool HasModernSignature() const;

 private:
  InfTextSection& Section(const std::string& name);
  void AddLine(InfTextSection& section, std::string_view text);
  std::string Substitute(const std::string& field) const;

  std::vector<InfTextSection> sections_;
};

// Whether both are the same but for the case of ASCII letters.
bool SameWithoutCase(std::string_view first, std::string_view second);
