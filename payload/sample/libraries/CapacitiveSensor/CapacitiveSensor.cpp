#include "CapacitiveSensor.h"

static const uint32_t longestCharge = 5000;

CapacitiveSensor::CapacitiveSensor(uint8_t drive, uint8_t plate)
    : drivePin(drive), platePin(plate) {}

uint32_t CapacitiveSensor::measure(uint8_t rounds) {
  uint32_t sum = 0;
  pinMode(drivePin, OUTPUT);
  for (uint8_t i = 0; i < rounds; i++) {
    digitalWrite(drivePin, LOW);
    pinMode(platePin, OUTPUT);
    digitalWrite(platePin, LOW);
    delayMicroseconds(20);
    pinMode(platePin, INPUT);

    digitalWrite(drivePin, HIGH);
    uint32_t turns = 0;
    while (digitalRead(platePin) == LOW) {
      if (++turns == longestCharge) return 0;
    }
    sum += turns;
  }
  return sum;
}

bool CapacitiveSensor::touched() {
  uint32_t now = measure(30);
  if (resting == 0) resting = now;
  return now > resting + resting / 4;
}
