#include "AccelStepper.h"

AccelStepper::AccelStepper(uint8_t step, uint8_t direction)
    : stepPin(step), directionPin(direction) {
  pinMode(stepPin, OUTPUT);
  pinMode(directionPin, OUTPUT);
}

bool AccelStepper::run() {
  long left = target - position;
  if (left == 0) {
    speed = 0;
    return false;
  }
  uint32_t now = micros();
  float wait = speed > 0 ? 1000000.0f / speed : 0;
  if (speed > 0 && now - lastStep < (uint32_t)wait) return true;

  digitalWrite(directionPin, left > 0 ? HIGH : LOW);
  digitalWrite(stepPin, HIGH);
  delayMicroseconds(2);
  digitalWrite(stepPin, LOW);
  position += left > 0 ? 1 : -1;
  lastStep = now;

  // From speed v the motor needs v * v / 2a steps to stop, so it brakes when no more are left.
  long distance = left > 0 ? left : -left;
  float gain = speed > 0 ? acceleration / speed : acceleration / 10;
  bool braking = speed * speed / (2 * acceleration) >= (float)distance;
  speed += braking ? -gain : gain;
  if (speed > maxSpeed) speed = maxSpeed;
  if (speed < 1) speed = 1;
  return true;
}
