#include "LedControl.h"

LedControl::LedControl(uint8_t data, uint8_t clock, uint8_t load)
    : dataPin(data), clockPin(clock), loadPin(load) {}

void LedControl::begin() {
  pinMode(dataPin, OUTPUT);
  pinMode(clockPin, OUTPUT);
  pinMode(loadPin, OUTPUT);
  digitalWrite(loadPin, HIGH);
  send(0x0F, 0);  // out of the test that lights everything
  send(0x09, 0);  // plain rows, no digits
  send(0x0B, 7);  // all eight rows
  send(0x0A, 4);  // a third of the full brightness
  send(0x0C, 1);  // awake
  show();
}

void LedControl::setLed(uint8_t row, uint8_t column, bool lit) {
  if (row > 7 || column > 7) return;
  uint8_t mask = (uint8_t)(0x80 >> column);
  rows[row] = (uint8_t)(lit ? rows[row] | mask : rows[row] & ~mask);
}

void LedControl::show() {
  for (uint8_t row = 0; row < 8; row++) send((uint8_t)(row + 1), rows[row]);
}

void LedControl::send(uint8_t where, uint8_t value) {
  digitalWrite(loadPin, LOW);
  shiftOut8(where);
  shiftOut8(value);
  digitalWrite(loadPin, HIGH);
}

void LedControl::shiftOut8(uint8_t value) {
  for (uint8_t mask = 0x80; mask; mask >>= 1) {
    digitalWrite(dataPin, (value & mask) ? HIGH : LOW);
    digitalWrite(clockPin, HIGH);
    digitalWrite(clockPin, LOW);
  }
}
