// Makes samples of a tone. What plays them is up to the sketch.
#ifndef Audio_h
#define Audio_h

#include <Arduino.h>

class AudioTone {
 public:
  explicit AudioTone(uint32_t samplesPerSecond) : rate(samplesPerSecond) {}

  // Hertz, up to half the sample rate.
  void setPitch(float hertz) { step = (uint32_t)(hertz * 4294967296.0f / (float)rate); }

  // The next sample, from -32767 to 32767.
  int16_t next();

 private:
  uint32_t rate, phase = 0, step = 0;
};

#endif
