// The calls of a few functions of the program, watched on their way to the real ones (linked with
// --wrap).
#pragma once

#include <string>
#include <vector>

// "IdentifyArduino(folder)" and "FindPreferences(folder, version)", in order. Cleared by tests.
extern std::vector<std::string> RecordedCalls;
