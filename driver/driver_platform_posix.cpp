// Nothing of this exists here. Each function answers what its counterpart answers on a machine
// where every call fails, so survey and install run their natural course through the failures.
#include "driver/driver_platform.h"

namespace {

constexpr std::uint32_t kCallNotImplemented = 120;  // ERROR_CALL_NOT_IMPLEMENTED
constexpr std::uint32_t kConfigFailure = 19;        // CR_FAILURE

}  // namespace

InfFile* OpenInfFile(const char*) {
  return nullptr;
}

void CloseInfFile(InfFile*) {}

bool FindFirstInfLine(InfFile*, const char*, InfContext*) {
  return false;
}

bool FindNextInfLine(InfContext*) {
  return false;
}

bool GetInfLineText(InfContext*, char*, std::uint32_t) {
  return false;
}

bool GetInfKeyText(InfFile*, const char*, const char*, char*, std::uint32_t) {
  return false;
}

bool GetInfFileList(char*, std::uint32_t, std::uint32_t*) {
  return false;
}

bool CopyInfFile(const char*, char*, std::uint32_t) {
  return false;
}

bool UpdateDevices(void*, const char*, const char*) {
  return false;
}

DeviceSet* OpenDeviceSet() {
  return nullptr;
}

bool EnumerateDevice(DeviceSet*, std::uint32_t, DeviceInfo*) {
  return false;
}

bool GetDeviceProperty(DeviceSet*, DeviceInfo*, std::uint32_t, std::uint32_t*, void*,
                       std::uint32_t) {
  return false;
}

bool SetDeviceProperty(DeviceSet*, DeviceInfo*, std::uint32_t, const void*, std::uint32_t) {
  return false;
}

void CloseDeviceSet(DeviceSet*) {}

std::uint32_t GetDeviceNodeStatus(std::uint32_t) {
  return kConfigFailure;
}

RegistryKey* OpenMachineKey(const char*, std::uint32_t) {
  return nullptr;
}

bool QueryRegistryValue(RegistryKey*, const char*, std::uint32_t*, void*, std::uint32_t*) {
  return false;
}

bool SetRegistryValue(RegistryKey*, const char*, std::uint32_t, const void*, std::uint32_t) {
  return false;
}

void CloseRegistryKey(RegistryKey*) {}

std::uint32_t GetTemporaryFolder(char*, std::uint32_t) {
  return 0;
}

std::uint32_t LastSystemError() {
  return kCallNotImplemented;
}

void GetSystemMessage(std::uint32_t, char*, std::uint32_t) {}
