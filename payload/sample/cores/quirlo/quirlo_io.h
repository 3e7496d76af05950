// The registers of the 8-bit boards that the core touches. Each block of eight pins has three bytes.
#ifndef QUIRLO_IO_H
#define QUIRLO_IO_H

#include <stdint.h>

struct quirlo_pins {
  const volatile uint8_t input;
  volatile uint8_t direction;  // 1 drives the pin
  volatile uint8_t output;     // level of an output; on an input, 1 ties it to the supply
};

struct quirlo_uart {
  volatile uint8_t status;
  volatile uint16_t divisor;  // core clock over 16 times the bit rate, less 1
  volatile uint8_t data;
};

#define QUIRLO_UART_READY 0x20u
#define QUIRLO_UART_RECEIVED 0x80u

#define QUIRLO_PINS ((struct quirlo_pins*)0x20)
#define QUIRLO_UART1 ((struct quirlo_uart*)0x100)

// Counts up at a 64th of the core clock.
#define QUIRLO_TIMER (*(const volatile uint16_t*)0x110)

#endif
