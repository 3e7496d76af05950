// Turns a motor 400 steps forth and back.
#include <AccelStepper.h>

AccelStepper motor(3, 4);

void setup() {
  motor.setMaxSpeed(800);
  motor.setAcceleration(400);
  motor.moveTo(400);
}

void loop() {
  if (!motor.run()) motor.moveTo(motor.currentPosition() == 0 ? 400 : 0);
}
