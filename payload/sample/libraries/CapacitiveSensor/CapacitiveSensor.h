// Feels a finger by how long a plate takes to charge through a resistor.
#ifndef CapacitiveSensor_h
#define CapacitiveSensor_h

#include <Arduino.h>

class CapacitiveSensor {
 public:
  // A resistor of about one megohm joins the two pins; the plate hangs on the second.
  CapacitiveSensor(uint8_t drivePin, uint8_t platePin);

  // The summed charging time of some rounds, 0 if the plate never charged.
  uint32_t measure(uint8_t rounds);

  // True if the plate charges notably slower than at the first call, when nobody may touch it.
  bool touched();

 private:
  uint8_t drivePin, platePin;
  uint32_t resting = 0;
};

#endif
