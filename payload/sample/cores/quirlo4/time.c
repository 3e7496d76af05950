#include "Arduino.h"
#include "quirlo_io.h"

static uint32_t milliseconds;
static uint32_t counted;

// Called by the start-up code before main().
void quirlo_start_clock(void) {
  QUIRLO_BOARD->prescaler = QUIRLO_MICROSECOND;
  QUIRLO_BOARD->counter = 0;
}

// The time comes from a counter and not from an interrupt for each millisecond: an emulator that waits
// for its turn on a busy computer loses interrupts, and no counts. It wraps after 71 minutes, so the
// time must be asked for more often than that.
uint32_t millis(void) {
  uint32_t whole = (micros() - counted) / 1000u;
  milliseconds += whole;
  counted += whole * 1000u;
  return milliseconds;
}

uint32_t micros(void) { return QUIRLO_BOARD->counter; }

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
