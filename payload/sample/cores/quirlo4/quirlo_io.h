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

// The lights that the emulator has, one for each bit. The first is the board's.
#define QUIRLO_LIGHTS (*(volatile uint32_t*)0x40028000u)
#define QUIRLO_BOARD_LIGHT 1u

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

// The timer that every Cortex-M core has, at the address that the architecture gives it.
struct quirlo_systick {
  volatile uint32_t control;
  volatile uint32_t reload;
  volatile uint32_t current;
};

#define QUIRLO_SYSTICK ((struct quirlo_systick*)0xE000E010u)
#define QUIRLO_SYSTICK_RUN 7u  // enabled, with its interrupt, at QUIRLO_CLOCK

// Tells that the timer's interrupt is asked for and its handler has not run yet.
#define QUIRLO_INTERRUPT_STATE (*(const volatile uint32_t*)0xE000ED04u)
#define QUIRLO_SYSTICK_PENDING (1u << 26)

// Bits 20 to 23 let the program use the floating point unit of a core that has one.
#define QUIRLO_COPROCESSORS (*(volatile uint32_t*)0xE000ED88u)
#define QUIRLO_FPU_ON (0xFu << 20)

#endif
