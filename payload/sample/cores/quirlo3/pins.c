#include "Arduino.h"
#include "quirlo_io.h"

static struct quirlo_pins* block_of(uint8_t pin) { return QUIRLO_PINS + (pin >> 5); }

static uint32_t mask_of(uint8_t pin) { return 1u << (pin & 31); }

void pinMode(uint8_t pin, uint8_t mode) {
  if (pin >= NUM_DIGITAL_PINS) return;
  struct quirlo_pins* block = block_of(pin);
  uint32_t mask = mask_of(pin);
  if (mode == INPUT_PULLUP) {
    block->pullup |= mask;
  } else {
    block->pullup &= ~mask;
  }
  if (mode == OUTPUT) {
    block->direction |= mask;
  } else {
    block->direction &= ~mask;
  }
}

void digitalWrite(uint8_t pin, uint8_t level) {
  if (pin >= NUM_DIGITAL_PINS) return;
  if (level == LOW) {
    block_of(pin)->output &= ~mask_of(pin);
  } else {
    block_of(pin)->output |= mask_of(pin);
  }
}

int digitalRead(uint8_t pin) {
  if (pin >= NUM_DIGITAL_PINS) return LOW;
  return (block_of(pin)->input & mask_of(pin)) ? HIGH : LOW;
}
