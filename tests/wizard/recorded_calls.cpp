#include "tests/wizard/recorded_calls.h"

std::vector<std::string> RecordedCalls;

// The names that the linker gives to the wrapped functions, which are those of the compiler's own
// encoding.
int RealIdentifyArduino(const char* dir) __asm__("__real__Z15IdentifyArduinoPKc");
int WrappedIdentifyArduino(const char* dir) __asm__("__wrap__Z15IdentifyArduinoPKc");
const char* RealFindPreferences(const char* dir,
                                int version) __asm__("__real__Z15FindPreferencesPKci");
const char* WrappedFindPreferences(const char* dir,
                                   int version) __asm__("__wrap__Z15FindPreferencesPKci");

int WrappedIdentifyArduino(const char* dir) {
  RecordedCalls.push_back("IdentifyArduino(" + std::string(dir) + ")");
  return RealIdentifyArduino(dir);
}

const char* WrappedFindPreferences(const char* dir, int version) {
  RecordedCalls.push_back("FindPreferences(" + std::string(dir) + ", " + std::to_string(version) +
                          ")");
  return RealFindPreferences(dir, version);
}
