// Says hello twice a second, and counts, so that you see at once whether anything was lost.
unsigned long count = 0;

void setup() {
  Serial1.begin(115200);
}

void loop() {
  Serial1.print("Hello number ");
  Serial1.println(count++);
  delay(500);
}
