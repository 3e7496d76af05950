#include "AltSoftSerial.h"

void AltSoftSerial::begin(uint32_t bitsPerSecond) {
  if (bitsPerSecond) bitTime = 1000000u / bitsPerSecond;
  pinMode(sendPin, OUTPUT);
  digitalWrite(sendPin, HIGH);
}

// Edges are placed from the start of the byte, so that rounding doesn't add up over its ten bits.
void AltSoftSerial::sendBit(uint8_t level) {
  digitalWrite(sendPin, level);
  edge += bitTime;
  while ((int32_t)(micros() - edge) < 0) {
  }
}

size_t AltSoftSerial::write(uint8_t value) {
  edge = micros();
  sendBit(LOW);
  for (int i = 0; i < 8; i++) sendBit((value >> i) & 1);
  sendBit(HIGH);
  return 1;
}
