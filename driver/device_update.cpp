#include "driver/device_update.h"

#include <cstdint>
#include <cstring>

#include "driver/driver_page.h"
#include "driver/driver_platform.h"
#include "driver/driver_text.h"
#include "store/embedded_file_store.h"

namespace {

constexpr std::uint32_t kInfLineSize = 8192;
constexpr std::uint32_t kPropertySize = 32768;
constexpr std::uint32_t kReinstallFlag = 0x20;  // CONFIGFLAG_REINSTALL

// Flags the device if this list of its ids holds the wanted one. `strings` is room for the list,
// two bytes more than the system is told of. All of it is zero before the system writes there: a
// list without its end ends behind what was written, and what an earlier device left is gone.
int FlagIfListed(DeviceSet* set, DeviceInfo* device, std::uint32_t property, const char* wanted,
                 char (&strings)[kPropertySize + 2]) {
  std::memset(strings, 0, sizeof strings);
  std::uint32_t type = 0;
  if (!GetDeviceProperty(set, device, property, &type, strings, kPropertySize)) return 0;
  if (type != kTypeMultiString || multi_sz_contains(strings, wanted) == 0) return 0;
  return flag_device_for_reinstall(set, device);
}

}  // namespace

int update_devices_for_inf(const char* inf_path) {
  InfFile* file = OpenInfFile(inf_path);
  if (file == nullptr) return 0;
  int count = 0;
  char text[kInfLineSize];
  InfContext line = {};
  for (bool more = FindFirstInfLine(file, "DeviceList", &line); more;
       more = FindNextInfLine(&line)) {
    if (!GetInfLineText(&line, text, sizeof text)) continue;
    // The payload's own spelling, with case; all the rest is the id, further commas and all.
    const char* hardware_id = AfterPrefix(text, "DriverInstall,");
    if (hardware_id == nullptr || *hardware_id == '\0') continue;
    count += update_devices_for_hardware_id(inf_path, hardware_id);
  }
  CloseInfFile(file);
  return count;
}

int update_devices_for_hardware_id(const char* inf_path, const char* hardware_id) {
  int count = UpdateDevices(NativeWindowHandle, hardware_id, inf_path) ? 1 : 0;
  char strings[kPropertySize + 2];
  DeviceSet* set = OpenDeviceSet();  // an invalid one ends the walk before it begins
  DeviceInfo device = {};
  for (std::uint32_t index = 0;; ++index) {
    device.size = sizeof device;
    if (!EnumerateDevice(set, index, &device)) break;
    // Both lists are asked, so a device with the id in both is flagged, and counts, twice.
    count += FlagIfListed(set, &device, kHardwareIdProperty, hardware_id, strings);
    count += FlagIfListed(set, &device, kCompatibleIdsProperty, hardware_id, strings);
  }
  CloseDeviceSet(set);
  return count;
}

int flag_device_for_reinstall(DeviceSet* set, DeviceInfo* device) {
  // Any other answer means a device that is there: UpdateDevices has dealt with it.
  if (GetDeviceNodeStatus(device->instance) != kNoSuchDeviceInstance) return 0;
  std::uint32_t flags = 0;
  std::uint32_t type = 0;
  if (!GetDeviceProperty(set, device, kConfigFlagsProperty, &type, &flags, sizeof flags)) return 0;
  flags |= kReinstallFlag;
  return SetDeviceProperty(set, device, kConfigFlagsProperty, &flags, sizeof flags) ? 1 : 0;
}

int multi_sz_contains(const char* strings, const char* text) {
  for (; *strings != '\0'; strings += std::strlen(strings) + 1) {
    if (equal_nocase(strings, text)) return 1;
  }
  return 0;
}
