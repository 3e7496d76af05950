#include "Arduino.h"
#include "quirlo_io.h"

#define CYCLES_PER_MICROSECOND (F_CPU / 1000000u)

static volatile uint32_t milliseconds;

void systick_handler(void) { milliseconds++; }

// Called by the start-up code before main().
void quirlo_start_clock(void) {
  QUIRLO_SYSTICK->reload = F_CPU / 1000u - 1;
  QUIRLO_SYSTICK->current = 0;
  QUIRLO_SYSTICK->control = QUIRLO_SYSTICK_RUN;
}

uint32_t millis(void) { return milliseconds; }

// The counter runs down and reloads at each tick. Reading the tick on both sides of it tells
// whether it reloaded in between.
uint32_t micros(void) {
  uint32_t before, left;
  do {
    before = milliseconds;
    left = QUIRLO_SYSTICK->current;
  } while (before != milliseconds);
  return before * 1000u + (F_CPU / 1000u - 1 - left) / CYCLES_PER_MICROSECOND;
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
