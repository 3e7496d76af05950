// The tests on the text of an entry's name, apart from the store, so that the packager makes them
// with the same code.
#pragma once

// Whether `text` ends with `suffix`; false when it is shorter.
bool EndsWith(const char* text, const char* suffix);

// The position in `text` just after `prefix`, or null when it doesn't begin with the whole of it.
const char* AfterPrefix(const char* text, const char* prefix);

// Joins two texts in one shared scratch text of 4,096 bytes, cut to fit. Valid up to the next call.
const char* ScratchConcat(const char* first, const char* second);
