// Runs under Wine: code_page_probe CODE-PAGE OPERATION ANSWER calls one operation of
// driver/driver_platform.h on a system with another code page. Functions of the system stand here
// in the place of its own: they answer with ANSWER, which is UTF-8 as every argument, in the bytes
// of the code page, and note the bytes that they are given. Conversions are the system's own.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <setupapi.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "driver/driver_platform.h"
#include "platform/process.h"

namespace {

UINT code_page;
std::string answer;   // in the code page; '|' stands for a terminator within it
bool answer_has_end;  // whether the answer's own terminator is written too
std::wstring wide_answer;

std::wstring Wide(UINT page, const std::string& text) {
  std::wstring wide(text.size(), L'\0');
  const int units = MultiByteToWideChar(page, 0, text.data(), static_cast<int>(text.size()),
                                        wide.data(), static_cast<int>(wide.size()));
  wide.resize(static_cast<std::size_t>(units));
  return wide;
}

std::string Narrow(UINT page, const std::wstring& wide) {
  std::string text(4 * wide.size(), '\0');
  const int bytes =
      WideCharToMultiByte(page, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                          static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<std::size_t>(bytes));
  return text;
}

void NoteBytes(const char* what, const char* text) {
  std::printf("%s", what);
  for (; *text != '\0'; ++text) std::printf(" %02X", static_cast<unsigned char>(*text));
  std::printf("\r\n");
}

// What the system writes: nothing at all where it doesn't fit.
DWORD Answer(char* buffer, DWORD size) {
  const std::size_t length = answer.size() + (answer_has_end ? 1 : 0);
  if (length > size) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }
  std::memcpy(buffer, answer.c_str(), length);
  return static_cast<DWORD>(length);
}

UINT WINAPI CodePage() {
  return code_page;
}

DWORD WINAPI Message(DWORD, LPCVOID, DWORD, DWORD, LPSTR buffer, DWORD size, va_list*) {
  return Answer(buffer, size);
}

HINF WINAPI OpenInf(PCSTR name, PCSTR, DWORD, PUINT) {
  NoteBytes("opened", name);
  return &code_page;
}

void WINAPI CloseInf(HINF) {}

BOOL WINAPI LineText(PINFCONTEXT, HINF, PCSTR, PCSTR, PSTR buffer, DWORD size, PDWORD) {
  return Answer(buffer, size) != 0;
}

BOOL WINAPI FileList(PCSTR, DWORD, PSTR buffer, DWORD size, PDWORD required) {
  if (required != nullptr) *required = static_cast<DWORD>(answer.size() + 1);
  return buffer == nullptr || Answer(buffer, size) != 0;
}

BOOL WINAPI CopyInf(PCSTR source, PCSTR, DWORD, DWORD, PSTR name, DWORD size, PDWORD, PSTR*) {
  NoteBytes("copied", source);
  return Answer(name, size) != 0;
}

BOOL WINAPI Property(HDEVINFO, PSP_DEVINFO_DATA, DWORD, PDWORD type, PBYTE buffer, DWORD size,
                     PDWORD) {
  *type = REG_MULTI_SZ;
  return answer.empty() || Answer(reinterpret_cast<char*>(buffer), size) != 0;
}

DWORD WINAPI TempPath(DWORD size, LPWSTR buffer) {
  if (wide_answer.size() >= size) return static_cast<DWORD>(wide_answer.size() + 1);
  std::memcpy(buffer, wide_answer.c_str(), 2 * (wide_answer.size() + 1));
  return static_cast<DWORD>(wide_answer.size());
}

}  // namespace

// What a source imports under a name is what the pointer of that name with __imp_ before it leads
// to; these stand before the linker looks for the system's own.
#define IN_PLACE_OF(symbol, function)                                                   \
  extern "C" const decltype(&(function)) imported_##function __asm__("__imp__" symbol); \
  extern "C" const decltype(&(function)) imported_##function = function

IN_PLACE_OF("GetACP@0", CodePage);
IN_PLACE_OF("FormatMessageA@28", Message);
IN_PLACE_OF("SetupOpenInfFileA@16", OpenInf);
IN_PLACE_OF("SetupCloseInfFile@4", CloseInf);
IN_PLACE_OF("SetupGetLineTextA@28", LineText);
IN_PLACE_OF("SetupGetInfFileListA@20", FileList);
IN_PLACE_OF("SetupCopyOEMInfA@32", CopyInf);
IN_PLACE_OF("SetupDiGetDeviceRegistryPropertyA@28", Property);
IN_PLACE_OF("GetTempPathW@8", TempPath);

namespace {

// A caller's buffer of the size that the program uses, with bytes behind it that must stay.
template <std::size_t kSize>
struct Buffer {
  Buffer() { std::memset(bytes, '#', sizeof bytes); }

  // The text or list in it, with '|' for each terminator within and a word on what is wrong.
  std::string Shown(std::size_t terminators) const {
    std::string shown;
    std::size_t place = 0;
    for (; terminators > 0 && place < kSize; ++place) {
      if (bytes[place] == '\0') {
        if (--terminators > 0) shown += '|';
      } else {
        shown += bytes[place];
      }
    }
    if (terminators > 0) shown += " (not terminated)";
    for (place = kSize; place < sizeof bytes; ++place) {
      if (bytes[place] != '#') return shown + " (written beyond)";
    }
    return shown;
  }

  char bytes[kSize + 64];
};

// The list up to its first empty text.
template <std::size_t kSize>
std::string ShownList(const Buffer<kSize>& buffer) {
  std::string shown;
  for (const char* text = buffer.bytes; *text != '\0' && *text != '#';
       text += std::strlen(text) + 1) {
    shown += std::string(text) + "|";
  }
  return shown;
}

std::string ShowMessage() {
  Buffer<800> buffer;
  buffer.bytes[0] = '\0';
  GetSystemMessage(5, buffer.bytes, 800);
  return buffer.Shown(1);
}

std::string ShowLine(bool by_key) {
  Buffer<512> buffer;
  InfContext line = {};
  const bool read = by_key ? GetInfKeyText(nullptr, "section", "key", buffer.bytes, 512)
                           : GetInfLineText(&line, buffer.bytes, 512);
  return read ? buffer.Shown(1) : buffer.bytes[0] == '#' ? "not read" : "not read, but written";
}

std::string ShowInfFiles() {
  std::uint32_t size = 0;
  if (!GetInfFileList(nullptr, 0, &size)) return "no size";
  Buffer<4096> buffer;
  if (size > 4096 || !GetInfFileList(buffer.bytes, size, nullptr)) return "not fetched";
  return ShownList(buffer);
}

std::string ShowIds() {
  Buffer<512> buffer;
  std::memset(buffer.bytes, 0, sizeof buffer.bytes);
  DeviceInfo device = {};
  std::uint32_t type = 0;
  if (!GetDeviceProperty(nullptr, &device, kHardwareIdProperty, &type, buffer.bytes, 510)) {
    return "not read";
  }
  return ShownList(buffer);
}

std::string ShowCopy(const char* path) {
  Buffer<260> buffer;
  return CopyInfFile(path, buffer.bytes, 260) ? buffer.Shown(1) : "not copied";
}

std::string ShowTemporaryFolder() {
  Buffer<1024> buffer;
  const std::uint32_t length = GetTemporaryFolder(buffer.bytes, 1024);
  if (length == 0) return buffer.bytes[0] == '#' ? "none" : "none, but written";
  return buffer.Shown(1) + (length == std::strlen(buffer.bytes) ? "" : " (another length)");
}

std::string Do(const std::string& operation, const char* text) {
  if (operation == "message") return ShowMessage();
  if (operation == "line") return ShowLine(false);
  if (operation == "key") return ShowLine(true);
  if (operation == "list") return ShowInfFiles();
  if (operation == "ids") return ShowIds();
  if (operation == "copy") return ShowCopy(text);
  if (operation == "temporary-folder") return ShowTemporaryFolder();
  if (operation == "open") {
    InfFile* file = OpenInfFile(text);
    if (file != nullptr) CloseInfFile(file);
    return file != nullptr ? "opened" : "not opened";
  }
  if (operation == "update") {
    return UpdateDevices(nullptr, text, "C:\\a.inf") ? "updated" : "not updated";
  }
  return "no such operation";
}

}  // namespace

int main(int argc, char** argv) {
  ProgramArguments(&argc, &argv);
  if (argc != 4) return 2;
  _setmode(_fileno(stdout), _O_BINARY);
  code_page = static_cast<UINT>(std::atoi(argv[1]));
  wide_answer = Wide(CP_UTF8, argv[3]);
  answer = Narrow(code_page, wide_answer);
  // A list that ends in '|' has its own terminators; one that ends in '-' has lost its last.
  answer_has_end = answer.empty() || answer.back() != '-';
  if (!answer_has_end) answer.pop_back();
  for (char& c : answer) c = c == '|' ? '\0' : c;
  std::printf("%s\r\n", Do(argv[2], argv[3]).c_str());
  return 0;
}
