#include "Arduino.h"
#include "quirlo_io.h"

#define TICKS_PER_MILLISECOND (QUIRLO_CLOCK / 64000u)

static uint32_t milliseconds;

// Stands in the start-up code, which runs through it ahead of the constructors of the sketch's objects,
// since some of them wait.
__attribute__((naked, used, section(".init5"))) static void start_clock(void) {
  QUIRLO_TIMER_CONTROL = QUIRLO_TIMER_BY_64;
}

// Takes the whole milliseconds out of the counter, so that it never comes to its end. An emulator on a
// busy computer notices an end too late, and lets the counter jump. It has room for 262 milliseconds, so
// the time must be asked for more often than that. loop() and delay() do so in every sensible sketch.
uint32_t millis(void) {
  uint16_t whole = (uint16_t)(QUIRLO_TIMER / TICKS_PER_MILLISECOND);
  if (whole) {
    QUIRLO_TIMER -= (uint16_t)(whole * TICKS_PER_MILLISECOND);
    milliseconds += whole;
  }
  return milliseconds;
}

uint32_t micros(void) {
  uint32_t whole = millis();
  return whole * 1000u + QUIRLO_TIMER * 1000ul / TICKS_PER_MILLISECOND;
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
