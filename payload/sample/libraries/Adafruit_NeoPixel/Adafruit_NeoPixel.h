// The colours of a strip of lights, in the order in which the strip takes them.
#ifndef Adafruit_NeoPixel_h
#define Adafruit_NeoPixel_h

#include <Arduino.h>

class Adafruit_NeoPixel {
 public:
  // The bytes are the caller's, three for each light, and stay in use.
  Adafruit_NeoPixel(uint8_t* bytes, uint16_t count) : colours(bytes), count(count) {}

  void setPixelColor(uint16_t light, uint8_t red, uint8_t green, uint8_t blue);

  // Dims every light by a 256th part for each unit: 255 nearly to nothing, 0 not at all.
  void fade(uint8_t part);

 private:
  uint8_t* colours;
  uint16_t count;
};

#endif
