// Character displays with a 4-bit bus. Six pins, no reading back: times are waited out instead.
#ifndef LiquidCrystal_h
#define LiquidCrystal_h

#include <Arduino.h>

class LiquidCrystal : public Print {
 public:
  LiquidCrystal(uint8_t select, uint8_t enable, uint8_t d4, uint8_t d5, uint8_t d6, uint8_t d7);

  void begin(uint8_t columns, uint8_t rows);
  void clear();
  void setCursor(uint8_t column, uint8_t row);
  size_t write(uint8_t letter) override;
  using Print::write;

 private:
  void command(uint8_t value);
  void send(uint8_t value, uint8_t select);
  void sendHalf(uint8_t value);

  uint8_t selectPin, enablePin, dataPins[4];
  uint8_t columnCount, rowCount;
};

#endif
