// Sends serial data on any pin, timed by the core's clock. It doesn't receive.
#ifndef AltSoftSerial_h
#define AltSoftSerial_h

#include <Arduino.h>

class AltSoftSerial : public Print {
 public:
  explicit AltSoftSerial(uint8_t pin) : sendPin(pin) {}

  // Up to 19200 bits per second come out cleanly on every board.
  void begin(uint32_t bitsPerSecond);
  size_t write(uint8_t value) override;
  using Print::write;

 private:
  void sendBit(uint8_t level);

  uint8_t sendPin;
  uint32_t bitTime = 104;
  uint32_t edge = 0;
};

#endif
