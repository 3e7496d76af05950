#include "Print.h"

size_t Print::write(const uint8_t* bytes, size_t count) {
  size_t taken = 0;
  while (taken < count && write(bytes[taken]) == 1) taken++;
  return taken;
}

size_t Print::print(const char* text) {
  size_t length = 0;
  while (text[length]) length++;
  return write((const uint8_t*)text, length);
}

size_t Print::print(long number, int base) {
  if (number >= 0 || base != DEC) return print((unsigned long)number, base);
  // Negated as an unsigned number: the smallest long has no positive counterpart.
  size_t sign = print('-');
  return sign + print(0ul - (unsigned long)number, base);
}

size_t Print::print(unsigned long number, int base) {
  if (base < 2 || base > 36) base = DEC;
  char digits[8 * sizeof number];
  size_t first = sizeof digits;
  do {
    unsigned digit = number % (unsigned)base;
    digits[--first] = (char)(digit < 10 ? '0' + digit : 'A' + digit - 10);
    number /= (unsigned)base;
  } while (number);
  return write((const uint8_t*)digits + first, sizeof digits - first);
}

size_t Print::println() { return print("\r\n"); }
