#include "ADC.h"

void ADC::add(uint16_t reading) {
  if (count == depth) {
    sum -= readings[next];
  } else {
    count++;
  }
  readings[next] = reading;
  sum += reading;
  next = (uint8_t)((next + 1) % depth);
}

uint16_t ADC::average() const { return count ? (uint16_t)((sum + count / 2) / count) : 0; }
