// A program that carries a store and is only read, never run.
#include "store/embedded_file_store.h"

int main() {
  return LoadEmbeddedFiles() ? 0 : 1;
}
