// Brings the devices that an INF file names onto its driver. Devices that are plugged in are
// updated by the system at once; those that it knows but that are absent are flagged, so that it
// installs them afresh when they appear next.
//
// A result is a count of what was done; every failure merely counts nothing and leaves no words.
#pragma once

struct DeviceInfo;
struct DeviceSet;

// Runs update_devices_for_hardware_id for each line "DriverInstall,<hardware id>" of the section
// [DeviceList] and returns the sum. 0 for a file that can't be opened: after an install the staged
// file may be gone, since the system was allowed to delete it.
int update_devices_for_inf(const char* inf_path);

// 1 if the system updated the present devices of this hardware id, however many, plus the number of
// flags that absent devices got: one for the id among a device's hardware ids, one for the id among
// its compatible ids.
int update_devices_for_hardware_id(const char* inf_path, const char* hardware_id);

// Flags one device of the set to be installed afresh if it is absent. 1 when it was flagged, also
// if it was before, 0 otherwise.
int flag_device_for_reinstall(DeviceSet* set, DeviceInfo* device);

// Whether one of the strings, which end in an empty one, equals `text` without regard to case.
int multi_sz_contains(const char* strings, const char* text);
