#include "Ping.h"

// Sound needs 58 microseconds for each centimetre there and back; the sensor reaches three metres.
static const uint32_t longestEcho = 58 * 300;

bool Ping::fire() {
  pinMode(soundPin, OUTPUT);
  digitalWrite(soundPin, HIGH);
  delayMicroseconds(5);
  digitalWrite(soundPin, LOW);
  pinMode(soundPin, INPUT);

  uint32_t start = micros();
  while (digitalRead(soundPin) == LOW) {
    if (micros() - start > 2000) return false;
  }
  start = micros();
  while (digitalRead(soundPin) == HIGH) {
    if (micros() - start > longestEcho) return false;
  }
  echo = micros() - start;
  return true;
}
