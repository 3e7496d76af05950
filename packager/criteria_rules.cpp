#include "packager/criteria_rules.h"

#include <algorithm>
#include <charconv>

#include "packager/refusal.h"
#include "recognition/check_criteria.h"
#include "recognition/criteria_line.h"
#include "recognition/zipcksum_line.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// One line of the file, for a refusal in words about it.
struct Line {
  std::string_view file;
  std::size_t number;
  std::string_view text;
};

[[noreturn]] void Refuse(const Line& line, const std::string& rule) {
  throw Refusal(line.file, "line " + std::to_string(line.number) + " " + rule);
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < ' ';
}

// What stands behind the keyword is a path to the end of the line, blanks included.
void CheckArgument(const Line& line, std::string_view argument) {
  if (argument.empty()) Refuse(line, "has nothing behind its keyword");
  if (argument.size() > kShownLimit) {
    Refuse(line, "is longer than the " + std::to_string(kShownLimit) +
                     " characters that the installer shows of one");
  }
  if (argument.front() == ' ' || argument.back() == ' ') {
    Refuse(line, "has a blank at an end of its argument, which would be part of the name");
  }
  if (std::any_of(argument.begin(), argument.end(), IsControl)) {
    Refuse(line, "holds a control character, which would be part of a name");
  }
}

std::vector<std::string_view> Tokens(std::string_view text) {
  std::vector<std::string_view> tokens;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end > 0) tokens.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return tokens;
}

// The installer's own scan takes a sign and whatever follows the digits, and wraps what is too
// large, so that a line could prove another number than it shows.
std::uint32_t Number(const Line& line, std::string_view token) {
  std::uint32_t number = 0;
  const char* const end = token.data() + token.size();
  const auto [rest, error] = std::from_chars(token.data(), end, number);
  if (error != std::errc() || rest != end) {
    Refuse(line, "has \"" + std::string(token) + "\" for a number from 0 to 4294967295");
  }
  return number;
}

ProvenMember ReadMember(const Line& line, std::string_view argument) {
  std::string text(argument);
  ZipcksumLine parts;
  if (!SplitZipcksumLine(text.data(), &parts)) Refuse(line, "is a malformed zipcksum line");
  const std::vector<std::string_view> tokens = Tokens(argument);
  ProvenMember member{line.number, std::string(tokens[0]), parts.member, {}};
  for (std::size_t i = 1; i < parts.count; i += 2) {
    member.pairs.emplace_back(Number(line, tokens[i]), Number(line, tokens[i + 1]));
  }
  return member;
}

void CheckBytes(const Line& line) {
  if (line.number == 1 && line.text.starts_with(kByteOrderMark)) {
    Refuse(line, "begins with a byte order mark, behind which the installer sees no keyword");
  }
  if (line.text.find('\0') != std::string_view::npos) Refuse(line, "holds a NUL");
}

// Adds to `criteria` what the line proves.
void ReadLine(const Line& line, const CriteriaLine& parts, Criteria* criteria) {
  CheckBytes(line);
  if (line.text.empty() || line.text.starts_with('#')) return;
  if (line.text.ends_with('\r')) Refuse(line, "ends in a carriage return");
  if (parts.keyword == CriteriaKeyword::kNone) {
    Refuse(line, "begins neither with a keyword nor with #, so the installer passes over it");
  }
  const std::string_view argument(parts.argument, parts.argument_length);
  CheckArgument(line, argument);
  if (parts.keyword == CriteriaKeyword::kZipcksum) {
    criteria->members.push_back(ReadMember(line, argument));
    criteria->archives.push_back(criteria->members.back().archive);
  } else if (parts.keyword == CriteriaKeyword::kZipfile) {
    criteria->archives.emplace_back(argument);
  }
}

}  // namespace

Criteria ReadCriteria(std::string_view name, std::string_view content) {
  Criteria criteria;
  bool names_version = false;
  const char* position = content.data();
  const char* const end = position + content.size();
  CriteriaLine line;
  for (std::size_t number = 1; TakeCriteriaLine(&position, end, &line); ++number) {
    ReadLine({name, number, {line.text, line.length}}, line, &criteria);
    if (line.keyword == CriteriaKeyword::kVersion) names_version = true;
  }
  if (!names_version) {
    throw Refusal(name, "has no version: line, so it would accept folders of any version");
  }
  if (criteria.members.empty()) {
    throw Refusal(name, "has no zipcksum: line, so it proves no build of the release");
  }
  return criteria;
}
