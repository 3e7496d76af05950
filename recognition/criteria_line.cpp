#include "recognition/criteria_line.h"

#include <cstring>

#include "store/payload_format.h"

namespace {

struct Keyword {
  const char* word;
  CriteriaKeyword keyword;
};

// The order of the tests.
constexpr Keyword kKeywords[] = {{kDirKeyword, CriteriaKeyword::kDir},
                                 {kFileKeyword, CriteriaKeyword::kFile},
                                 {kVersionKeyword, CriteriaKeyword::kVersion},
                                 {kZipfileKeyword, CriteriaKeyword::kZipfile},
                                 {kZipcksumKeyword, CriteriaKeyword::kZipcksum}};

void FindKeyword(CriteriaLine* line) {
  line->keyword = CriteriaKeyword::kNone;
  line->argument = line->text;
  line->argument_length = line->length;
  for (const Keyword& keyword : kKeywords) {
    const std::size_t length = std::strlen(keyword.word);
    if (line->length < length || std::memcmp(line->text, keyword.word, length) != 0) continue;
    line->keyword = keyword.keyword;
    line->argument += length;
    line->argument_length -= length;
    return;
  }
}

}  // namespace

bool TakeCriteriaLine(const char** position, const char* end, CriteriaLine* line) {
  if (*position >= end) return false;
  line->text = *position;
  const auto room = static_cast<std::size_t>(end - line->text);
  const auto* feed = static_cast<const char*>(std::memchr(line->text, '\n', room));
  line->length = feed == nullptr ? room : static_cast<std::size_t>(feed - line->text);
  *position = feed == nullptr ? end : feed + 1;
  FindKeyword(line);
  return true;
}
