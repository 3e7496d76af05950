// How the author's tools say that they won't or can't: one exception, one line of text. Everything
// below the mains throws it and nothing but the mains catches it.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

// A payload, folder or file that is refused, or a step that failed. what() is one line, without the
// program's name and without a line end: "<file>: <rule>".
class Refusal : public std::runtime_error {
 public:
  // `file` may hold any bytes: those that aren't printable are shown as \xNN, so that the message
  // stays one line whatever a tree brings.
  Refusal(std::string_view file, std::string_view rule);
};

// The words of the C library for `error`, an errno value, after what was tried: "can't read (...)".
std::string WithReason(std::string_view what, int error);

// `text` with its unprintable bytes as \xNN.
std::string Printable(std::string_view text);
