// Moves a stepper motor by pulses, and ramps their rate up and down.
#ifndef AccelStepper_h
#define AccelStepper_h

#include <Arduino.h>

class AccelStepper {
 public:
  AccelStepper(uint8_t stepPin, uint8_t directionPin);

  // Steps per second, and its change per second.
  void setMaxSpeed(float speed) { maxSpeed = speed; }
  void setAcceleration(float change) { acceleration = change; }

  void moveTo(long position) { target = position; }
  long currentPosition() const { return position; }

  // Makes a step if one is due. Call it as often as you can; true while the motor is on its way.
  bool run();

 private:
  uint8_t stepPin, directionPin;
  long position = 0, target = 0;
  float speed = 0, maxSpeed = 200, acceleration = 100;
  uint32_t lastStep = 0;
};

#endif
