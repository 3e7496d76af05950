#include "tests/wizard/recorded_calls.h"

std::vector<std::string> RecordedCalls;
std::vector<RecordedTimer> RecordedTimers;

// The names that the linker gives to the wrapped functions, which are those of the compiler's own
// encoding.
int RealIdentifyArduino(const char* dir) __asm__("__real__Z15IdentifyArduinoPKc");
int WrappedIdentifyArduino(const char* dir) __asm__("__wrap__Z15IdentifyArduinoPKc");
const char* RealFindPreferences(const char* dir,
                                int version) __asm__("__real__Z15FindPreferencesPKci");
const char* WrappedFindPreferences(const char* dir,
                                   int version) __asm__("__wrap__Z15FindPreferencesPKci");

void RealAddTimeout(double seconds, Fl_Timeout_Handler handler,
                    void* data) __asm__("__real__ZN2Fl11add_timeoutEdPFvPvES0_");
void WrappedAddTimeout(double seconds, Fl_Timeout_Handler handler,
                       void* data) __asm__("__wrap__ZN2Fl11add_timeoutEdPFvPvES0_");

void WrappedAddTimeout(double seconds, Fl_Timeout_Handler handler, void* data) {
  RecordedTimers.push_back({handler, seconds});
  RealAddTimeout(seconds, handler, data);
}

int WrappedIdentifyArduino(const char* dir) {
  RecordedCalls.push_back("IdentifyArduino(" + std::string(dir) + ")");
  return RealIdentifyArduino(dir);
}

const char* WrappedFindPreferences(const char* dir, int version) {
  RecordedCalls.push_back("FindPreferences(" + std::string(dir) + ", " + std::to_string(version) +
                          ")");
  return RealFindPreferences(dir, version);
}
