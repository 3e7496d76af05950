#include "Arduino.h"
#include "quirlo_io.h"

static struct quirlo_pins* block_of(uint8_t pin) { return QUIRLO_PINS(pin >> 4); }

static uint32_t mask_of(uint8_t pin) { return 1u << (pin & 15); }

// The light is an output by itself.
void pinMode(uint8_t pin, uint8_t mode) {
  if (pin >= NUM_DIGITAL_PINS || pin == LED_BUILTIN) return;
  if (mode == OUTPUT) {
    block_of(pin)->direction_set = mask_of(pin);
  } else {
    block_of(pin)->direction_clear = mask_of(pin);
  }
}

static void write_bit(volatile uint32_t* word, uint32_t mask, uint8_t level) {
  if (level == LOW) {
    *word &= ~mask;
  } else {
    *word |= mask;
  }
}

void digitalWrite(uint8_t pin, uint8_t level) {
  if (pin >= NUM_DIGITAL_PINS) return;
  if (pin == LED_BUILTIN) {
    write_bit(&QUIRLO_BOARD->lights, QUIRLO_BOARD_LIGHT, level);
  } else {
    write_bit(&block_of(pin)->output, mask_of(pin), level);
  }
}

int digitalRead(uint8_t pin) {
  if (pin >= NUM_DIGITAL_PINS) return LOW;
  if (pin == LED_BUILTIN) return (QUIRLO_BOARD->lights & QUIRLO_BOARD_LIGHT) ? HIGH : LOW;
  return (block_of(pin)->input & mask_of(pin)) ? HIGH : LOW;
}
