// Turns a hue into red, green and blue without a division.
#ifndef FastLED_h
#define FastLED_h

#include <Arduino.h>

struct FastColour {
  uint8_t red, green, blue;
};

// Hues from 0 to 255 go once round: red, yellow, green, cyan, blue, magenta.
FastColour fastHue(uint8_t hue);

#endif
