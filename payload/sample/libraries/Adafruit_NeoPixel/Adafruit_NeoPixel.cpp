#include "Adafruit_NeoPixel.h"

void Adafruit_NeoPixel::setPixelColor(uint16_t light, uint8_t red, uint8_t green, uint8_t blue) {
  if (light >= count) return;
  uint8_t* at = colours + 3 * light;
  at[0] = green;  // green travels first
  at[1] = red;
  at[2] = blue;
}

void Adafruit_NeoPixel::fade(uint8_t part) {
  for (uint16_t i = 0; i < 3 * count; i++) {
    colours[i] = (uint8_t)(colours[i] * (256u - part) / 256u);
  }
}
