#include "FastLED.h"

FastColour fastHue(uint8_t hue) {
  // Six ramps of 256 steps make the circle.
  uint16_t place = (uint16_t)(hue * 6u);
  uint8_t up = (uint8_t)place;
  uint8_t down = (uint8_t)(255 - up);
  switch (place >> 8) {
    case 0: return {255, up, 0};
    case 1: return {down, 255, 0};
    case 2: return {0, 255, up};
    case 3: return {0, down, 255};
    case 4: return {up, 0, 255};
    default: return {255, 0, down};
  }
}
