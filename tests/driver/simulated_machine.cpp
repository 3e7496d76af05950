#include "tests/driver/simulated_machine.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <string_view>

#include "driver/driver_platform.h"
#include "platform/text.h"
#include "tests/driver/inf_file_text.h"

SimulatedMachine Machine;

struct InfFile {
  std::string name;
  InfFileText text;
};

struct DeviceSet {
  std::vector<std::size_t> devices;
};

struct RegistryKey {
  std::uint32_t view;
};

namespace {

constexpr std::uint32_t kFirstInstance = 100;

// ---- Recording --------------------------------------------------------------------------------

std::string Shown(const std::string& argument) {
  const std::string& folder = Machine.temporary_folder;
  if (folder.empty() || argument.compare(0, folder.size(), folder) != 0) return argument;
  return "TEMP/" + argument.substr(folder.size());
}

std::string Shown(std::uint32_t argument) {
  return std::to_string(argument);
}

std::string Hex(std::uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", value);
  return text;
}

// Records a call. False when it has been told to fail; its error is set then. A call that succeeds
// leaves no code behind, as none is promised.
template <typename... Arguments>
bool Record(const std::string& function, const Arguments&... arguments) {
  std::string call = function + "(";
  [[maybe_unused]] const char* separator = "";
  ((call += separator + Shown(arguments), separator = ", "), ...);
  Machine.calls.push_back(call + ")");
  Machine.last_error = 0;
  const auto failure = Machine.failures.find(function);
  if (failure == Machine.failures.end()) return true;
  ++failure->second.calls;
  if (failure->second.nth != 0 && failure->second.nth != failure->second.calls) return true;
  Machine.last_error = failure->second.error;
  return false;
}

bool FailWith(std::uint32_t error) {
  Machine.last_error = error;
  return false;
}

// ---- Handles ----------------------------------------------------------------------------------

std::set<const void*>& OpenHandles() {
  static std::set<const void*> handles;
  return handles;
}

template <typename Handle>
Handle* Opened(std::unique_ptr<Handle> handle) {
  OpenHandles().insert(handle.get());
  ++Machine.open_handles;
  return handle.release();
}

template <typename Handle>
bool IsOpen(const std::string& function, const Handle* handle) {
  if (OpenHandles().count(handle) != 0) return true;
  Machine.misuses.push_back(function + " of a handle that isn't open");
  Machine.last_error = kErrorInvalidHandle;
  return false;
}

template <typename Handle>
void Close(const std::string& function, Handle* handle) {
  if (!IsOpen(function, handle)) return;
  OpenHandles().erase(handle);
  --Machine.open_handles;
  delete handle;
}

std::string NameOf(const InfFile* file) {
  return OpenHandles().count(file) != 0 ? file->name : "invalid";
}

// The system's mark of an invalid device set is a value that isn't null; this object's address.
DeviceSet* InvalidSet() {
  static DeviceSet invalid;
  return &invalid;
}

// Copies a text with its terminator where it fits.
bool StoreText(const std::string& text, char* buffer, std::uint32_t size) {
  if (text.size() + 1 > size) return FailWith(kErrorInsufficientBuffer);
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return true;
}

// ---- The code page ----------------------------------------------------------------------------

bool CodePageHas(char32_t character) {
  if (character < 0x80) return true;
  if (Machine.code_page == CodePage::kWestern) return character >= 0xA0 && character <= 0xFF;
  return character >= 0x401 && character <= 0x45F;
}

// What comes of a text of UTF-8 by way of the code page.
struct NarrowText {
  std::string utf8;
  std::size_t narrow_size = 0;  // in the code page
};

NarrowText ByCodePage(const std::string& text) {
  if (Machine.code_page == CodePage::kUtf8) return {text, text.size()};
  NarrowText narrow;
  for (std::size_t at = 0; at < text.size(); ++narrow.narrow_size) {
    const auto lead = static_cast<unsigned char>(text[at]);
    const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length && at + i < text.size(); ++i) {
      character = (character << 6) | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
    }
    narrow.utf8 += CodePageHas(character) ? text.substr(at, length) : "?";
    at += length;
  }
  return narrow;
}

// Copies a text with its terminator where it fits in both forms.
bool StoreNarrowText(const std::string& text, char* buffer, std::uint32_t size) {
  const NarrowText narrow = ByCodePage(text);
  if (narrow.narrow_size + 1 > size) return FailWith(kErrorInsufficientBuffer);
  return StoreText(narrow.utf8, buffer, size);
}

// How many bytes of UTF-8 a byte of the code page becomes at most.
std::uint32_t CodePageGrowth() {
  return Machine.code_page == CodePage::kUtf8 ? 1 : 3;
}

// ---- INF files --------------------------------------------------------------------------------

bool IsBareName(const std::string& name) {
  return name.find_first_of("/\\") == std::string::npos;
}

std::optional<std::string> ReadInf(const std::string& name) {
  if (IsBareName(name)) {
    for (const auto& [file, content] : Machine.inf_files) {
      if (SameWithoutCase(file, name)) return content;
    }
    return std::nullopt;
  }
  std::ifstream file(name, std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

bool IsListed(const std::string& name) {
  return std::any_of(Machine.inf_files.begin(), Machine.inf_files.end(),
                     [&](const auto& file) { return SameWithoutCase(file.first, name); });
}

// The first "oem<number>.inf" that is free. A file that is there already keeps its name.
std::string NameForCopy(const std::string& content) {
  for (const auto& [name, existing] : Machine.inf_files) {
    if (existing == content && SameWithoutCase(name.substr(0, 3), "oem")) return name;
  }
  int number = 0;
  while (IsListed("oem" + std::to_string(number) + ".inf")) ++number;
  return "oem" + std::to_string(number) + ".inf";
}

const InfTextLine* LineAt(const InfContext& context) {
  const auto* file = static_cast<const InfFile*>(context.file);
  if (!IsOpen("a line", file)) return nullptr;
  return &file->text.sections()[context.section].lines[context.line];
}

// ---- Devices ----------------------------------------------------------------------------------

std::vector<std::string> Strings(const SimulatedDevice& device, std::uint32_t property) {
  std::vector<std::string> strings;
  const auto found = device.properties.find(property);
  if (found == device.properties.end()) return strings;
  std::string_view rest = found->second.bytes;
  while (!rest.empty() && rest.front() != '\0') {
    strings.emplace_back(rest.substr(0, rest.find('\0')));
    rest.remove_prefix(std::min(strings.back().size() + 1, rest.size()));
  }
  return strings;
}

bool HasId(const SimulatedDevice& device, const std::string& id) {
  for (const std::uint32_t property : {kHardwareIdProperty, kCompatibleIdsProperty}) {
    for (const std::string& listed : Strings(device, property)) {
      if (SameWithoutCase(listed, id)) return true;
    }
  }
  return false;
}

// The device that a record from EnumerateDevice means, or null.
SimulatedDevice* DeviceOf(const std::string& function, const DeviceSet* set,
                          const DeviceInfo* device) {
  if (set == InvalidSet() || !IsOpen(function, set)) return nullptr;
  const std::size_t index = device->instance - kFirstInstance;
  if (index >= Machine.devices.size()) {
    Machine.misuses.push_back(function + " with a record that no enumeration gave");
    Machine.last_error = kErrorInvalidData;
    return nullptr;
  }
  return &Machine.devices[index];
}

std::uint32_t IndexOf(const DeviceInfo* device) {
  return device->instance - kFirstInstance;
}

}  // namespace

// ---- The machine ------------------------------------------------------------------------------

SimulatedValue DwordValue(std::uint32_t value) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift);
  return {kTypeDword, bytes};
}

SimulatedValue MultiStringValue(const std::vector<std::string>& strings) {
  std::string bytes;
  for (const std::string& text : strings) bytes += text + '\0';
  return {kTypeMultiString, bytes + '\0'};
}

std::uint32_t SimulatedDevice::config_flags() const {
  const auto found = properties.find(kConfigFlagsProperty);
  std::uint32_t flags = 0;
  if (found != properties.end()) std::memcpy(&flags, found->second.bytes.data(), sizeof flags);
  return flags;
}

SimulatedDevice Device(bool present, const std::vector<std::string>& hardware_ids,
                       const std::vector<std::string>& compatible_ids) {
  SimulatedDevice device;
  device.present = present;
  if (!hardware_ids.empty()) {
    device.properties[kHardwareIdProperty] = MultiStringValue(hardware_ids);
  }
  if (!compatible_ids.empty()) {
    device.properties[kCompatibleIdsProperty] = MultiStringValue(compatible_ids);
  }
  device.properties[kConfigFlagsProperty] = DwordValue(0);
  return device;
}

void SimulatedMachine::Fail(const std::string& function, std::uint32_t error) {
  failures[function] = {0, 0, error};
}

void SimulatedMachine::FailNth(const std::string& function, int nth, std::uint32_t error) {
  failures[function] = {nth, 0, error};
}

std::vector<std::string> SimulatedMachine::CallsOf(
    const std::vector<std::string>& functions) const {
  std::vector<std::string> found;
  for (const std::string& call : calls) {
    const std::string name = call.substr(0, call.find('('));
    if (std::find(functions.begin(), functions.end(), name) != functions.end()) {
      found.push_back(call);
    }
  }
  return found;
}

void SimulatedMachine::SetSearchOrder(std::uint32_t view, SimulatedValue value) {
  registry[view].values["SearchOrderConfig"] = std::move(value);
}

std::optional<SimulatedValue> SimulatedMachine::search_order(std::uint32_t view) const {
  const auto key = registry.find(view);
  if (key == registry.end()) return std::nullopt;
  const auto value = key->second.values.find("SearchOrderConfig");
  if (value == key->second.values.end()) return std::nullopt;
  return value->second;
}

// ---- INF files --------------------------------------------------------------------------------

InfFile* OpenInfFile(const char* name) {
  if (!Record("OpenInfFile", std::string(name))) return nullptr;
  const std::optional<std::string> content = ReadInf(name);
  if (!content) {
    FailWith(kErrorFileNotFound);
    return nullptr;
  }
  auto file = std::make_unique<InfFile>(InfFile{Shown(std::string(name)), InfFileText(*content)});
  if (!file->text.HasModernSignature()) {
    FailWith(kErrorWrongInfStyle);
    return nullptr;
  }
  return Opened(std::move(file));
}

void CloseInfFile(InfFile* file) {
  Record("CloseInfFile", NameOf(file));
  Close("CloseInfFile", file);
}

bool FindFirstInfLine(InfFile* file, const char* section, InfContext* context) {
  if (!Record("FindFirstInfLine", NameOf(file), std::string(section))) return false;
  if (!IsOpen("FindFirstInfLine", file)) return false;
  const InfTextSection* found = file->text.FindSection(section);
  if (found == nullptr) return FailWith(kErrorSectionNotFound);
  if (found->lines.empty()) return FailWith(kErrorLineNotFound);
  context->file = file;
  context->current_file = file;
  context->section = static_cast<std::uint32_t>(found - file->text.sections().data());
  context->line = 0;
  return true;
}

bool FindNextInfLine(InfContext* context) {
  auto* file = static_cast<InfFile*>(context->file);
  if (!Record("FindNextInfLine", NameOf(file))) return false;
  if (!IsOpen("FindNextInfLine", file)) return false;
  if (context->line + 1 >= file->text.sections()[context->section].lines.size()) {
    return FailWith(kErrorLineNotFound);
  }
  ++context->line;
  return true;
}

bool GetInfLineText(InfContext* context, char* buffer, std::uint32_t size) {
  auto* file = static_cast<InfFile*>(context->file);
  if (!Record("GetInfLineText", NameOf(file), size)) return false;
  const InfTextLine* line = LineAt(*context);
  return line != nullptr && StoreNarrowText(file->text.CompactText(*line), buffer, size);
}

bool GetInfKeyText(InfFile* file, const char* section, const char* key, char* buffer,
                   std::uint32_t size) {
  if (!Record("GetInfKeyText", NameOf(file), std::string(section), std::string(key), size)) {
    return false;
  }
  if (!IsOpen("GetInfKeyText", file)) return false;
  const InfTextLine* line = file->text.FindLine(section, key);
  if (line == nullptr) return FailWith(kErrorLineNotFound);
  return StoreNarrowText(file->text.CompactText(*line), buffer, size);
}

bool GetInfFileList(char* buffer, std::uint32_t size, std::uint32_t* required_size) {
  if (!Record("GetInfFileList", buffer == nullptr ? std::string("no buffer") : "buffer", size)) {
    return false;
  }
  std::string list;
  for (const auto& [name, content] : Machine.inf_files) list += name + '\0';
  list += '\0';
  const NarrowText narrow = ByCodePage(list);
  const auto required = static_cast<std::uint32_t>(narrow.narrow_size) * CodePageGrowth();
  if (buffer != nullptr && required > size) return FailWith(kErrorInsufficientBuffer);
  if (buffer != nullptr) std::memcpy(buffer, narrow.utf8.data(), narrow.utf8.size());
  if (required_size != nullptr) *required_size = required;
  return true;
}

bool CopyInfFile(const char* path, char* installed_name, std::uint32_t size) {
  if (!Record("CopyInfFile", std::string(path), size)) return false;
  if (!Machine.administrator) return FailWith(kErrorAccessDenied);
  const std::optional<std::string> content = ReadInf(path);
  if (!content) return FailWith(kErrorFileNotFound);
  const std::string name = NameForCopy(*content);
  const NarrowText installed = ByCodePage(Machine.inf_folder + name);
  if (installed.narrow_size + 1 > size) return FailWith(kErrorInsufficientBuffer);
  CopyWholeCharacters(installed_name, size, installed.utf8.c_str());
  if (!IsListed(name)) Machine.inf_files.emplace_back(name, *content);
  if (Machine.copy_deletes_source) std::filesystem::remove(path);
  return true;
}

// ---- Devices ----------------------------------------------------------------------------------

bool UpdateDevices(void* parent_window, const char* hardware_id, const char* inf_path) {
  const std::string parent =
      Hex(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(parent_window)));
  if (!Record("UpdateDevices", parent, std::string(hardware_id), std::string(inf_path))) {
    return false;
  }
  if (Machine.wow64) return FailWith(kErrorInWow64);
  if (!Machine.administrator) return FailWith(kErrorAccessDenied);
  if (!ReadInf(inf_path)) return FailWith(kErrorFileNotFound);
  bool known = false;
  bool updated = false;
  for (SimulatedDevice& device : Machine.devices) {
    if (!device.present || !HasId(device, hardware_id)) continue;
    known = true;
    if (device.driver == inf_path) continue;  // no better than what it has
    device.driver = inf_path;
    updated = true;
  }
  if (updated) return true;
  return FailWith(known ? kErrorNoMoreItems : kErrorNoSuchDevinst);
}

DeviceSet* OpenDeviceSet() {
  if (!Record("OpenDeviceSet")) return InvalidSet();
  auto set = std::make_unique<DeviceSet>();
  for (std::size_t i = 0; i < Machine.devices.size(); ++i) set->devices.push_back(i);
  return Opened(std::move(set));
}

bool EnumerateDevice(DeviceSet* set, std::uint32_t index, DeviceInfo* device) {
  if (!Record("EnumerateDevice", index)) return false;
  if (set == InvalidSet()) return FailWith(kErrorInvalidHandle);
  if (!IsOpen("EnumerateDevice", set)) return false;
  if (device->size != sizeof *device) {
    Machine.misuses.push_back("EnumerateDevice with a record whose size isn't set");
    return FailWith(kErrorInvalidUserBuffer);
  }
  if (index >= set->devices.size()) return FailWith(kErrorNoMoreItems);
  device->instance = kFirstInstance + static_cast<std::uint32_t>(set->devices[index]);
  device->size = 0;  // to be set before every call, and not by chance still be there
  return true;
}

bool GetDeviceProperty(DeviceSet* set, DeviceInfo* device, std::uint32_t property,
                       std::uint32_t* type, void* buffer, std::uint32_t size) {
  if (!Record("GetDeviceProperty", IndexOf(device), property, size)) return false;
  SimulatedDevice* found = DeviceOf("GetDeviceProperty", set, device);
  if (found == nullptr) return false;
  const auto value = found->properties.find(property);
  if (value == found->properties.end()) return FailWith(kErrorInvalidData);
  const std::string& bytes = value->second.bytes;
  const NarrowText narrow =
      value->second.type == kTypeMultiString ? ByCodePage(bytes) : NarrowText{bytes, bytes.size()};
  if (narrow.narrow_size > size || narrow.utf8.size() > size) {
    return FailWith(kErrorInsufficientBuffer);
  }
  std::memcpy(buffer, narrow.utf8.data(), narrow.utf8.size());
  *type = value->second.type;
  return true;
}

bool SetDeviceProperty(DeviceSet* set, DeviceInfo* device, std::uint32_t property,
                       const void* value, std::uint32_t size) {
  const std::string bytes(static_cast<const char*>(value), size);
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data(), std::min(bytes.size(), sizeof number));
  if (!Record("SetDeviceProperty", IndexOf(device), property, Hex(number), size)) return false;
  SimulatedDevice* found = DeviceOf("SetDeviceProperty", set, device);
  if (found == nullptr) return false;
  if (!Machine.administrator) return FailWith(kErrorAccessDenied);
  found->properties[property] = {kTypeDword, bytes};
  return true;
}

void CloseDeviceSet(DeviceSet* set) {
  Record("CloseDeviceSet", std::string(set == InvalidSet() ? "invalid" : "set"));
  if (set != InvalidSet()) Close("CloseDeviceSet", set);
}

std::uint32_t GetDeviceNodeStatus(std::uint32_t instance) {
  const std::uint32_t index = instance - kFirstInstance;
  constexpr std::uint32_t kFailure = 19;  // CR_FAILURE
  if (!Record("GetDeviceNodeStatus", index)) return kFailure;
  if (index >= Machine.devices.size()) return kNoSuchDeviceInstance;
  const SimulatedDevice& device = Machine.devices[index];
  if (device.node_status) return *device.node_status;
  return device.present ? 0 : kNoSuchDeviceInstance;
}

// ---- Registry ---------------------------------------------------------------------------------

RegistryKey* OpenMachineKey(const char* path, std::uint32_t access) {
  if (!Record("OpenMachineKey", std::string(path), Hex(access))) return nullptr;
  const std::uint32_t view = access & (kRegistryView64 | kRegistryView32);
  if (!SameWithoutCase(path, Machine.policy_key) || Machine.registry.count(view) == 0) {
    FailWith(kErrorFileNotFound);
    return nullptr;
  }
  if (!Machine.administrator) {  // the right to set a value is asked for at the opening
    FailWith(kErrorAccessDenied);
    return nullptr;
  }
  return Opened(std::make_unique<RegistryKey>(RegistryKey{view}));
}

bool QueryRegistryValue(RegistryKey* key, const char* name, std::uint32_t* type, void* data,
                        std::uint32_t* size) {
  const std::string buffer = data == nullptr ? "no buffer" : "buffer";
  if (!Record("QueryRegistryValue", std::string(name), buffer, *size)) return false;
  if (!IsOpen("QueryRegistryValue", key)) return false;
  const auto& values = Machine.registry[key->view].values;
  const auto value = values.find(name);
  if (value == values.end()) return FailWith(kErrorFileNotFound);
  const std::string& bytes = value->second.bytes;
  if (data != nullptr && bytes.size() > *size) return FailWith(kErrorMoreData);
  if (data != nullptr) std::memcpy(data, bytes.data(), bytes.size());
  *size = static_cast<std::uint32_t>(bytes.size());
  if (type != nullptr) *type = value->second.type;
  return true;
}

bool SetRegistryValue(RegistryKey* key, const char* name, std::uint32_t type, const void* data,
                      std::uint32_t size) {
  const std::string bytes(static_cast<const char*>(data), size);
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data(), std::min(bytes.size(), sizeof number));
  if (!Record("SetRegistryValue", std::string(name), type, number, size)) return false;
  if (!IsOpen("SetRegistryValue", key)) return false;
  Machine.registry[key->view].values[name] = {type, bytes};
  return true;
}

void CloseRegistryKey(RegistryKey* key) {
  Record("CloseRegistryKey");
  Close("CloseRegistryKey", key);
}

// ---- The rest ---------------------------------------------------------------------------------

std::uint32_t GetTemporaryFolder(char* path, std::uint32_t size) {
  if (!Record("GetTemporaryFolder", size)) return 0;
  if (!StoreText(Machine.temporary_folder, path, size)) return 0;
  return static_cast<std::uint32_t>(Machine.temporary_folder.size());
}

std::uint32_t LastSystemError() {
  const std::uint32_t error = Machine.last_error;
  Machine.calls.emplace_back("LastSystemError()");
  return error;
}

void GetSystemMessage(std::uint32_t code, char* text, std::uint32_t size) {
  if (!Record("GetSystemMessage", Hex(code), size)) return;
  const auto message = Machine.messages.find(code);
  if (message == Machine.messages.end()) return;
  const NarrowText narrow = ByCodePage(message->second);
  if (narrow.narrow_size + 1 <= size) CopyWholeCharacters(text, size, narrow.utf8.c_str());
}
