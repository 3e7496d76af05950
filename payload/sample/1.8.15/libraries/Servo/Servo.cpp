#include "Servo.h"

static const uint16_t shortestPulse = 600;  // microseconds at 0 degrees
static const uint16_t longestPulse = 2400;  // and at 180

void Servo::attach(uint8_t pin) {
  servoPin = pin;
  pinMode(pin, OUTPUT);
}

void Servo::write(uint8_t degrees) {
  if (degrees > 180) degrees = 180;
  pulse = (uint16_t)(shortestPulse + (uint32_t)(longestPulse - shortestPulse) * degrees / 180);
}

void Servo::refresh() {
  digitalWrite(servoPin, HIGH);
  delayMicroseconds(pulse);
  digitalWrite(servoPin, LOW);
}
