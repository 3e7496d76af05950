#include "Arduino.h"
#include "quirlo_io.h"

static struct quirlo_pins* block_of(uint8_t pin) { return QUIRLO_PINS + (pin >> 3); }

static uint8_t mask_of(uint8_t pin) { return (uint8_t)(1u << (pin & 7)); }

// On these boards one register is the level of an output and the pull-up of an input.
void pinMode(uint8_t pin, uint8_t mode) {
  if (pin >= NUM_DIGITAL_PINS) return;
  if (mode == OUTPUT) {
    block_of(pin)->direction |= mask_of(pin);
    return;
  }
  block_of(pin)->direction &= (uint8_t)~mask_of(pin);
  digitalWrite(pin, mode == INPUT_PULLUP ? HIGH : LOW);
}

void digitalWrite(uint8_t pin, uint8_t level) {
  if (pin >= NUM_DIGITAL_PINS) return;
  if (level == LOW) {
    block_of(pin)->output &= (uint8_t)~mask_of(pin);
  } else {
    block_of(pin)->output |= mask_of(pin);
  }
}

int digitalRead(uint8_t pin) {
  if (pin >= NUM_DIGITAL_PINS) return LOW;
  return (block_of(pin)->input & mask_of(pin)) ? HIGH : LOW;
}
