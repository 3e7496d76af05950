// Reports the time on pin 5 at 9600 bits per second.
#include <AltSoftSerial.h>

AltSoftSerial port(5);

void setup() {
  port.begin(9600);
}

void loop() {
  port.print("up for ");
  port.print(millis() / 1000);
  port.println(" s");
  delay(1000);
}
