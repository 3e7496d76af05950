// The light follows a button between pin 2 and ground. The pull-up holds the pin high while the
// button is open, so a pressed button reads as LOW.
const uint8_t buttonPin = 2;

void setup() {
  pinMode(buttonPin, INPUT_PULLUP);
  pinMode(LED_BUILTIN, OUTPUT);
}

void loop() {
  digitalWrite(LED_BUILTIN, digitalRead(buttonPin) == LOW ? HIGH : LOW);
}
