// Prints the letters of a keyboard's first keys.
#include <USBHost_q36.h>

void setup() {
  Serial1.begin(115200);
  for (uint8_t key = 4; key < 40; key++) Serial1.print(keyboardLetter(key, true));
  Serial1.println();
}

void loop() {}
