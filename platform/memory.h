// What the system is told about memory. Advice: it changes no content, and a system that doesn't
// take it is as good.
#pragma once

#include <cstddef>

// Says that all of the `size` bytes at `block`, which the caller owns, are about to be written. A
// system that knows of such advice gives them their pages now, in one go, instead of at the first
// touch of each. Nothing is reported.
void ExpectWrites(void* block, std::size_t size);
