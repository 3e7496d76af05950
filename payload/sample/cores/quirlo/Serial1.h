// The first hardware serial port. Sending waits for room; nothing is buffered.
#ifndef QUIRLO_SERIAL1_H
#define QUIRLO_SERIAL1_H

#include "Print.h"

class HardwareSerial : public Print {
 public:
  void begin(uint32_t bits_per_second);

  // 1 if a byte has come in, else 0. read() gives it, or -1 if there is none.
  int available();
  int read();

  size_t write(uint8_t value) override;
  using Print::write;
};

extern HardwareSerial Serial1;

#endif
