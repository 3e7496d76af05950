#include "Serial1.h"

#include "quirlo_io.h"

HardwareSerial Serial1;

void HardwareSerial::begin(uint32_t bits_per_second) {
  if (bits_per_second == 0) return;
  uint32_t divisor = QUIRLO_CLOCK / bits_per_second;
  QUIRLO_UART1->divisor = divisor < QUIRLO_UART_LEAST_DIVISOR ? QUIRLO_UART_LEAST_DIVISOR : divisor;
  QUIRLO_UART1->control = QUIRLO_UART_ENABLE;
}

int HardwareSerial::available() { return (QUIRLO_UART1->status & QUIRLO_UART_RECEIVED) ? 1 : 0; }

int HardwareSerial::read() {
  if (!available()) return -1;
  return (int)(QUIRLO_UART1->data & 0xFF);
}

size_t HardwareSerial::write(uint8_t value) {
  if (QUIRLO_UART1->control == 0) return 0;  // before begin() room would never come
  while (QUIRLO_UART1->status & QUIRLO_UART_FULL) {
  }
  QUIRLO_UART1->data = value;
  return 1;
}
