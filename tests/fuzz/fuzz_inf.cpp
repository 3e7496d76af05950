// INF files of any text, on the simulated machine: the text of the [Version] section, the search
// for a driver among those installed, and the test for the system's own. Each gives what a second
// reading of the parsed file gives, within its buffer, and every file is closed. The input is up to
// three files, parted by lines of "====": the staged driver, an installed one, the system's.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "driver/driver_survey.h"
#include "driver/inf_identity.h"
#include "tests/driver/inf_file_text.h"
#include "tests/driver/simulated_machine.h"
#include "tests/fuzz/fuzz_support.h"

namespace {

constexpr char kParting[] = "====\n";
constexpr std::size_t kSystemText = 512;
constexpr std::size_t kGuard = 16;  // bytes behind the buffer that must stay

std::vector<std::string> FilesOf(std::string text) {
  std::vector<std::string> files;
  while (files.size() < 2) {
    const std::size_t parting = text.find(kParting);
    files.push_back(text.substr(0, parting));
    text = parting == std::string::npos ? "" : text.substr(parting + std::strlen(kParting));
  }
  files.push_back(text);
  return files;
}

// The values end to end, each as far as a text reaches; one that finds no room is passed over.
std::string ExpectedVersion(const std::string& content) {
  const InfFileText file(content);
  const InfTextSection* section = file.FindSection("Version");
  std::string text;
  if (!file.HasModernSignature() || section == nullptr) return text;
  for (const InfTextLine& line : section->lines) {
    const std::string value = file.CompactText(line);
    if (text.size() + value.size() < kVersionTextSize) text += value.c_str();
  }
  return text;
}

std::string ReadVersion(const char* name) {
  std::vector<char> buffer(kVersionTextSize + kGuard, '~');
  const int length = read_inf_version_text(name, buffer.data());
  Require(length >= 0 && static_cast<std::size_t>(length) < kVersionTextSize &&
              buffer[static_cast<std::size_t>(length)] == '\0',
          "a version text ends within its buffer");
  Require(std::all_of(buffer.end() - kGuard, buffer.end(), [](char c) { return c == '~'; }),
          "nothing is written behind the buffer");
  return {buffer.data(), static_cast<std::size_t>(length)};
}

bool HoldsWithoutCase(const std::string& text, const std::string& needle) {
  for (std::size_t i = 0; i + needle.size() <= text.size(); ++i) {
    if (SameWithoutCase(text.substr(i, needle.size()), needle)) return true;
  }
  return false;
}

// A value that the machine gives: a text, where it fits the reader's buffer.
bool IsRead(const std::string& value) {
  return value.size() < kSystemText;
}

bool ExpectedSystemDriver(const std::string& content) {
  const InfFileText file(content);
  if (!file.HasModernSignature()) return false;
  const InfTextLine* service = file.FindLine("UsbSerial_Service_Install", "ServiceBinary");
  const InfTextSection* section = file.FindSection("UsbSerial_AddReg");
  if (service == nullptr || section == nullptr || section->lines.size() < 2) return false;
  const std::string binary = file.CompactText(*service);
  const std::string page = file.CompactText(section->lines[1]);
  return IsRead(binary) && HoldsWithoutCase(binary.c_str(), "usbser.sys") && IsRead(page) &&
         SameWithoutCase(page.c_str(),
                         "HKR,,EnumPropPages32,,MsPorts.dll,SerialPortPropPageProvider");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string staged = WorkFolder() + "/cdcacm.inf";
  const std::vector<std::string> files = FilesOf(AllOf(data, size));
  Machine = {};
  Machine.inf_files = {{"ports.inf", files[0]}, {"oem1.inf", files[1]}, {"usbser.inf", files[2]}};
  PutFile(staged, files[0]);

  const std::string wanted = ReadVersion(staged.c_str());
  const std::string installed = ReadVersion("oem1.inf");
  Require(wanted == ExpectedVersion(files[0]) && installed == ExpectedVersion(files[1]),
          "a version text is the section's values end to end");
  char* found = find_installed_inf(staged.c_str());
  const std::string name = found == nullptr ? "" : found;
  std::free(found);
  Require(name == (!wanted.empty() && wanted == installed ? "oem1.inf" : ""),
          "a driver is found exactly where one of the same version text is installed");
  Require(system_driver_present() == (ExpectedSystemDriver(files[2]) ? 1 : 0),
          "the system's driver is known by its service and its second registry line");

  Require(Machine.open_handles == 0, "every INF file is closed again");
  Require(Machine.misuses.empty(), "nothing is asked that no system allows");
  return 0;
}
