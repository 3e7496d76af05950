// A library that leaves a file named like itself with ".loaded" behind it as soon as a process
// loads it. Tests plant it under the names of system libraries.
#include <windows.h>

#include <cstring>

extern "C" BOOL WINAPI DllMain(HINSTANCE self, DWORD reason, LPVOID) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  char path[MAX_PATH + sizeof ".loaded"];
  const DWORD length = GetModuleFileNameA(self, path, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return TRUE;
  std::strcpy(path + length, ".loaded");
  CloseHandle(CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  return TRUE;
}
