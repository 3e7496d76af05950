// Stands in for setupapi.dll: a made machine that notes every call with all its arguments. It has
// no usbser.inf, one installed oem7.inf that is another driver, a device that is absent and holds
// the boards' id among its hardware ids, and one that is plugged in and holds it among its
// compatible ids. While the file C:\refuse.txt stands it refuses to install.
#include <windows.h>

#include <setupapi.h>

#include <cstring>
#include <iterator>

#include "tests/windows/recording_calls.h"

#define EXPORTED extern "C" __declspec(dllexport)

namespace {

constexpr char kId[] = "USB\\Class_02&SubClass_02&Prot_01";
constexpr DWORD kFlagsBefore = 0x400;
constexpr DWORD kAbsent = 13;  // CR_NO_SUCH_DEVINST

struct Line {
  const char* section;
  const char* text;
};

const Line kStaged[] = {
    {"Version", "$Windows NT$"},
    {"Version", "Ports"},
    {"DeviceList", "Another,USB\\VID_1"},
    {"DeviceList", "DriverInstall,USB\\Class_02&SubClass_02&Prot_01"},
    {"DeviceList", "DriverInstall,"},
};
const Line kInstalled[] = {{"Version", "$Windows NT$"}, {"Version", "Modem"}};

// A handle is the address of one of these.
struct File {
  const Line* lines;
  UINT count;
};
const File kStagedFile = {kStaged, std::size(kStaged)};
const File kInstalledFile = {kInstalled, std::size(kInstalled)};

const char* Text(LPCSTR text) {
  return text == nullptr ? "-" : text;
}

bool EndsWith(const char* text, const char* end) {
  const std::size_t length = std::strlen(text);
  const std::size_t end_length = std::strlen(end);
  return length >= end_length && std::strcmp(text + length - end_length, end) == 0;
}

BOOL Give(const char* text, PSTR buffer, DWORD size) {
  const std::size_t needed = std::strlen(text) + 1;
  if (needed > size) return FALSE;
  std::memcpy(buffer, text, needed);
  return TRUE;
}

}  // namespace

EXPORTED HINF WINAPI SetupOpenInfFileA(PCSTR name, PCSTR inf_class, DWORD style, PUINT line) {
  Note("open %s, class %s, style %lu, line %s", name, Text(inf_class), style, Given(line));
  if (EndsWith(name, "cdcacm.inf")) return const_cast<File*>(&kStagedFile);
  if (std::strcmp(name, "oem7.inf") == 0) return const_cast<File*>(&kInstalledFile);
  SetLastError(ERROR_FILE_NOT_FOUND);
  return INVALID_HANDLE_VALUE;
}

EXPORTED void WINAPI SetupCloseInfFile(HINF) {
  Note("close");
}

EXPORTED BOOL WINAPI SetupFindFirstLineA(HINF inf, PCSTR section, PCSTR key, PINFCONTEXT context) {
  Note("first line of %s, key %s", section, Text(key));
  const auto* file = static_cast<const File*>(inf);
  for (UINT i = 0; i < file->count; ++i) {
    if (std::strcmp(file->lines[i].section, section) != 0) continue;
    *context = {inf, inf, 0, i};
    return TRUE;
  }
  return FALSE;
}

EXPORTED BOOL WINAPI SetupFindNextLine(PINFCONTEXT in, PINFCONTEXT out) {
  Note("next line, %s", in == out ? "same context" : "another context");
  const auto* file = static_cast<const File*>(in->Inf);
  const UINT next = in->Line + 1;
  if (next >= file->count ||
      std::strcmp(file->lines[next].section, file->lines[in->Line].section) != 0) {
    return FALSE;
  }
  *out = *in;
  out->Line = next;
  return TRUE;
}

EXPORTED BOOL WINAPI SetupGetLineTextA(PINFCONTEXT context, HINF inf, PCSTR section, PCSTR key,
                                       PSTR buffer, DWORD size, PDWORD required) {
  Note("text, inf %s, section %s, key %s, size %lu, required %s", Given(inf), Text(section),
       Text(key), size, Given(required));
  if (context == nullptr) return FALSE;
  return Give(static_cast<const File*>(context->Inf)->lines[context->Line].text, buffer, size);
}

EXPORTED BOOL WINAPI SetupGetInfFileListA(PCSTR folder, DWORD style, PSTR buffer, DWORD size,
                                          PDWORD required) {
  Note("list, folder %s, style %lu, buffer %s, size %lu", Text(folder), style, Given(buffer), size);
  static const char names[] = "usbstor.inf\0oem7.inf\0";
  if (required != nullptr) *required = sizeof names;
  if (buffer == nullptr) return TRUE;
  if (size < sizeof names) return FALSE;
  std::memcpy(buffer, names, sizeof names);
  return TRUE;
}

EXPORTED BOOL WINAPI SetupCopyOEMInfA(PCSTR source, PCSTR media, DWORD media_type, DWORD style,
                                      PSTR name, DWORD size, PDWORD required, PSTR* component) {
  Note("copy %s, media %s, type %lu, style %lu, size %lu, required %s, component %s", source,
       Text(media), media_type, style, size, Given(required), Given(component));
  if (GetFileAttributesA("C:\\refuse.txt") != INVALID_FILE_ATTRIBUTES) {
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
  }
  return Give("oem42.inf", name, size);
}

EXPORTED HDEVINFO WINAPI SetupDiGetClassDevsA(const GUID* device_class, PCSTR enumerator,
                                              HWND parent, DWORD flags) {
  Note("devices, class %s, enumerator %s, parent %s, flags %lu", Given(device_class),
       Text(enumerator), Given(parent), flags);
  static int set;
  return &set;
}

EXPORTED BOOL WINAPI SetupDiEnumDeviceInfo(HDEVINFO, DWORD index, PSP_DEVINFO_DATA device) {
  Note("device %lu, record of %lu", index, device->cbSize);
  if (index > 1) return FALSE;
  device->DevInst = 100 + index;
  return TRUE;
}

EXPORTED BOOL WINAPI SetupDiGetDeviceRegistryPropertyA(HDEVINFO, PSP_DEVINFO_DATA device,
                                                       DWORD property, PDWORD type, PBYTE buffer,
                                                       DWORD size, PDWORD required) {
  Note("property %lu of %lu, size %lu, required %s", property, device->DevInst, size,
       Given(required));
  if (property == SPDRP_CONFIGFLAGS) {
    *type = REG_DWORD;
    std::memcpy(buffer, &kFlagsBefore, sizeof kFlagsBefore);
    return TRUE;
  }
  const DWORD holder = property == SPDRP_HARDWAREID ? 100 : 101;
  if (device->DevInst != holder) return FALSE;
  *type = REG_MULTI_SZ;
  static const char before[] = "USB\\VID_1";
  std::memcpy(buffer, before, sizeof before);
  std::memcpy(buffer + sizeof before, kId, sizeof kId);
  buffer[sizeof before + sizeof kId] = 0;
  return TRUE;
}

EXPORTED BOOL WINAPI SetupDiSetDeviceRegistryPropertyA(HDEVINFO, PSP_DEVINFO_DATA device,
                                                       DWORD property, const BYTE* value,
                                                       DWORD size) {
  DWORD flags = 0;
  if (size == sizeof flags) std::memcpy(&flags, value, sizeof flags);
  Note("set property %lu of %lu to %lx, size %lu", property, device->DevInst, flags, size);
  return TRUE;
}

EXPORTED BOOL WINAPI SetupDiDestroyDeviceInfoList(HDEVINFO) {
  Note("devices done");
  return TRUE;
}

EXPORTED DWORD WINAPI CM_Get_DevNode_Status(PULONG status, PULONG problem, DWORD instance,
                                            ULONG flags) {
  Note("status of %lu, status %s, problem %s, flags %lu", instance, Given(status), Given(problem),
       flags);
  return instance == 100 ? kAbsent : 0;
}
