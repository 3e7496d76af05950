// Runs under Wine: calls one operation of platform/ for each pair of arguments, OPERATION and PATH,
// and writes a line about each, in binary mode so that names arrive as they are.
#include <fcntl.h>
#include <io.h>
#include <windows.h>
// The system's own form of texts.
#include <winternl.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

#include "platform/files.h"
#include "platform/process.h"
#include "platform/special_folders.h"
#include "platform/windows_text.h"

extern "C" NTSTATUS NTAPI LdrGetProcedureAddress(HMODULE, const ANSI_STRING*, ULONG, void**);

namespace {

bool rule_is_known = true;  // that of newer systems about where libraries are searched for

// GetProcAddress as a system has it that may be older than that rule.
FARPROC WINAPI FindProcedure(HMODULE library, LPCSTR name) {
  if (!rule_is_known && std::strcmp(name, "SetDefaultDllDirectories") == 0) return nullptr;
  ANSI_STRING text = {static_cast<USHORT>(std::strlen(name)),
                      static_cast<USHORT>(std::strlen(name)), const_cast<char*>(name)};
  void* address = nullptr;
  return LdrGetProcedureAddress(library, &text, 0, &address) == 0
             ? reinterpret_cast<FARPROC>(address)
             : nullptr;
}

std::string Outcome(bool done) {
  return done ? "yes" : std::string("no, ") + (errno == EACCES ? "EACCES" : "another reason");
}

std::string Open(const char* path, const char* mode) {
  std::FILE* file = OpenFile(path, mode);
  const std::string outcome = Outcome(file != nullptr);
  if (file != nullptr) std::fclose(file);
  return outcome;
}

std::string Told(bool found, const PathStatus& status) {
  if (!found) return "nothing";
  return status.is_directory ? "folder" : std::to_string(status.size);
}

std::string Stat(const char* path) {
  PathStatus status = {};
  return Told(StatPath(path, &status), status);
}

std::string ListAndClose(DirectoryHandle* directory) {
  if (directory == nullptr) return "no folder";
  std::string names;
  while (const char* name = NextDirectoryEntry(directory)) names += std::string(name) + "|";
  CloseDirectory(directory);
  return names;
}

// The operations on what a folder lists, for "FOLDER|NAME".
std::string DoToListed(const std::string& operation, const std::string& folder_and_name) {
  const std::size_t end = folder_and_name.find('|');
  if (end == std::string::npos) return "no name";
  DirectoryHandle* folder = OpenDirectory(folder_and_name.substr(0, end).c_str());
  if (folder == nullptr) return "no folder to list";
  const char* name = folder_and_name.c_str() + end + 1;
  std::string outcome = "no such operation";
  if (operation == "stat-listed") {
    PathStatus status = {};
    outcome = Told(StatListed(folder, name, &status), status);
  }
  if (operation == "list-listed") outcome = ListAndClose(OpenListedDirectory(folder, name));
  if (operation == "remove-listed") outcome = Outcome(RemoveListedFile(folder, name));
  if (operation == "remove-listed-folder") outcome = Outcome(RemoveListedDirectory(folder, name));
  CloseDirectory(folder);
  return outcome;
}

std::string Special(const char* number) {
  char path[kSpecialFolderSize];
  return SpecialFolderPath(static_cast<SpecialFolder>(std::atoi(number)), path) ? path : "none";
}

// What the file holds after the system's narrow call was given the converted path and wrote there.
std::string WriteInCodePage(const char* path) {
  char text[MAX_PATH];
  if (!CodePagePathFromUtf8(path, text, sizeof text)) return "no equivalent";
  HANDLE file = CreateFileA(text, GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return "not opened";
  CloseHandle(file);
  char back[MAX_PATH];
  return Utf8FromCodePage(text, std::strlen(text) + 1, back, sizeof back) ? back : "no way back";
}

std::string FileOf(HMODULE module) {
  char path[MAX_PATH];
  if (module == nullptr || GetModuleFileNameA(module, path, sizeof path) == 0) return "not loaded";
  return path;
}

}  // namespace

// What a source imports under a name is what the pointer of that name with __imp_ before it leads
// to, and this one stands before the linker looks for the system's own.
extern "C" const decltype(&GetProcAddress) imported_find_procedure __asm__(
    "__imp__GetProcAddress@8");
extern "C" const decltype(&GetProcAddress) imported_find_procedure = FindProcedure;

namespace {

// The process is prepared, where it is to be, as early as the program does it.
[[gnu::constructor(101)]] void PrepareBeforeTheRuntime() {
  const wchar_t* arguments = GetCommandLineW();
  rule_is_known = std::wcsstr(arguments, L"prepared-without-the-rule") == nullptr;
  if (std::wcsstr(arguments, L"prepared") != nullptr) PrepareProcess();
}

std::string Do(const std::string& operation, const char* path) {
  if (operation == "exists") return DirectoryExists(path) ? "yes" : "no";
  if (operation == "read") return Open(path, "r");
  if (operation == "read-binary") return Open(path, "rb");
  if (operation == "write") return Open(path, "wb");
  if (operation == "stat") return Stat(path);
  if (operation == "list") return ListAndClose(OpenDirectory(path));
  if (operation == "make") return Outcome(MakeDirectory(path));
  if (operation == "remove") return Outcome(RemoveFile(path));
  if (operation == "remove-folder") return Outcome(RemoveEmptyDirectory(path));
  if (operation.find("-listed") != std::string::npos) return DoToListed(operation, path);
  if (operation == "special") return Special(path);
  if (operation == "code-page") return std::to_string(GetACP());
  if (operation == "write-in-code-page") return WriteInCodePage(path);
  if (operation == "load") return FileOf(LoadLibraryExA(path, nullptr, 0));
  if (operation == "load-as-a-linked-library-does") return FileOf(LoadLibraryA(path));
  if (operation.rfind("prepared", 0) == 0) return "";  // the first initialiser has
  if (operation == "error-mode") {
    SetErrorMode(static_cast<UINT>(std::atoi(path)));
    PrepareProcess();
    return std::to_string(SetErrorMode(0));
  }
  return "no such operation";
}

}  // namespace

int main(int argc, char** argv) {
  ProgramArguments(&argc, &argv);
  _setmode(_fileno(stdout), _O_BINARY);
  for (int i = 1; i + 1 < argc; i += 2) {
    errno = 0;
    std::printf("%s\r\n", Do(argv[i], argv[i + 1]).c_str());
  }
  return 0;
}
