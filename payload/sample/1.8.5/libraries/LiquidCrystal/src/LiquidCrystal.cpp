#include "LiquidCrystal.h"

LiquidCrystal::LiquidCrystal(uint8_t select, uint8_t enable, uint8_t d4, uint8_t d5, uint8_t d6,
                             uint8_t d7)
    : selectPin(select), enablePin(enable), dataPins{d4, d5, d6, d7}, columnCount(16), rowCount(1) {}

void LiquidCrystal::begin(uint8_t columns, uint8_t rows) {
  columnCount = columns;
  rowCount = rows;
  pinMode(selectPin, OUTPUT);
  pinMode(enablePin, OUTPUT);
  for (uint8_t pin : dataPins) pinMode(pin, OUTPUT);
  delay(50);  // the display starts slower than the board

  // Whatever width the display was left in, three times "8 bits" and once "4 bits" leads to 4.
  digitalWrite(selectPin, LOW);
  for (int i = 0; i < 3; i++) {
    sendHalf(0x3);
    delay(5);
  }
  sendHalf(0x2);

  command(rows > 1 ? 0x28 : 0x20);
  command(0x0C);  // shown, without a cursor
  command(0x06);  // each letter moves to the right
  clear();
}

void LiquidCrystal::clear() {
  command(0x01);
  delay(2);
}

void LiquidCrystal::setCursor(uint8_t column, uint8_t row) {
  // Rows three and four continue the memory of one and two.
  uint8_t start = (row & 1) ? 0x40 : 0x00;
  if (row & 2) start = (uint8_t)(start + columnCount);
  command((uint8_t)(0x80 | (start + column)));
}

size_t LiquidCrystal::write(uint8_t letter) {
  send(letter, HIGH);
  return 1;
}

void LiquidCrystal::command(uint8_t value) { send(value, LOW); }

void LiquidCrystal::send(uint8_t value, uint8_t select) {
  digitalWrite(selectPin, select);
  sendHalf(value >> 4);
  sendHalf(value & 0xF);
}

void LiquidCrystal::sendHalf(uint8_t value) {
  for (int i = 0; i < 4; i++) digitalWrite(dataPins[i], (value >> i) & 1);
  digitalWrite(enablePin, HIGH);
  delayMicroseconds(1);
  digitalWrite(enablePin, LOW);
  delayMicroseconds(50);
}
