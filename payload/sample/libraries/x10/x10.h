// Times the bursts that switch lamps over the mains.
#ifndef x10_h
#define x10_h

#include <Arduino.h>

// Writes the 22 half bits of a command behind one another: a start, then each bit and its opposite.
// Returns how many were written. The house counts from 0 for A, the command has five bits.
uint8_t x10Burst(uint8_t house, uint8_t command, uint8_t* halfBits);

#endif
