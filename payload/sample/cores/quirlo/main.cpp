#include "Arduino.h"

// The start-up code comes here with memory set up and the clock ticking, and never expects a return.
int main() {
  setup();
  for (;;) {
    loop();
    yield();
  }
}
