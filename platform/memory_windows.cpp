#include "platform/memory.h"

// Windows gives pages ahead only to memory that is locked, and few to a program without privileges.
void ExpectWrites(void*, std::size_t) {}
