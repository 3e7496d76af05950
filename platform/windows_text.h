// The two forms of text between which Windows' calls choose, and the program's own. On Windows
// every narrow text of the program is UTF-8, as FLTK's and libzip's are; the system itself works in
// UTF-16, and its narrow calls in the code page of the process. That is UTF-8 too where the system
// honours the executable's manifest (Windows 10 since 1903), and some other one elsewhere.
//
// For sources of Windows alone. Every function writes to the caller's buffer, terminator included,
// and returns false, with the buffer of no meaning, when the text doesn't fit or has no equivalent.
#pragma once

#include <cstddef>

// A path that the program has no wish to be longer than; in UTF-16 never longer than in UTF-8.
inline constexpr std::size_t kWidePathSize = 1024;

// UTF-8 to UTF-16. Bytes that are no UTF-8, as at the end of a path that was cut inside a
// character, have no equivalent: a call that would reach another file than the one named fails.
bool WideFromUtf8(const char* text, wchar_t* wide, std::size_t size);

// UTF-16 to UTF-8. Half a surrogate pair, which a file name may hold, comes out as U+FFFD.
bool Utf8FromWide(const wchar_t* wide, char* text, std::size_t size);

// For a call that wants the code page. A character that the code page lacks has no equivalent.
bool CodePageFromUtf8(const char* text, char* narrow, std::size_t size);

// The same for a path, which has one more way: where the code page lacks a character, the short
// name, which the system makes of plain letters, if the file exists and has one.
bool CodePagePathFromUtf8(const char* path, char* narrow, std::size_t size);

// What such a call has answered: `length` bytes, all terminators included, so that a list of texts
// is converted in one go. What is no text of the code page comes out as the system's replacement.
// Where it doesn't fit nothing is written. False also when memory runs out.
bool Utf8FromCodePage(const char* text, std::size_t length, char* utf8, std::size_t size);

// How many bytes of UTF-8 a byte of the code page becomes at most.
std::size_t Utf8BytesOfAByte();
