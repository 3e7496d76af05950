// Compares the names of files on a card as the card's file system does: letters of either case are
// the same. The comparison is inline here; no table is needed for the Latin letters.
#ifndef SdFat_h
#define SdFat_h

#include <stdint.h>

inline uint16_t sdFatUpper(uint16_t letter) {
  return letter >= 'a' && letter <= 'z' ? (uint16_t)(letter - 'a' + 'A') : letter;
}

inline bool sdFatSameName(const char* left, const char* right) {
  while (*left && sdFatUpper((uint8_t)*left) == sdFatUpper((uint8_t)*right)) {
    left++;
    right++;
  }
  return *left == *right;
}

#endif
