// The sketch's view of a Quirlo 3 or LC board: types, pins and time. The core is deliberately small:
// what is declared here is implemented here.
#ifndef QUIRLO_ARDUINO_H
#define QUIRLO_ARDUINO_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#define HIGH 1
#define LOW 0

#define INPUT 0
#define OUTPUT 1
#define INPUT_PULLUP 2

#define LED_BUILTIN 13
#define NUM_DIGITAL_PINS 48

#define lowByte(w) ((uint8_t)((w) & 0xFF))
#define highByte(w) ((uint8_t)((w) >> 8))
#define bit(n) (1UL << (n))
#define bitRead(value, n) (((value) >> (n)) & 1UL)

typedef uint8_t byte;
typedef bool boolean;
typedef uint16_t word;

#ifdef __cplusplus
extern "C" {
#endif

// Written by the sketch. setup() runs once, loop() for ever after.
void setup(void);
void loop(void);

// Pins count from 0. A pin at or above NUM_DIGITAL_PINS is ignored, and reads as LOW.
void pinMode(uint8_t pin, uint8_t mode);
void digitalWrite(uint8_t pin, uint8_t level);
int digitalRead(uint8_t pin);

// Time since the start. millis() wraps after 49 days, micros() after 71 minutes.
uint32_t millis(void);
uint32_t micros(void);
void delay(uint32_t milliseconds);
void delayMicroseconds(uint32_t microseconds);

// Called by delay() while it waits; a library may define its own. The core's does nothing.
void yield(void);

#ifdef __cplusplus
}

#include "Print.h"
#include "Serial1.h"
#endif

#endif
