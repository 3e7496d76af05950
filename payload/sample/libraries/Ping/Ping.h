// Measures a distance by the time of an echo, on one pin.
#ifndef Ping_h
#define Ping_h

#include <Arduino.h>

class Ping {
 public:
  explicit Ping(uint8_t pin) : soundPin(pin) {}

  // Sends a burst and waits for its echo; true if one came within the sensor's reach.
  bool fire();

  // The distance of the last echo.
  uint16_t centimeters() const { return (uint16_t)(echo / 58); }

 private:
  uint8_t soundPin;
  uint32_t echo = 0;
};

#endif
