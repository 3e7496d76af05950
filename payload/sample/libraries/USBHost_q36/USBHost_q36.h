// Turns the key numbers that USB keyboards send into letters.
#ifndef USBHost_q36_h
#define USBHost_q36_h

#include <Arduino.h>

// The letter or digit of a key, 0 for any other key. Shift makes letters big and leaves digits.
inline char keyboardLetter(uint8_t key, bool shift) {
  if (key >= 4 && key <= 29) return (char)((shift ? 'A' : 'a') + key - 4);
  if (key >= 30 && key <= 38) return (char)('1' + key - 30);
  return key == 39 ? '0' : 0;
}

#endif
