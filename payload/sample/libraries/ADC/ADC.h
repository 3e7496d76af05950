// A moving average over the last readings, for a calmer value.
#ifndef ADC_h
#define ADC_h

#include <Arduino.h>

class ADC {
 public:
  // Takes a reading; the oldest one leaves.
  void add(uint16_t reading);

  // The mean of the readings that are there, 0 if there is none.
  uint16_t average() const;

 private:
  static const uint8_t depth = 16;
  uint16_t readings[depth] = {};
  uint8_t count = 0, next = 0;
  uint32_t sum = 0;
};

#endif
