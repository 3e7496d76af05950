#include <stddef.h>
#include <stdint.h>

#include "quirlo_io.h"

typedef void (*handler)(void);

// Set by the linker script: where the program's memory begins and ends, and the constructors of
// the sketch's objects.
extern uint32_t data_load, data_start, data_end, bss_start, bss_end, stack_top;
extern const handler init_start[], init_end[];

// The memory between the data and the stack.
extern char heap_start[], heap_end[];

void* _sbrk(ptrdiff_t wanted);
void _exit(int status);
int _getpid(void);
int _kill(int process, int signal);
void quirlo_start_clock(void);
int main(void);

// The clock runs before the constructors, since some of them wait. A processor with floating point has
// it switched off after a reset, and the first instruction that needs it would be a fault.
static void reset_handler(void) {
#ifdef __ARM_FP
  QUIRLO_COPROCESSORS |= QUIRLO_FPU_ON;
  __asm__ volatile("dsb\n\tisb" ::: "memory");
#endif
  const uint32_t* from = &data_load;
  for (uint32_t* to = &data_start; to < &data_end;) *to++ = *from++;
  for (uint32_t* to = &bss_start; to < &bss_end;) *to++ = 0;
  QUIRLO_BOARD->lights = 0;  // the emulator starts with all of them lit
  quirlo_start_clock();
  for (const handler* construct = init_start; construct < init_end; construct++) (*construct)();
  main();
}

static void unexpected_handler(void) {
  for (;;) {
  }
}

// What the C library asks of its surroundings.
void* _sbrk(ptrdiff_t wanted) {
  static char* end = heap_start;
  if (wanted > heap_end - end) return (void*)-1;
  end += wanted;
  return end - wanted;
}

void _exit(int status) {
  (void)status;
  for (;;) {
  }
}

int _getpid(void) { return 1; }

int _kill(int process, int signal) {
  (void)process;
  (void)signal;
  return -1;
}

// Marks the program's own objects to be destroyed at its end, which never comes.
void* __dso_handle;

// The first entry is the stack, the other fifteen are those of every Cortex-M core.
__attribute__((section(".vectors"), used)) const handler vectors[16] = {
    (handler)&stack_top, reset_handler,      unexpected_handler, unexpected_handler,
    unexpected_handler,  unexpected_handler, unexpected_handler, 0,
    0,                   0,                  0,                  unexpected_handler,
    unexpected_handler,  0,                  unexpected_handler, unexpected_handler,
};
