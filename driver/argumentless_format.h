// A format that is printed without any arguments.
#pragma once

#include <cstddef>

// Prints `format` into `buffer`, cut to `size` - 1 characters and always terminated, as a printf
// that is given no arguments: "%%" prints a percent sign, and every other directive prints its
// argument, of which there is none, so it prints nothing (and %n stores nothing). A percent sign
// that begins no directive, as at the end of the text, is printed as it stands.
//
// printf itself would read arguments that don't exist, which is undefined; this is the same
// reading with a defined end.
void FormatWithoutArguments(char* buffer, std::size_t size, const char* format);
