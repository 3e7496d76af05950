// Prints the half bits of one command.
#include <x10.h>

void setup() {
  uint8_t halfBits[22];
  uint8_t count = x10Burst(0, 5, halfBits);
  Serial1.begin(115200);
  for (uint8_t i = 0; i < count; i++) Serial1.print(halfBits[i] ? '1' : '0');
  Serial1.println();
}

void loop() {}
