#include "Arduino.h"

#include <stdlib.h>

// The start-up code comes here with memory set up and the clock ticking, and never expects a return.
int main() {
  setup();
  for (;;) {
    loop();
    yield();
  }
}

// There is nobody to tell when memory ends or a class lacks the function called: the program stops.
static void stop() {
  for (;;) {
  }
}

void* operator new(size_t size) {
  void* memory = malloc(size);
  if (!memory) stop();
  return memory;
}

void* operator new[](size_t size) { return operator new(size); }
void operator delete(void* memory) { free(memory); }
void operator delete[](void* memory) { free(memory); }
void operator delete(void* memory, size_t) { free(memory); }
void operator delete[](void* memory, size_t) { free(memory); }

extern "C" void __cxa_pure_virtual() { stop(); }
