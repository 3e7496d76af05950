// Stands in for newdev.dll: notes its loading and the call, and serves no device.
#include "tests/windows/recording_calls.h"

extern "C" __declspec(dllexport) BOOL WINAPI
    UpdateDriverForPlugAndPlayDevicesA(HWND parent, LPCSTR hardware_id, LPCSTR inf_path,
                                       DWORD flags, PBOOL reboot) {
  Note("update parent %s, id %s, inf %s, flags %lu, reboot %s", Given(parent), hardware_id,
       inf_path, flags, Given(reboot));
  return FALSE;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) Note("newdev loaded in error mode %u", GetErrorMode());
  return TRUE;
}
