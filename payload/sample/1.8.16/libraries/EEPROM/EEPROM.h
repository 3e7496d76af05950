// Bytes that outlive the power. The whole library is in this header: a byte is one register access.
#ifndef EEPROM_h
#define EEPROM_h

#include <stdint.h>

class EEPROMClass {
 public:
  // Positions count from 0 and wrap at length().
  uint8_t read(int position) const { return cells()[position & (length() - 1)]; }
  void write(int position, uint8_t value) { cells()[position & (length() - 1)] = value; }

  // Spares a cell that holds the value already: each has a limited count of writes.
  void update(int position, uint8_t value) {
    if (read(position) != value) write(position, value);
  }

  static int length() { return 1024; }

 private:
  // The memory is mapped for both reading and writing; the hardware waits by itself.
  static volatile uint8_t* cells() { return (volatile uint8_t*)0x14000000; }
};

static EEPROMClass EEPROM __attribute__((unused));

#endif
