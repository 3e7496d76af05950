// Prints the circle of colours.
#include <FastLED.h>

void setup() {
  Serial1.begin(115200);
}

void loop() {
  static uint8_t hue = 0;
  FastColour colour = fastHue(hue++);
  Serial1.print(colour.red);
  Serial1.print(' ');
  Serial1.print(colour.green);
  Serial1.print(' ');
  Serial1.println(colour.blue);
  delay(20);
}
