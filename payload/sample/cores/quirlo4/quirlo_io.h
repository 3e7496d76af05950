// The registers that the core touches. The boards live in an emulator: they are QEMU's MPS2 machines,
// whose serial port, lights and pins lie at the same places for every processor.
#ifndef QUIRLO_IO_H
#define QUIRLO_IO_H

#include <stdint.h>

// What timers and ports count by, in Hz, at every choice of the speed menu: F_CPU is the processor's
// own pace, and an emulated processor has none.
#define QUIRLO_CLOCK 25000000u

// Sixteen pins. The emulator wires none of them: they take every level and read as LOW.
struct quirlo_pins {
  const volatile uint32_t input;
  volatile uint32_t output;
  uint32_t unused[2];
  volatile uint32_t direction_set;    // a 1 makes the pin an output
  volatile uint32_t direction_clear;  // a 1 makes it an input; the pins have no pull-ups
};

#define QUIRLO_PINS(block) ((struct quirlo_pins*)(0x40010000u + 0x1000u * (block)))

// What the board has beside the processor. The first light is the sketch's.
struct quirlo_board {
  volatile uint32_t lights;  // one for each bit
  const uint32_t unused;
  const volatile uint32_t buttons;
  const uint32_t unused_too;
  const volatile uint32_t seconds;
  const volatile uint32_t hundredths;
  volatile uint32_t counter;  // counts up, once for each time that the prescaler has run down
  volatile uint32_t prescaler;
};

#define QUIRLO_BOARD ((struct quirlo_board*)0x40028000u)
#define QUIRLO_BOARD_LIGHT 1u
#define QUIRLO_MICROSECOND (QUIRLO_CLOCK / 1000000u - 1)  // of the prescaler

struct quirlo_uart {
  volatile uint32_t data;  // a write sends, a read takes a received byte
  volatile uint32_t status;
  volatile uint32_t control;
  volatile uint32_t interrupts;
  volatile uint32_t divisor;  // QUIRLO_CLOCK over bit rate, at least 16
};

#define QUIRLO_UART_FULL 1u      // of status: the last byte waits to be sent
#define QUIRLO_UART_RECEIVED 2u  // of status
#define QUIRLO_UART_ENABLE 3u    // of control: both directions
#define QUIRLO_UART_LEAST_DIVISOR 16u

#define QUIRLO_UART1 ((struct quirlo_uart*)0x40004000u)

// Bits 20 to 23 let the program use the floating point unit of a core that has one.
#define QUIRLO_COPROCESSORS (*(volatile uint32_t*)0xE000ED88u)
#define QUIRLO_FPU_ON (0xFu << 20)

#endif
