#include "Arduino.h"
#include "quirlo_io.h"

#define TICKS_PER_MILLISECOND (QUIRLO_CLOCK / 64000u)

static uint32_t milliseconds;
static uint16_t counted;

// Stands in the start-up code, which runs through it ahead of the constructors of the sketch's objects,
// since some of them wait.
__attribute__((naked, used, section(".init5"))) static void start_clock(void) {
  QUIRLO_TIMER_CONTROL = QUIRLO_TIMER_BY_64;
}

// The counter wraps after 65,536 ticks, a quarter of a second at 16 MHz, so the time must be asked
// for more often than that. loop() and delay() do so in every sensible sketch.
uint32_t millis(void) {
  uint16_t passed = (uint16_t)(QUIRLO_TIMER - counted);
  uint16_t whole = (uint16_t)(passed / TICKS_PER_MILLISECOND);
  milliseconds += whole;
  counted = (uint16_t)(counted + whole * TICKS_PER_MILLISECOND);
  return milliseconds;
}

uint32_t micros(void) {
  uint32_t whole = millis();
  uint16_t rest = (uint16_t)(QUIRLO_TIMER - counted);
  return whole * 1000u + rest * 1000ul / TICKS_PER_MILLISECOND;
}

void delay(uint32_t wanted) {
  uint32_t start = millis();
  while (millis() - start < wanted) yield();
}

void delayMicroseconds(uint32_t wanted) {
  uint32_t start = micros();
  while (micros() - start < wanted) {
  }
}

__attribute__((weak)) void yield(void) {}
