// Runs under Wine: driver_probe HARDWARE_ID looks for devices with this id by the calls that the
// driver page makes, writes a line about each, and flags it to be installed afresh.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "driver/driver_platform.h"

namespace {

constexpr std::uint32_t kReinstall = 0x20;

// The strings of a property one behind another, or "-" when it isn't there.
std::string Strings(DeviceSet* set, DeviceInfo* device, std::uint32_t property) {
  char buffer[4096] = {};
  std::uint32_t type = 0;
  if (!GetDeviceProperty(set, device, property, &type, buffer, sizeof buffer)) return "-";
  if (type != kTypeMultiString) return "of another type";
  std::string strings;
  for (const char* text = buffer; *text != '\0'; text += std::strlen(text) + 1) {
    strings += std::string(text) + "|";
  }
  return strings;
}

std::string Flags(DeviceSet* set, DeviceInfo* device, std::uint32_t* flags) {
  std::uint32_t type = 0;
  if (!GetDeviceProperty(set, device, kConfigFlagsProperty, &type, flags, sizeof *flags)) {
    *flags = 0;
    return "-";
  }
  return type == kTypeDword ? std::to_string(*flags) : "of another type";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  DeviceSet* set = OpenDeviceSet();
  DeviceInfo device = {};
  device.size = sizeof device;
  for (std::uint32_t i = 0; EnumerateDevice(set, i, &device); ++i, device.size = sizeof device) {
    const std::string ids = Strings(set, &device, kHardwareIdProperty);
    if (ids.find(argv[1]) == std::string::npos) continue;
    std::uint32_t flags = 0;
    const std::string before = Flags(set, &device, &flags);
    flags |= kReinstall;
    const bool written =
        SetDeviceProperty(set, &device, kConfigFlagsProperty, &flags, sizeof flags);
    std::printf("ids %s compatible %s flags %s, %s\n", ids.c_str(),
                Strings(set, &device, kCompatibleIdsProperty).c_str(), before.c_str(),
                written ? "written" : "not written");
  }
  CloseDeviceSet(set);
  return 0;
}
