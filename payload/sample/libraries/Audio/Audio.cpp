#include "Audio.h"

// The phase covers one wave in 32 bits and wraps by itself. A parabola for each half wave comes so
// near to a sine that the ear takes it for one, and needs neither a table nor a library.
int16_t AudioTone::next() {
  int32_t x = (int32_t)(phase >> 16) - 32768;
  int32_t half = x < 0 ? x + 32768 : x;
  int32_t curve = (int32_t)((int64_t)half * (32768 - half) * 4 * 32767 / ((int64_t)32768 * 32768));
  phase += step;
  return (int16_t)(x < 0 ? curve : -curve);
}
