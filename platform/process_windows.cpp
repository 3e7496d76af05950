#include "platform/process.h"

// shellapi.h stands on it.
#include <windows.h>

#include <shellapi.h>

#include <cstddef>
#include <cstdlib>
#include <cwchar>

#include "platform/windows_library.h"
#include "platform/windows_text.h"

namespace {

// What is loaded by its bare name once it is first needed, as far as Windows doesn't protect the
// name: by windows, by the stack protector's random number, by SetupAPI (the most of them) and by
// FLTK, in this order, so that none of these is loaded by way of another. SetupAPI goes by a search
// of its own that no rule of the process reaches, but what is loaded already is not searched for. A
// name that a Windows lacks, nobody asks for there.
const wchar_t* const kLateLibraries[] = {L"uxtheme.dll",                                     //
                                         L"cryptbase.dll", L"cryptsp.dll",  L"bcrypt.dll",   //
                                         L"crypt32.dll",   L"wintrust.dll", L"cabinet.dll",  //
                                         L"cfgmgr32.dll",  L"devobj.dll",   L"devrtl.dll",   //
                                         L"drvstore.dll",  L"spinf.dll",    L"spfileq.dll",  //
                                         L"version.dll",   L"newdev.dll",                    //
                                         L"msimg32.dll",   L"dwmapi.dll",   L"shcore.dll"};

// The function of a system library that is loaded already, or null.
template <typename Function>
Function Find(const wchar_t* library, const char* name) {
  HMODULE module = GetModuleHandleW(library);
  if (module == nullptr) return nullptr;
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// Takes the program's own folder and the current one out of the search for libraries. A Windows too
// old to have such a rule searches the folder that it is told of in the place of the current one.
void RestrictLibrarySearch() {
  using SetDirectories = BOOL(WINAPI*)(DWORD);
  const auto set_directories = Find<SetDirectories>(L"kernel32.dll", "SetDefaultDllDirectories");
  if (set_directories != nullptr && set_directories(LOAD_LIBRARY_SEARCH_SYSTEM32) != FALSE) return;
  wchar_t folder[MAX_PATH];
  const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
  if (length > 0 && length < MAX_PATH) SetDllDirectoryW(folder);
}

constexpr std::size_t kBytesOfAUnit = 3;  // of UTF-8, for one unit of UTF-16, at most

// From malloc, or null when memory runs out.
char* Utf8Copy(const wchar_t* wide) {
  const std::size_t size = std::wcslen(wide) * kBytesOfAUnit + 1;
  char* text = static_cast<char*>(std::malloc(size));
  if (text != nullptr && Utf8FromWide(wide, text, size)) return text;
  std::free(text);
  return nullptr;
}

}  // namespace

void PrepareProcess() {
  // Beside what the process was started with. The first of all, since libraries are files too.
  SetErrorMode(SetErrorMode(SEM_FAILCRITICALERRORS) | SEM_FAILCRITICALERRORS);
  RestrictLibrarySearch();
  for (const wchar_t* name : kLateLibraries) LoadSystemLibrary(name);
}

void ProgramArguments(int* argc, char*** argv) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (wide == nullptr) return;
  char** texts =
      static_cast<char**>(std::calloc(static_cast<std::size_t>(count) + 1, sizeof(char*)));
  bool complete = texts != nullptr;
  for (int i = 0; complete && i < count; ++i) {
    texts[i] = Utf8Copy(wide[i]);
    complete = texts[i] != nullptr;
  }
  LocalFree(wide);
  if (!complete) return;  // memory has run out, and the process is about to end over it
  *argc = count;
  *argv = texts;
}
