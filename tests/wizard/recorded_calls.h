// The calls of a few functions of the program, watched on their way to the real ones (linked with
// --wrap).
#pragma once

#include <FL/Fl.H>

#include <string>
#include <vector>

// "IdentifyArduino(folder)" and "FindPreferences(folder, version)", in order. Cleared by tests.
extern std::vector<std::string> RecordedCalls;

// The timers that were set, by their handlers, in seconds.
struct RecordedTimer {
  Fl_Timeout_Handler handler;
  double seconds;

  bool operator==(const RecordedTimer&) const = default;
};
extern std::vector<RecordedTimer> RecordedTimers;
