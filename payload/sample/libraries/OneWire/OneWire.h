// Talks to devices that share one wire for power and data.
#ifndef OneWire_h
#define OneWire_h

#include <Arduino.h>

class OneWire {
 public:
  // The wire needs a resistor of a few kilohms to the supply.
  explicit OneWire(uint8_t pin) : wirePin(pin) {}

  // Wakes the devices; true if at least one answers.
  bool reset();
  void write(uint8_t value);
  uint8_t read();

  // The check value at the end of what a device sends, over the bytes before it.
  static uint8_t crc8(const uint8_t* bytes, uint8_t count);

 private:
  void pull(uint16_t microseconds, uint16_t rest);
  bool readBit();

  uint8_t wirePin;
};

#endif
