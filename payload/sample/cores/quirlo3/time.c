#include "Arduino.h"
#include "quirlo_io.h"

#define CYCLES_PER_MICROSECOND (QUIRLO_CLOCK / 1000000u)
#define LAST_OF_MILLISECOND (QUIRLO_CLOCK / 1000u - 1)

static volatile uint32_t milliseconds;

void systick_handler(void) { milliseconds++; }

// Called by the start-up code before main().
void quirlo_start_clock(void) {
  QUIRLO_SYSTICK->reload = LAST_OF_MILLISECOND;
  QUIRLO_SYSTICK->current = 0;
  QUIRLO_SYSTICK->control = QUIRLO_SYSTICK_RUN;
}

uint32_t millis(void) { return milliseconds; }

// The counter runs down and reloads at each tick. Reading the tick on both sides of it tells whether
// its handler ran in between. A tick that waits for its handler counts when the counter, being high,
// has reloaded already.
uint32_t micros(void) {
  uint32_t before, left, pending;
  do {
    before = milliseconds;
    left = QUIRLO_SYSTICK->current;
    pending = QUIRLO_INTERRUPT_STATE & QUIRLO_SYSTICK_PENDING;
  } while (before != milliseconds);
  if (pending && left > LAST_OF_MILLISECOND / 2) before++;
  return before * 1000u + (LAST_OF_MILLISECOND - left) / CYCLES_PER_MICROSECOND;
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
