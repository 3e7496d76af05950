// Tells whether any device hangs on the wire at pin 10.
#include <OneWire.h>

OneWire wire(10);

void setup() {
  Serial1.begin(115200);
}

void loop() {
  Serial1.println(wire.reset() ? "somebody is there" : "nobody is there");
  delay(1000);
}
