// Sends back every byte that comes in, and tells its value.
void setup() {
  Serial1.begin(9600);
}

void loop() {
  int value = Serial1.read();
  if (value < 0) return;
  Serial1.print((char)value);
  Serial1.print(" = 0x");
  Serial1.println(value, HEX);
}
