#include "Serial1.h"

#include "quirlo_io.h"

HardwareSerial Serial1;

void HardwareSerial::begin(uint32_t bits_per_second) {
  if (bits_per_second == 0) return;
  QUIRLO_UART1->divisor = (uint16_t)(QUIRLO_CLOCK / 16u / bits_per_second - 1);
  QUIRLO_UART1->control = QUIRLO_UART_ENABLE;
}

int HardwareSerial::available() { return (QUIRLO_UART1->status & QUIRLO_UART_RECEIVED) ? 1 : 0; }

int HardwareSerial::read() {
  if (!available()) return -1;
  return (int)(QUIRLO_UART1->data & 0xFF);
}

size_t HardwareSerial::write(uint8_t value) {
  if (QUIRLO_UART1->control == 0) return 0;  // nothing is sent before begin()
  while (!(QUIRLO_UART1->status & QUIRLO_UART_READY)) {
  }
  QUIRLO_UART1->data = value;
  return 1;
}
