#include "recognition/zipcksum_line.h"

#include <cstdio>
#include <cstring>

bool SplitZipcksumLine(char* text, ZipcksumLine* line) {
  line->count = 0;
  char* token = std::strchr(text, ' ');
  if (token == nullptr) return false;
  while (*token == ' ') *token++ = '\0';

  while (std::sscanf(token, "%u", &line->numbers[line->count]) == 1) {
    if (++line->count == kZipcksumNumbers) return false;
    token = std::strchr(token, ' ');
    if (token == nullptr) return false;
    while (*token == ' ') ++token;
    if (*token == '\0') return false;
  }
  line->member = token;
  return line->count >= 2 && line->count % 2 == 0;
}
