// Counts its own starts.
#include <EEPROM.h>

void setup() {
  EEPROM.update(7, (uint8_t)(EEPROM.read(7) + 1));
  Serial1.begin(115200);
  Serial1.println(EEPROM.read(7));
}

void loop() {}
