// What the wizard says after a failed install: what went wrong, and a guess why. The guess stands
// on two facts, the process's rights and the kind of the entry handled last (AntivirusHint); the
// folder and its permissions are not looked at.
#pragma once

#include <cstddef>

// Bytes of the advice, terminator included. The longest, around an error text of 511 characters,
// has 970, so no paragraph is ever cut.
inline constexpr std::size_t kAdviceSize = 1024;

// Composes the advice around the shared error text. It lies in one static text that the next call
// rebuilds.
const char* FailureAdvice();
