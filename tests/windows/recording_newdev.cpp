// Stands in for newdev.dll: notes its loading and the call, and serves no device. While the file
// kAskFile is there it first asks the user, as Windows does about a driver that it doesn't trust.
#include "tests/windows/recording_calls.h"

extern "C" __declspec(dllexport) BOOL WINAPI
    UpdateDriverForPlugAndPlayDevicesA(HWND parent, LPCSTR hardware_id, LPCSTR inf_path,
                                       DWORD flags, PBOOL reboot) {
  Note("update parent %s, id %s, inf %s, flags %lu, reboot %s", Given(parent), hardware_id,
       inf_path, flags, Given(reboot));
  if (GetFileAttributesA(kAskFile) != INVALID_FILE_ATTRIBUTES) {
    MessageBoxA(parent, "Would you like to install this device software?", "Windows Security",
                MB_YESNO);
  }
  return FALSE;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) Note("newdev loaded in error mode %u", GetErrorMode());
  return TRUE;
}
