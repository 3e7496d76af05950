// windows.h first: the others build on it.
#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

#include "driver/driver_platform.h"
#include "platform/text.h"
#include "platform/windows_library.h"
#include "platform/windows_text.h"

// The system's records and ours are copied into one another bit by bit.
static_assert(sizeof(InfContext) == sizeof(INFCONTEXT));
static_assert(offsetof(InfContext, section) == offsetof(INFCONTEXT, Section));
static_assert(offsetof(InfContext, line) == offsetof(INFCONTEXT, Line));
static_assert(sizeof(DeviceInfo) == sizeof(SP_DEVINFO_DATA));
static_assert(offsetof(DeviceInfo, class_id) == offsetof(SP_DEVINFO_DATA, ClassGuid));
static_assert(offsetof(DeviceInfo, instance) == offsetof(SP_DEVINFO_DATA, DevInst));
static_assert(offsetof(DeviceInfo, reserved) == offsetof(SP_DEVINFO_DATA, Reserved));

static_assert(INF_STYLE_WIN4 == 2 && SPOST_NONE == 0 && SP_COPY_DELETESOURCE == 1);
static_assert(DIGCF_ALLCLASSES == 4);
static_assert(kHardwareIdProperty == SPDRP_HARDWAREID);
static_assert(kCompatibleIdsProperty == SPDRP_COMPATIBLEIDS);
static_assert(kConfigFlagsProperty == SPDRP_CONFIGFLAGS);
static_assert(kTypeDword == REG_DWORD && kTypeMultiString == REG_MULTI_SZ);
static_assert(kNoSuchDeviceInstance == CR_NO_SUCH_DEVINST);
static_assert(kQueryAndSetValue == (KEY_QUERY_VALUE | KEY_SET_VALUE));
static_assert(kRegistryView64 == KEY_WOW64_64KEY && kRegistryView32 == KEY_WOW64_32KEY);
static_assert(FORMAT_MESSAGE_FROM_SYSTEM == 0x1000);
static_assert(sizeof(DWORD) == sizeof(std::uint32_t) && sizeof(UINT) == sizeof(std::uint32_t));

namespace {

constexpr std::size_t kBytesOfAUnit = 3;  // of UTF-8, for one unit of UTF-16, at most
constexpr std::size_t kLongestMessage = 800;
constexpr std::size_t kLongestInfName = 260;

// Room for what a narrow call answers before it is converted, and two zeros behind it, so that a
// text or list without its end ends there. Null when memory runs out.
using Answer = std::unique_ptr<char[]>;
Answer NewAnswer(std::size_t size) {
  return Answer(new (std::nothrow) char[size + 2]());
}

bool GiveText(const char* answer, char* text, std::size_t size) {
  return Utf8FromCodePage(answer, std::strlen(answer) + 1, text, size);
}

// Gives a text of any length, cut between two characters where it is too long.
template <std::size_t kSize>
void GiveCutText(const char (&answer)[kSize], char* text, std::size_t size) {
  char whole[kBytesOfAUnit * kSize];  // a byte of a code page is one unit at most
  if (GiveText(answer, whole, sizeof whole)) CopyWholeCharacters(text, size, whole);
}

// A list of texts, each with its terminator, that ends with an empty one. Its end is left out where
// it finds no room, as in an answer that had none.
bool GiveList(const char* answer, std::size_t answer_size, char* list, std::size_t size) {
  const char* end = answer;
  while (*end != '\0') end += std::strlen(end) + 1;
  const std::size_t length = static_cast<std::size_t>(end - answer) + 1;
  return Utf8FromCodePage(answer, std::min(length, answer_size), list, size);
}

// Calls `operation` with the system's form of `ours`, which may be changed by it.
template <typename System, typename Ours, typename Operation>
BOOL WithSystemForm(Ours* ours, Operation operation) {
  System system = std::bit_cast<System>(*ours);
  const BOOL result = operation(&system);
  *ours = std::bit_cast<Ours>(system);
  return result;
}

using UpdateDriverFunction = BOOL(WINAPI*)(HWND, LPCSTR, LPCSTR, DWORD, PBOOL);

// Looked up at the first use and kept for the life of the process; null when it isn't to be had.
UpdateDriverFunction FindUpdateDriver() {
  static const UpdateDriverFunction function = [] {
    HMODULE library = LoadSystemLibrary(L"newdev.dll");
    if (library == nullptr) return UpdateDriverFunction{nullptr};
    return reinterpret_cast<UpdateDriverFunction>(
        reinterpret_cast<void*>(GetProcAddress(library, "UpdateDriverForPlugAndPlayDevicesA")));
  }();
  return function;
}

}  // namespace

// ---- INF files --------------------------------------------------------------------------------

InfFile* OpenInfFile(const char* name) {
  char path[kWidePathSize];
  if (!CodePagePathFromUtf8(name, path, sizeof path)) return nullptr;
  HINF file = SetupOpenInfFileA(path, nullptr, INF_STYLE_WIN4, nullptr);
  return file == INVALID_HANDLE_VALUE ? nullptr : static_cast<InfFile*>(file);
}

void CloseInfFile(InfFile* file) {
  SetupCloseInfFile(file);
}

bool FindFirstInfLine(InfFile* file, const char* section, InfContext* context) {
  INFCONTEXT found;
  if (!SetupFindFirstLineA(file, section, nullptr, &found)) return false;
  *context = std::bit_cast<InfContext>(found);
  return true;
}

bool FindNextInfLine(InfContext* context) {
  return WithSystemForm<INFCONTEXT>(
             context, [](INFCONTEXT* line) { return SetupFindNextLine(line, line); }) != FALSE;
}

bool GetInfLineText(InfContext* context, char* buffer, std::uint32_t size) {
  const Answer answer = NewAnswer(size);
  return answer != nullptr &&
         WithSystemForm<INFCONTEXT>(context,
                                    [&](INFCONTEXT* line) {
                                      return SetupGetLineTextA(line, nullptr, nullptr, nullptr,
                                                               answer.get(), size, nullptr);
                                    }) != FALSE &&
         GiveText(answer.get(), buffer, size);
}

bool GetInfKeyText(InfFile* file, const char* section, const char* key, char* buffer,
                   std::uint32_t size) {
  const Answer answer = NewAnswer(size);
  return answer != nullptr &&
         SetupGetLineTextA(nullptr, file, section, key, answer.get(), size, nullptr) != FALSE &&
         GiveText(answer.get(), buffer, size);
}

bool GetInfFileList(char* buffer, std::uint32_t size, std::uint32_t* required_size) {
  const auto growth = static_cast<std::uint32_t>(Utf8BytesOfAByte());
  const Answer answer = NewAnswer(size / growth);
  DWORD required = 0;
  if (answer == nullptr ||
      !SetupGetInfFileListA(nullptr, INF_STYLE_WIN4, buffer == nullptr ? nullptr : answer.get(),
                            size / growth, &required)) {
    return false;
  }
  if (required_size != nullptr) *required_size = required * growth;
  return buffer == nullptr || GiveList(answer.get(), size / growth, buffer, size);
}

bool CopyInfFile(const char* path, char* installed_name, std::uint32_t size) {
  char source[kWidePathSize];
  if (!CodePagePathFromUtf8(path, source, sizeof source)) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    return false;
  }
  char name[kLongestInfName] = "";
  if (SetupCopyOEMInfA(source, nullptr, SPOST_NONE, SP_COPY_DELETESOURCE, name,
                       std::min<std::uint32_t>(size, sizeof name), nullptr, nullptr) == FALSE) {
    return false;  // nothing stands between here and the question for the system's code
  }
  GiveCutText(name, installed_name, size);
  return true;
}

// ---- Devices ----------------------------------------------------------------------------------

bool UpdateDevices(void* parent_window, const char* hardware_id, const char* inf_path) {
  const UpdateDriverFunction update = FindUpdateDriver();
  char path[kWidePathSize];
  const std::size_t id_size = std::strlen(hardware_id) + 1;  // in a code page never longer
  const Answer id = NewAnswer(id_size);
  if (update == nullptr || id == nullptr || !CodePageFromUtf8(hardware_id, id.get(), id_size) ||
      !CodePagePathFromUtf8(inf_path, path, sizeof path)) {
    return false;
  }
  return update(static_cast<HWND>(parent_window), id.get(), path, 0, nullptr) != FALSE;
}

// An invalid set (INVALID_HANDLE_VALUE, not null) goes through as it is: the calls below take it
// and fail.
DeviceSet* OpenDeviceSet() {
  return static_cast<DeviceSet*>(SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_ALLCLASSES));
}

bool EnumerateDevice(DeviceSet* set, std::uint32_t index, DeviceInfo* device) {
  return WithSystemForm<SP_DEVINFO_DATA>(device, [&](SP_DEVINFO_DATA* data) {
           return SetupDiEnumDeviceInfo(set, index, data);
         }) != FALSE;
}

bool GetDeviceProperty(DeviceSet* set, DeviceInfo* device, std::uint32_t property,
                       std::uint32_t* type, void* buffer, std::uint32_t size) {
  const Answer answer = NewAnswer(size);
  DWORD found_type = 0;
  if (answer == nullptr || WithSystemForm<SP_DEVINFO_DATA>(device, [&](SP_DEVINFO_DATA* data) {
                             return SetupDiGetDeviceRegistryPropertyA(
                                 set, data, property, &found_type,
                                 reinterpret_cast<BYTE*>(answer.get()), size, nullptr);
                           }) == FALSE) {
    return false;
  }
  if (found_type == REG_MULTI_SZ) {
    if (!GiveList(answer.get(), size, static_cast<char*>(buffer), size)) return false;
  } else {
    std::memcpy(buffer, answer.get(), size);  // the length isn't asked for; zeros stand behind it
  }
  *type = found_type;
  return true;
}

bool SetDeviceProperty(DeviceSet* set, DeviceInfo* device, std::uint32_t property,
                       const void* value, std::uint32_t size) {
  return WithSystemForm<SP_DEVINFO_DATA>(device, [&](SP_DEVINFO_DATA* data) {
           return SetupDiSetDeviceRegistryPropertyA(set, data, property,
                                                    static_cast<const BYTE*>(value), size);
         }) != FALSE;
}

void CloseDeviceSet(DeviceSet* set) {
  SetupDiDestroyDeviceInfoList(set);
}

std::uint32_t GetDeviceNodeStatus(std::uint32_t instance) {
  ULONG status = 0;
  ULONG problem = 0;
  return CM_Get_DevNode_Status(&status, &problem, instance, 0);
}

// ---- Registry ---------------------------------------------------------------------------------

RegistryKey* OpenMachineKey(const char* path, std::uint32_t access) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, access, &key) != ERROR_SUCCESS) return nullptr;
  return reinterpret_cast<RegistryKey*>(key);
}

bool QueryRegistryValue(RegistryKey* key, const char* name, std::uint32_t* type, void* data,
                        std::uint32_t* size) {
  DWORD found_type = 0;
  DWORD found_size = *size;
  if (RegQueryValueExA(reinterpret_cast<HKEY>(key), name, nullptr, &found_type,
                       static_cast<BYTE*>(data), &found_size) != ERROR_SUCCESS) {
    return false;
  }
  if (type != nullptr) *type = found_type;
  *size = found_size;
  return true;
}

bool SetRegistryValue(RegistryKey* key, const char* name, std::uint32_t type, const void* data,
                      std::uint32_t size) {
  return RegSetValueExA(reinterpret_cast<HKEY>(key), name, 0, type, static_cast<const BYTE*>(data),
                        size) == ERROR_SUCCESS;
}

void CloseRegistryKey(RegistryKey* key) {
  RegCloseKey(reinterpret_cast<HKEY>(key));
}

// ---- The rest ---------------------------------------------------------------------------------

std::uint32_t GetTemporaryFolder(char* path, std::uint32_t size) {
  wchar_t folder[kWidePathSize];
  const DWORD length = GetTempPathW(kWidePathSize, folder);
  char text[kBytesOfAUnit * kWidePathSize];
  if (length == 0 || length >= kWidePathSize || !Utf8FromWide(folder, text, sizeof text)) return 0;
  const std::size_t needed = std::strlen(text) + 1;
  if (needed > size) return 0;
  std::memcpy(path, text, needed);
  return static_cast<std::uint32_t>(needed - 1);
}

std::uint32_t LastSystemError() {
  return GetLastError();
}

void GetSystemMessage(std::uint32_t code, char* text, std::uint32_t size) {
  char words[kLongestMessage];
  if (FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0, words,
                     std::min<std::uint32_t>(size, sizeof words), nullptr) != 0) {
    GiveCutText(words, text, size);
  }
}
