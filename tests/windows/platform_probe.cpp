// Runs under Wine: calls one operation of platform/ for each pair of arguments, OPERATION and PATH,
// and writes a line about each, in binary mode so that names arrive as they are.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/files.h"
#include "platform/library_search.h"
#include "platform/program_arguments.h"
#include "platform/special_folders.h"
#include "platform/windows_text.h"

namespace {

std::string Outcome(bool done) {
  return done ? "yes" : std::string("no, ") + (errno == EACCES ? "EACCES" : "another reason");
}

std::string Open(const char* path, const char* mode) {
  std::FILE* file = OpenFile(path, mode);
  const std::string outcome = Outcome(file != nullptr);
  if (file != nullptr) std::fclose(file);
  return outcome;
}

std::string Stat(const char* path) {
  PathStatus status;
  if (!StatPath(path, &status)) return "nothing";
  return status.is_directory ? "folder" : std::to_string(status.size);
}

std::string List(const char* path) {
  DirectoryHandle* directory = OpenDirectory(path);
  if (directory == nullptr) return "no folder";
  std::string names;
  while (const char* name = NextDirectoryEntry(directory)) names += std::string(name) + "|";
  CloseDirectory(directory);
  return names;
}

std::string Special(const char* number) {
  char path[kSpecialFolderSize];
  return SpecialFolderPath(static_cast<SpecialFolder>(std::atoi(number)), path) ? path : "none";
}

// What the file holds after the system's narrow call was given the converted path and wrote there.
std::string WriteInCodePage(const char* path) {
  char text[MAX_PATH];
  if (!CodePageFromUtf8(path, text, sizeof text)) return "no equivalent";
  HANDLE file = CreateFileA(text, GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return "not opened";
  CloseHandle(file);
  char back[MAX_PATH];
  return Utf8FromCodePage(text, back, sizeof back) ? back : "no way back";
}

std::string Load(const char* library) {
  HMODULE module = LoadLibraryA(library);
  char path[MAX_PATH];
  if (module == nullptr || GetModuleFileNameA(module, path, sizeof path) == 0) return "not loaded";
  return path;
}

std::string Do(const std::string& operation, const char* path) {
  if (operation == "exists") return DirectoryExists(path) ? "yes" : "no";
  if (operation == "read") return Open(path, "r");
  if (operation == "read-binary") return Open(path, "rb");
  if (operation == "write") return Open(path, "wb");
  if (operation == "stat") return Stat(path);
  if (operation == "list") return List(path);
  if (operation == "make") return Outcome(MakeDirectory(path));
  if (operation == "remove") return Outcome(RemoveFile(path));
  if (operation == "remove-folder") return Outcome(RemoveEmptyDirectory(path));
  if (operation == "special") return Special(path);
  if (operation == "code-page") return std::to_string(GetACP());
  if (operation == "write-in-code-page") return WriteInCodePage(path);
  if (operation == "load") return Load(path);
  if (operation == "restrict-and-load") {
    RestrictLibrarySearch();
    return Load(path);
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
