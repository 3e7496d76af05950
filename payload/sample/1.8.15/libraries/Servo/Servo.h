// Turns a hobby servo to an angle by the length of a pulse.
#ifndef Servo_h
#define Servo_h

#include <Arduino.h>

class Servo {
 public:
  void attach(uint8_t pin);

  // Degrees from 0 to 180; a greater angle counts as 180.
  void write(uint8_t degrees);

  // Sends one pulse. A servo needs one every 20 milliseconds.
  void refresh();

 private:
  uint8_t servoPin = 255;
  uint16_t pulse = 1500;
};

#endif
