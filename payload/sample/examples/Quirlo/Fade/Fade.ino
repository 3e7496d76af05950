// Fades the light up and down with pulses of changing width, on any pin and without a timer.
const uint32_t period = 2000;  // microseconds, short enough for the eye not to see it flicker
int32_t width = 0;
int32_t step = 20;

void setup() {
  pinMode(LED_BUILTIN, OUTPUT);
}

void loop() {
  digitalWrite(LED_BUILTIN, HIGH);
  delayMicroseconds(width);
  digitalWrite(LED_BUILTIN, LOW);
  delayMicroseconds(period - width);

  width += step;
  if (width <= 0 || width >= (int32_t)period) step = -step;
}
