// Prints the distance to whatever is in front of the sensor.
#include <Ping.h>

Ping sensor(7);

void setup() {
  Serial1.begin(115200);
}

void loop() {
  if (sensor.fire()) Serial1.println(sensor.centimeters());
  delay(100);
}
