// An 8 by 8 matrix of lights behind a driver chip on three pins.
#ifndef LedControl_h
#define LedControl_h

#include <Arduino.h>

class LedControl {
 public:
  LedControl(uint8_t dataPin, uint8_t clockPin, uint8_t loadPin);

  void begin();
  void setLed(uint8_t row, uint8_t column, bool lit);

  // Sends all eight rows.
  void show();

 private:
  void send(uint8_t where, uint8_t value);
  void shiftOut8(uint8_t value);

  uint8_t dataPin, clockPin, loadPin;
  uint8_t rows[8] = {};
};

#endif
