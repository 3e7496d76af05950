// The few operations on texts that the driver code shares. Names of files, registry lines and
// hardware ids are compared without regard to case, as the system does.
#pragma once

// The first place in `text` that reads as `needle`, compared by toupper; null when there is none,
// and in an empty text whatever the needle.
const char* find_substring_nocase(const char* text, const char* needle);

// Whether both texts are the same as a whole, compared by tolower.
bool equal_nocase(const char* first, const char* second);

// A copy from malloc, or null when memory runs out. The caller owns it.
char* duplicate_text(const char* text);
