// The system's operations on INF files, devices, its driver search policy and the few things beside
// them that survey and install need: one plain function for each, without a decision of its own.
// One source per platform implements all of them; where the system has nothing of the kind each one
// fails as the real one would. Tests link a simulated machine in their place.
//
// True is success, false is failure with its code in LastSystemError; a null handle is a failure.
// Sizes are in bytes and, for texts, include the terminator; all texts are narrow, and on
// Windows UTF-8, whatever the code page. On failure an output is not written unless said otherwise.
#pragma once

#include <cstdint>

// ---- INF files --------------------------------------------------------------------------------

// An INF file opened for reading.
struct InfFile;

// A line of an opened INF file; the system's own cursor (INFCONTEXT), copied by value.
struct InfContext {
  void* file;
  void* current_file;
  std::uint32_t section;
  std::uint32_t line;
};

// Opens an INF file of the modern style. A bare file name is found in the system's INF folder. The
// caller closes it.
InfFile* OpenInfFile(const char* name);
void CloseInfFile(InfFile* file);

// Positions `context` on the first line of a section. False when there is no such section or no
// line in it.
bool FindFirstInfLine(InfFile* file, const char* section, InfContext* context);

// Moves `context` to the next line; false at the section's end.
bool FindNextInfLine(InfContext* context);

// The value of the line, or of the first line of `section` with this key: without its key, comments
// and surrounding blanks, strings substituted, quotes taken off and the fields joined by commas.
// False also when it doesn't fit, in the system's code page or in UTF-8.
bool GetInfLineText(InfContext* context, char* buffer, std::uint32_t size);
bool GetInfKeyText(InfFile* file, const char* section, const char* key, char* buffer,
                   std::uint32_t size);

// The bare names of all files in the system's INF folder, each with its terminator, behind them an
// empty name. With no buffer and size 0 only a size is asked for in which they find room;
// `required_size` may be null.
bool GetInfFileList(char* buffer, std::uint32_t size, std::uint32_t* required_size);

// Puts the INF file into the system's INF folder under a name of the system's choice, which
// `installed_name` receives, cut between two characters where it doesn't fit. The system is allowed
// to delete the source, and then has.
bool CopyInfFile(const char* path, char* installed_name, std::uint32_t size);

// ---- Devices ----------------------------------------------------------------------------------

// A list of devices. Valid or not, it is passed on and closed: an invalid one fails at the first
// enumeration.
struct DeviceSet;

// One device of a set; the system's own record (SP_DEVINFO_DATA). The caller sets `size` before
// every enumeration, by which the system knows the record's form.
struct DeviceInfo {
  std::uint32_t size;
  unsigned char class_id[16];
  std::uint32_t instance;
  std::uintptr_t reserved;
};

// Brings all devices of this hardware id that are plugged in onto the driver of an INF file, given
// by its full path. True when the system did so for at least one. 64-bit Windows refuses this to a
// 32-bit program (ERROR_IN_WOW64).
bool UpdateDevices(void* parent_window, const char* hardware_id, const char* inf_path);

// All devices of all classes that the system knows, also those that are not plugged in.
DeviceSet* OpenDeviceSet();

// The device at `index`, counted from 0; false behind the last.
bool EnumerateDevice(DeviceSet* set, std::uint32_t index, DeviceInfo* device);

// The values of the properties and their types below.
inline constexpr std::uint32_t kHardwareIdProperty = 1;     // SPDRP_HARDWAREID
inline constexpr std::uint32_t kCompatibleIdsProperty = 2;  // SPDRP_COMPATIBLEIDS
inline constexpr std::uint32_t kConfigFlagsProperty = 10;   // SPDRP_CONFIGFLAGS
inline constexpr std::uint32_t kTypeDword = 4;              // REG_DWORD
inline constexpr std::uint32_t kTypeMultiString = 7;        // REG_MULTI_SZ

// A list of texts (kTypeMultiString) may come without its end where the device has it so, and then
// fills no more of the buffer than it has; what stands behind a value is of no meaning.
bool GetDeviceProperty(DeviceSet* set, DeviceInfo* device, std::uint32_t property,
                       std::uint32_t* type, void* buffer, std::uint32_t size);
bool SetDeviceProperty(DeviceSet* set, DeviceInfo* device, std::uint32_t property,
                       const void* value, std::uint32_t size);
void CloseDeviceSet(DeviceSet* set);

// Asks the configuration manager for the state of the device with this instance number and returns
// its code alone, 0 for a device that is there.
std::uint32_t GetDeviceNodeStatus(std::uint32_t instance);
inline constexpr std::uint32_t kNoSuchDeviceInstance = 13;  // CR_NO_SUCH_DEVINST

// ---- Registry ---------------------------------------------------------------------------------

// An opened key. The caller closes it.
struct RegistryKey;

inline constexpr std::uint32_t kQueryAndSetValue = 3;    // KEY_QUERY_VALUE and KEY_SET_VALUE
inline constexpr std::uint32_t kRegistryView64 = 0x100;  // KEY_WOW64_64KEY
inline constexpr std::uint32_t kRegistryView32 = 0x200;  // KEY_WOW64_32KEY

// Opens a key below HKEY_LOCAL_MACHINE with the given access.
RegistryKey* OpenMachineKey(const char* path, std::uint32_t access);

// `size` is the buffer's on entry and the value's on return. Without a buffer, type and size alone
// are asked for. `type` may be null.
bool QueryRegistryValue(RegistryKey* key, const char* name, std::uint32_t* type, void* data,
                        std::uint32_t* size);
bool SetRegistryValue(RegistryKey* key, const char* name, std::uint32_t type, const void* data,
                      std::uint32_t size);
void CloseRegistryKey(RegistryKey* key);

// ---- The rest ---------------------------------------------------------------------------------

// The temporary folder with its ending separator. Returns its length, without terminator, and 0 on
// failure; a folder that doesn't fit is one.
std::uint32_t GetTemporaryFolder(char* path, std::uint32_t size);

// The code of the failure just now; to be asked for on the line after the failing call.
std::uint32_t LastSystemError();

// The system's words for a code, cut between two characters where their UTF-8 doesn't fit. `text`
// stays as it is when there are none, and when they don't fit in the system's code page.
void GetSystemMessage(std::uint32_t code, char* text, std::uint32_t size);
