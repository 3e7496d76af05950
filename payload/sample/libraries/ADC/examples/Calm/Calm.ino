// Feeds made-up readings with a spike and prints how the average takes it.
#include <ADC.h>

ADC reading;

void setup() {
  Serial1.begin(115200);
}

void loop() {
  static uint16_t turn = 0;
  reading.add(turn++ % 50 == 0 ? 1000 : 500);
  Serial1.println(reading.average());
  delay(20);
}
