// FLTK keeps the C library's calls that start a program in the one object of its wrappers for
// files. Nothing calls them here, but they would stand among the imports, where whoever judges the
// program by its imports reads what it never does. These of the same names start nothing, and stand
// here before the linker looks for the system's own. Every executable links this file.
extern "C" {

int StartNothing(const void*) __asm__("_system");
int StartNothing(const void*) {
  return -1;
}
int StartNothingWide(const void*) __asm__("__wsystem");
int StartNothingWide(const void*) {
  return -1;
}
int BecomeNothing(const void*, const void*) __asm__("__execvp");
int BecomeNothing(const void*, const void*) {
  return -1;
}
int BecomeNothingWide(const void*, const void*) __asm__("__wexecvp");
int BecomeNothingWide(const void*, const void*) {
  return -1;
}
}
