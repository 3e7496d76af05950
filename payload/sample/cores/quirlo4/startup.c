#include <stdint.h>

typedef void (*handler)(void);

// Set by the linker script: where the program's memory begins and ends, and the constructors of
// the sketch's objects.
extern uint32_t data_load, data_start, data_end, bss_start, bss_end, stack_top;
extern const handler init_start[], init_end[];

void systick_handler(void);
void quirlo_start_clock(void);
int main(void);

// The clock runs before the constructors, since some of them wait.
static void reset_handler(void) {
  const uint32_t* from = &data_load;
  for (uint32_t* to = &data_start; to < &data_end;) *to++ = *from++;
  for (uint32_t* to = &bss_start; to < &bss_end;) *to++ = 0;
  quirlo_start_clock();
  for (const handler* construct = init_start; construct < init_end; construct++) (*construct)();
  main();
}

static void unexpected_handler(void) {
  for (;;) {
  }
}

// The first entry is the stack, the other fifteen are those of every Cortex-M core.
__attribute__((section(".vectors"), used)) const handler vectors[16] = {
    (handler)&stack_top, reset_handler,      unexpected_handler, unexpected_handler,
    unexpected_handler,  unexpected_handler, unexpected_handler, 0,
    0,                   0,                  0,                  unexpected_handler,
    unexpected_handler,  0,                  unexpected_handler, systick_handler,
};
