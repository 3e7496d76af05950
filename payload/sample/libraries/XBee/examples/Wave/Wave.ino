// Sends a short frame each second.
#include <XBee.h>

XBeeFrame frame;

void setup() {
  Serial1.begin(9600);
}

void loop() {
  frame.begin();
  frame.add('h');
  frame.add('i');
  frame.sendTo(Serial1);
  delay(1000);
}
