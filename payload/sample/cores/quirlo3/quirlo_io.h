// The registers that the core touches. One block of pins and one serial port are enough for it.
#ifndef QUIRLO_IO_H
#define QUIRLO_IO_H

#include <stdint.h>

// Each pin owns one bit of the 32-bit words; pins from 32 on are in the second block.
struct quirlo_pins {
  volatile uint32_t output;     // level driven on an output pin
  volatile uint32_t direction;  // 1 drives the pin
  volatile uint32_t pullup;     // 1 ties an input to the supply
  const volatile uint32_t input;
};

struct quirlo_uart {
  volatile uint32_t divisor;  // core clock over bit rate
  volatile uint32_t data;     // a write sends, a read takes a received byte
  const volatile uint32_t status;
};

#define QUIRLO_UART_READY 1u
#define QUIRLO_UART_RECEIVED 2u

#define QUIRLO_PINS ((struct quirlo_pins*)0x400F0000u)
#define QUIRLO_UART1 ((struct quirlo_uart*)0x400F1000u)

// The timer that every Cortex-M core has, at the address that the architecture gives it.
struct quirlo_systick {
  volatile uint32_t control;
  volatile uint32_t reload;
  volatile uint32_t current;
};

#define QUIRLO_SYSTICK ((struct quirlo_systick*)0xE000E010u)
#define QUIRLO_SYSTICK_RUN 7u  // enabled, with its interrupt, at the core clock

#endif
