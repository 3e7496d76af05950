void setup() {}
