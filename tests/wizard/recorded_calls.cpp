#include "tests/wizard/recorded_calls.h"

std::vector<std::string> RecordedCalls;

// The names that the linker gives to the wrapped functions, which are those of the compiler's own
// encoding.
extern "C" {
int __real__Z15IdentifyArduinoPKc(const char* dir);
const char* __real__Z15FindPreferencesPKci(const char* dir, int version);

int __wrap__Z15IdentifyArduinoPKc(const char* dir);
int __wrap__Z15IdentifyArduinoPKc(const char* dir) {
  RecordedCalls.push_back("IdentifyArduino(" + std::string(dir) + ")");
  return __real__Z15IdentifyArduinoPKc(dir);
}

const char* __wrap__Z15FindPreferencesPKci(const char* dir, int version);
const char* __wrap__Z15FindPreferencesPKci(const char* dir, int version) {
  RecordedCalls.push_back("FindPreferences(" + std::string(dir) + ", " + std::to_string(version) +
                          ")");
  return __real__Z15FindPreferencesPKci(dir, version);
}
}
