// Lights the board's light while a finger is on the plate.
#include <CapacitiveSensor.h>

CapacitiveSensor plate(4, 2);

void setup() {
  pinMode(LED_BUILTIN, OUTPUT);
}

void loop() {
  digitalWrite(LED_BUILTIN, plate.touched() ? HIGH : LOW);
}
