// A small machine in the place of the system: it implements every function of
// driver/driver_platform.h and is_user_admin, as the system's documentation tells them, over a
// folder of INF files, a list of devices, one registry value and the process's rights. Every call
// is recorded with its arguments, and any of them can be told to fail.
//
// An executable gets it by linking the object library simulated_machine beside `driver`. It is
// process-wide, like what it stands for; a test sets it up anew with `Machine = {}`.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Error codes of the system that the machine gives.
inline constexpr std::uint32_t kErrorFileNotFound = 2;
inline constexpr std::uint32_t kErrorAccessDenied = 5;
inline constexpr std::uint32_t kErrorInvalidHandle = 6;
inline constexpr std::uint32_t kErrorInvalidData = 13;
inline constexpr std::uint32_t kErrorInsufficientBuffer = 122;
inline constexpr std::uint32_t kErrorMoreData = 234;
inline constexpr std::uint32_t kErrorNoMoreItems = 259;
inline constexpr std::uint32_t kErrorInvalidUserBuffer = 1784;
inline constexpr std::uint32_t kErrorWrongInfStyle = 0xE0000100;
inline constexpr std::uint32_t kErrorSectionNotFound = 0xE0000101;
inline constexpr std::uint32_t kErrorLineNotFound = 0xE0000102;
inline constexpr std::uint32_t kErrorNoSuchDevinst = 0xE000020B;
inline constexpr std::uint32_t kErrorInWow64 = 0xE0000235;

// A value of the registry or a property of a device. Texts hold their terminators.
struct SimulatedValue {
  std::uint32_t type;
  std::string bytes;
};
SimulatedValue DwordValue(std::uint32_t value);
SimulatedValue MultiStringValue(const std::vector<std::string>& strings);

struct SimulatedDevice {
  std::map<std::uint32_t, SimulatedValue> properties;  // by number, as in driver_platform.h
  bool present = true;
  std::optional<std::uint32_t> node_status;  // where the configuration manager answers otherwise
  std::string driver;                        // path of the INF file it was last updated from

  // The device's flags; 0 when it has none.
  std::uint32_t config_flags() const;
};

// A device with lists of ids and flags 0. An empty list is a property that doesn't exist.
SimulatedDevice Device(bool present, const std::vector<std::string>& hardware_ids,
                       const std::vector<std::string>& compatible_ids = {});

// One of the registry's views of the key with the driver search policy.
struct SimulatedKey {
  std::map<std::string, SimulatedValue> values;
};

// The form in which the system's narrow calls give texts, of one byte for each character but in
// UTF-8. A character that it lacks is given as a question mark.
enum class CodePage { kUtf8, kWestern, kCyrillic };

struct SimulatedMachine {
  // The system's INF folder: name and content, in the order of the list. Every other INF file is a
  // real one on the disk.
  std::vector<std::pair<std::string, std::string>> inf_files;
  std::string inf_folder = "C:\\WINDOWS\\INF\\";

  std::vector<SimulatedDevice> devices;

  // By view: 0 is the program's own, the others are kRegistryView64 and kRegistryView32. A view
  // that isn't there can't be opened.
  std::map<std::uint32_t, SimulatedKey> registry;
  std::string policy_key = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\DriverSearching";

  bool administrator = true;
  bool wow64 = false;  // a 64-bit system, on which the program is a 32-bit guest
  CodePage code_page = CodePage::kUtf8;
  bool copy_deletes_source = true;  // the permission is there; the system may use it or not
  std::string temporary_folder = "C:\\TEMP\\";  // with its separator
  std::map<std::uint32_t, std::string> messages;

  // The calls so far, as "Name(arguments)". A path below the temporary folder reads "TEMP/...".
  std::vector<std::string> calls;

  // What the program did that no system allows: a handle that isn't open, a size not set.
  std::vector<std::string> misuses;
  int open_handles = 0;

  // Makes every call of `function`, or only the nth from now on (counted from 1), fail.
  void Fail(const std::string& function, std::uint32_t error = kErrorInvalidData);
  void FailNth(const std::string& function, int nth, std::uint32_t error = kErrorInvalidData);

  // The calls of these functions alone; of all that begin so.
  std::vector<std::string> CallsOf(const std::vector<std::string>& functions) const;

  // Registry values by view; a shorthand.
  void SetSearchOrder(std::uint32_t view, SimulatedValue value);
  std::optional<SimulatedValue> search_order(std::uint32_t view) const;

  struct Failure {
    int nth;  // 0 is every call
    int calls;
    std::uint32_t error;
  };
  std::map<std::string, Failure> failures;
  std::uint32_t last_error = 0;
};

extern SimulatedMachine Machine;
