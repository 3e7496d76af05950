// Moves a diagonal over the matrix.
#include <LedControl.h>

LedControl matrix(11, 13, 10);

void setup() {
  matrix.begin();
}

void loop() {
  static uint8_t shift = 0;
  for (uint8_t row = 0; row < 8; row++) {
    for (uint8_t column = 0; column < 8; column++) {
      matrix.setLed(row, column, ((row + column + shift) & 7) == 0);
    }
  }
  matrix.show();
  shift++;
  delay(100);
}
