// Runs a comet with a fading tail round a strip of 24 lights.
#include <Adafruit_NeoPixel.h>

uint8_t bytes[3 * 24];
Adafruit_NeoPixel strip(bytes, 24);

void setup() {}

void loop() {
  static uint16_t head = 0;
  strip.fade(40);
  strip.setPixelColor(head, 255, 80, 20);
  head = (head + 1) % 24;
  delay(40);
}
