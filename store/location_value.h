// The reader of a locations.txt, apart from the store, so that the packager can prove with the very
// same algorithm that a release's file yields every key. The format stands in
// docs/store_format.md.
#pragma once

#include <cstddef>

// Bytes of the buffer that FindLocationValue fills, terminator included.
inline constexpr std::size_t kLocationValueSize = 256;

// Finds `key` (not empty) in the `size` bytes of `text`, which need no terminator, and copies its
// value, cut to 255 characters, into `value`. False, with `value` untouched, when the key is not
// found or no double quote opens its value. The reader is as simple as the files allow: the first
// place that holds the key's text counts, whatever surrounds it, comments included; there is no
// second attempt; line ends are white space before the value and plain characters within it.
bool FindLocationValue(const unsigned char* text, std::size_t size, const char* key,
                       char (&value)[kLocationValueSize]);
