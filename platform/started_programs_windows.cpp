// FLTK keeps the C library's calls that start a program in the one object of its wrappers for
// files. Nothing calls them here, but they would stand among the imports, where whoever judges the
// program by its imports reads what it never does. These start nothing, and stand here before the
// linker looks for the system's own: the pointers whose names begin with __imp_ are what a library
// imports by. Every executable links this file.
namespace {

using System = int (*)(const wchar_t*);
using Execute = int (*)(const wchar_t*, const wchar_t* const*);

int StartNothing(const wchar_t*) {
  return -1;
}
int BecomeNothing(const wchar_t*, const wchar_t* const*) {
  return -1;
}

}  // namespace

extern "C" {

extern const System imported_system __asm__("__imp___wsystem");
const System imported_system = StartNothing;

extern const Execute imported_execute __asm__("__imp___wexecvp");
const Execute imported_execute = BecomeNothing;
}
