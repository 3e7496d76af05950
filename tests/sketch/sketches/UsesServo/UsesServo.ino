// Turns a servo from one end to the other.
#include <Servo.h>

Servo arm;

void setup() {
  arm.attach(9);
}

void loop() {
  static uint8_t angle = 0;
  arm.write(angle++);
  arm.refresh();
  delay(20);
}
