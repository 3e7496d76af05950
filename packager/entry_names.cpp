#include "packager/entry_names.h"

#include <algorithm>
#include <iterator>

std::optional<AliasParts> SplitAlias(std::string_view name) {
  const std::size_t position = name.find(kAliasSeparator);
  if (position == std::string_view::npos) return std::nullopt;
  return AliasParts{name.substr(0, position),
                    name.substr(position + std::string_view(kAliasSeparator).size())};
}

std::string_view InstalledPath(std::string_view name) {
  const auto alias = SplitAlias(name);
  return alias ? alias->left : name;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsReleasePrefixed(std::string_view name) {
  return !name.empty() && IsDigit(name.front());
}

std::string_view FirstComponent(std::string_view name) {
  return name.substr(0, name.find('/'));
}

std::string_view AfterFirstComponent(std::string_view name) {
  const std::size_t slash = name.find('/');
  return slash == std::string_view::npos ? std::string_view() : name.substr(slash + 1);
}

bool IsArchiveObject(std::string_view name) {
  if (!IsReleasePrefixed(name) || !name.ends_with(kClassEnding)) return false;
  const std::string_view rest = AfterFirstComponent(name);
  return std::any_of(std::begin(kArchiveTrees), std::end(kArchiveTrees),
                     [rest](std::string_view tree) { return rest.starts_with(tree); });
}

char FoldCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string FoldCase(std::string_view text) {
  std::string folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), [](char c) { return FoldCase(c); });
  return folded;
}
