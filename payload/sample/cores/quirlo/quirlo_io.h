// The registers of the 8-bit boards that the core touches. The boards live in an emulator: they are
// QEMU's machines "mega" and "uno", whose processors have them at the same places.
#ifndef QUIRLO_IO_H
#define QUIRLO_IO_H

#include <stdint.h>

// What timer and port count by, in Hz, at every choice of the speed menu: the emulator's clock is fixed.
#define QUIRLO_CLOCK 16000000ul

// Eight pins. The emulator wires none of them. The smaller processor lacks the first block.
struct quirlo_pins {
  const volatile uint8_t input;
  volatile uint8_t direction;  // 1 drives the pin
  volatile uint8_t output;     // level of an output; on an input, 1 ties it to the supply
};

#define QUIRLO_PINS ((struct quirlo_pins*)0x20)

struct quirlo_uart {
  volatile uint8_t status;
  volatile uint8_t control;
  volatile uint8_t format;  // eight bits, no parity, one stop bit after a reset
  volatile uint8_t unused;
  volatile uint16_t divisor;  // QUIRLO_CLOCK over 16 times the bit rate, less 1
  volatile uint8_t data;
};

#define QUIRLO_UART_READY 0x20u     // of status
#define QUIRLO_UART_RECEIVED 0x80u  // of status
#define QUIRLO_UART_ENABLE 0x18u    // of control: both directions

#define QUIRLO_UART1 ((struct quirlo_uart*)0xC0)

// Counts up at a 64th of the clock, once it is told to.
#define QUIRLO_TIMER (*(volatile uint16_t*)0x84)
#define QUIRLO_TIMER_CONTROL (*(volatile uint8_t*)0x81)
#define QUIRLO_TIMER_BY_64 3u

#endif
