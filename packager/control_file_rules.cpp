#include "packager/control_file_rules.h"

#include <string>

#include "packager/name_rules.h"
#include "packager/refusal.h"
#include "store/location_value.h"
#include "store/payload_format.h"

namespace {

constexpr std::string_view kJarEnding = ".jar";

bool IsFolderKey(std::string_view key) {
  return key.ends_with("_SUBDIR");
}

// Whether the value is a path that stays below the host folder wherever that is: the installer
// joins the two as texts and makes what the result names.
bool StaysBelow(std::string_view value, bool is_folder) {
  if (is_folder) value.remove_suffix(1);  // its "/"
  try {
    CheckPath(value);
  } catch (const Refusal&) {
    return false;
  }
  return true;
}

// The look-up takes the first place that holds the key's text. Were that a comment or part of
// something else, then the setting would be missed or, worse, the wrong text returned.
void CheckKeyBeginsItsLine(std::string_view name, std::string_view content,
                           const std::string& key) {
  const std::size_t position = content.find(key);
  if (position == std::string_view::npos) throw Refusal(name, key + " is missing");
  const std::size_t line_end =
      position == 0 ? std::string_view::npos : content.find_last_of('\n', position - 1);
  const std::size_t line = line_end == std::string_view::npos ? 0 : line_end + 1;
  const std::string_view before = content.substr(line, position - line);
  if (before.starts_with('#')) {
    throw Refusal(name, key + " stands in a comment, where the look-up finds it first");
  }
  if (before.find_first_not_of(" \t\r\v\f") != std::string_view::npos) {
    throw Refusal(name, key + " stands within other text, where the look-up finds it first");
  }
}

void CheckLocation(std::string_view name, std::string_view content, const char* key) {
  const std::string key_text = key;
  CheckKeyBeginsItsLine(name, content, key_text);
  char value[kLocationValueSize];
  if (!FindLocationValue(reinterpret_cast<const unsigned char*>(content.data()), content.size(),
                         key, value)) {
    throw Refusal(name, key_text + " has no value in double quotes");
  }
  const std::string_view text = value;
  if (text.find_first_of("\r\n") != std::string_view::npos) {
    throw Refusal(name, key_text + " has a value without a closing quote");
  }
  if (text.size() == kLocationValueSize - 1) {
    throw Refusal(name, key_text + " has a value of 255 characters or more, which may be cut");
  }
  if (IsFolderKey(key_text) && !text.ends_with('/')) {
    throw Refusal(name, key_text + " names a folder, so its value must end in \"/\"");
  }
  if (!StaysBelow(text, IsFolderKey(key_text))) {
    throw Refusal(name, key_text + " must name a path below the host folder, not \"" +
                            Printable(text) + "\"");
  }
  if (!IsFolderKey(key_text) && !text.ends_with(kJarEnding)) {
    throw Refusal(name, key_text + " names an archive, so its value must end in \".jar\"");
  }
}

}  // namespace

void CheckLocations(std::string_view name, std::string_view content) {
  for (const char* key : kLocationKeys) CheckLocation(name, content, key);
}
