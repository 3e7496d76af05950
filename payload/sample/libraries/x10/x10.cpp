#include "x10.h"

static uint8_t append(uint8_t* halfBits, uint8_t at, uint8_t value, uint8_t bits) {
  while (bits--) {
    uint8_t level = (value >> bits) & 1;
    halfBits[at++] = level;
    halfBits[at++] = !level;
  }
  return at;
}

uint8_t x10Burst(uint8_t house, uint8_t command, uint8_t* halfBits) {
  static const uint8_t start[4] = {1, 1, 1, 0};
  uint8_t at = 0;
  for (uint8_t level : start) halfBits[at++] = level;
  at = append(halfBits, at, house & 0xF, 4);
  return append(halfBits, at, command & 0x1F, 5);
}
