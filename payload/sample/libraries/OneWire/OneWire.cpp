#include "OneWire.h"

// Nobody drives the wire high: it's pulled low or let go.
void OneWire::pull(uint16_t microseconds, uint16_t rest) {
  digitalWrite(wirePin, LOW);
  pinMode(wirePin, OUTPUT);
  delayMicroseconds(microseconds);
  pinMode(wirePin, INPUT);
  delayMicroseconds(rest);
}

bool OneWire::reset() {
  pull(480, 70);
  bool answered = digitalRead(wirePin) == LOW;
  delayMicroseconds(410);
  return answered;
}

void OneWire::write(uint8_t value) {
  for (uint8_t i = 0; i < 8; i++) {
    if ((value >> i) & 1) {
      pull(6, 64);
    } else {
      pull(60, 10);
    }
  }
}

bool OneWire::readBit() {
  pull(4, 9);
  bool level = digitalRead(wirePin) == HIGH;
  delayMicroseconds(55);
  return level;
}

uint8_t OneWire::read() {
  uint8_t value = 0;
  for (uint8_t i = 0; i < 8; i++) {
    if (readBit()) value = (uint8_t)(value | 1u << i);
  }
  return value;
}

// The polynomial is x^8 + x^5 + x^4 + 1, taken with the lowest bit first.
uint8_t OneWire::crc8(const uint8_t* bytes, uint8_t count) {
  uint8_t crc = 0;
  while (count--) {
    crc ^= *bytes++;
    for (uint8_t i = 0; i < 8; i++) crc = (uint8_t)((crc & 1) ? (crc >> 1) ^ 0x8C : crc >> 1);
  }
  return crc;
}
