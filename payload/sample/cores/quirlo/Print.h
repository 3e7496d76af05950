// Text output for anything that can take a byte.
#ifndef QUIRLO_PRINT_H
#define QUIRLO_PRINT_H

#include <stddef.h>
#include <stdint.h>

#define DEC 10
#define HEX 16
#define BIN 2

class Print {
 public:
  // Takes one byte; returns how many were taken, 1 or 0.
  virtual size_t write(uint8_t value) = 0;
  size_t write(const uint8_t* bytes, size_t count);

  size_t print(const char* text);
  size_t print(char letter) { return write((uint8_t)letter); }
  size_t print(int number, int base = DEC) { return print((long)number, base); }
  size_t print(unsigned number, int base = DEC) { return print((unsigned long)number, base); }
  size_t print(long number, int base = DEC);
  size_t print(unsigned long number, int base = DEC);

  size_t println();
  template <typename T>
  size_t println(T value) {
    size_t printed = print(value);
    return printed + println();
  }
  template <typename T>
  size_t println(T value, int base) {
    size_t printed = print(value, base);
    return printed + println();
  }
};

#endif
