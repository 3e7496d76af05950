// A program with what the protections guard, a buffer on the stack and calls that fill it, to be
// built without any of them; and with a byte of memory that is writable and executable.
#include <cstdio>
#include <cstring>

__asm__(".section .wxcode, \"awx\"\n .byte 0\n .text");

int main(int argc, char** argv) {
  char text[32];
  std::strcpy(text, argc > 1 ? argv[1] : "nothing");
  return std::printf("%s\n", text) < 0 ? 1 : 0;
}
