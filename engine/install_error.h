// The one shared error text through which all of the install engine, and the driver install,
// report failure. Whoever decides to show it reads it here; nothing here shows anything.
#pragma once

#include <cstddef>

inline constexpr std::size_t kInstallErrorSize = 512;  // bytes, terminator included

// Formats into the shared text, cut at 511 characters, and so replaces what stood there.
void SetInstallError(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The shared text: empty until the first failure, then that of the latest one. It is never cleared
// in a run, so it means something only after a negative result.
const char* InstallErrorText();

// Empties the text, for tests.
void ResetInstallError();
