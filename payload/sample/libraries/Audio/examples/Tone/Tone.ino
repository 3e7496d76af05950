// Prints a wave for the plotter.
#include <Audio.h>

AudioTone tone440(44100);

void setup() {
  Serial1.begin(115200);
  tone440.setPitch(440);
}

void loop() {
  Serial1.println(tone440.next());
  delay(5);
}
