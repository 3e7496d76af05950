// Runs under Wine: hold_file FILE HOW MARKER keeps FILE open for reading, lets others do what HOW
// says ("nothing" or "read"), makes the file MARKER, and ends once that is removed.
#include <windows.h>

#include <cstring>

namespace {

constexpr DWORD kPause = 20;              // milliseconds
constexpr int kLongestWait = 60000 / 20;  // pauses

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const DWORD sharing = std::strcmp(argv[2], "read") == 0 ? FILE_SHARE_READ : 0;
  HANDLE held = CreateFileA(argv[1], GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr);
  if (held == INVALID_HANDLE_VALUE) return 1;
  HANDLE marker = CreateFileA(argv[3], GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  CloseHandle(marker);
  for (int i = 0; i < kLongestWait; ++i) {
    if (GetFileAttributesA(argv[3]) == INVALID_FILE_ATTRIBUTES) return 0;
    Sleep(kPause);
  }
  return 1;
}
