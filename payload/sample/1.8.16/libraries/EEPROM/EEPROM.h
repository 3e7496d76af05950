// Bytes that outlive a restart of the program. The whole library is in this header.
#ifndef EEPROM_h
#define EEPROM_h

#include <stdint.h>

class EEPROMClass {
 public:
  // Positions count from 0 and wrap at length().
  uint8_t read(int position) const { return readCell((uint16_t)(position & (length() - 1))); }
  void write(int position, uint8_t value) {
    writeCell((uint16_t)(position & (length() - 1)), value);
  }

  // Spares a cell that holds the value already: each has a limited count of writes.
  void update(int position, uint8_t value) {
    if (read(position) != value) write(position, value);
  }

  static int length() { return 1024; }

 private:
#ifdef __AVR__
  // The 8-bit processors have such a memory behind four registers.
  static volatile uint8_t& control() { return *(volatile uint8_t*)0x3F; }
  static volatile uint8_t& data() { return *(volatile uint8_t*)0x40; }
  static volatile uint16_t& address() { return *(volatile uint16_t*)0x41; }

  static void waitForCell() {
    while (control() & 2) {
    }
  }
  static uint8_t readCell(uint16_t cell) {
    waitForCell();
    address() = cell;
    control() |= 1;
    return data();
  }
  // The write has to follow within four cycles of its announcement, which an interrupt could break.
  static void writeCell(uint16_t cell, uint8_t value) {
    waitForCell();
    address() = cell;
    data() = value;
    __asm__ volatile(
        "in __tmp_reg__, __SREG__\n\t"
        "cli\n\t"
        "sbi 0x1F, 2\n\t"
        "sbi 0x1F, 1\n\t"
        "out __SREG__, __tmp_reg__" ::: "memory");
  }
#else
  // The emulator of the 32-bit boards has none. The end of its memory lies above what any program
  // uses, and keeps its bytes as long as the emulator runs.
  static volatile uint8_t* cells() { return (volatile uint8_t*)0x203FFC00; }
  static uint8_t readCell(uint16_t cell) { return cells()[cell]; }
  static void writeCell(uint16_t cell, uint8_t value) { cells()[cell] = value; }
#endif
};

static EEPROMClass EEPROM __attribute__((unused));

#endif
