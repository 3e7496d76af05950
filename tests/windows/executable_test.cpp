// What stands in the executable's own headers, read with the cross compiler's own tools.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "store/package_version.h"
#include "tests/support/temp_dir.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSubsetOf;
using testing::Not;

// On Windows' list of libraries that are always taken from the system's own folder.
const std::set<std::string> kProtected = {"advapi32.dll", "comdlg32.dll", "gdi32.dll",
                                          "kernel32.dll", "msvcrt.dll",   "ole32.dll",
                                          "setupapi.dll", "shell32.dll",  "user32.dll"};

std::string Output(const std::string& command) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> buffer{};
  while (std::fgets(buffer.data(), buffer.size(), pipe.get()) != nullptr) text += buffer.data();
  return text;
}

std::string Headers(const std::string& program = INSTALLER) {
  return Output("i686-w64-mingw32-objdump -p " + program);
}

// The system can move the program, which takes more than the flag: a list of what to change.
bool CanLieAnywhere(const std::string& program) {
  const std::string headers = Headers(program);
  std::uint32_t place = 0;
  std::uint32_t size = 0;
  const std::size_t entry = headers.find("\nEntry 5 ");
  if (entry == std::string::npos ||
      std::sscanf(headers.c_str() + entry, "\nEntry 5 %x %x Base Reloc", &place, &size) != 2) {
    ADD_FAILURE() << "no relocation directory told of in\n" << headers;
    return false;
  }
  return headers.find("DYNAMIC_BASE") != std::string::npos &&
         headers.find("relocations stripped") == std::string::npos && size > 0;
}

// The names of the sections that are writable and executable. Each has a line of its own and a
// line of its attributes.
std::vector<std::string> WritableCode(const std::string& program) {
  std::vector<std::string> found;
  std::istringstream lines(Output("i686-w64-mingw32-objdump -h " + program));
  std::size_t sections = 0;
  for (std::string line, attributes; std::getline(lines, line);) {
    int index = 0;
    char name[64];
    if (std::sscanf(line.c_str(), "%d %63s", &index, name) != 2) continue;
    ++sections;
    std::getline(lines, attributes);
    if (attributes.find("CODE") != std::string::npos &&
        attributes.find("READONLY") == std::string::npos) {
      found.emplace_back(name);
    }
  }
  EXPECT_GT(sections, 0U) << program;
  return found;
}

// Whether anything in a program, library or object calls the end of a guarded stack.
bool IsGuarded(const std::string& file) {
  const std::string symbols = Output("i686-w64-mingw32-nm " + file);
  EXPECT_THAT(symbols, HasSubstr(" T ")) << file;
  return symbols.find("___stack_chk_fail") != std::string::npos;
}

TEST(Executable, ImportsOnlyLibrariesThatTheSystemProtects) {
  std::set<std::string> imported;
  std::istringstream lines(Headers());
  for (std::string line; std::getline(lines, line);) {
    const std::size_t name = line.find("DLL Name: ");
    if (name == std::string::npos) continue;
    std::string library = line.substr(name + 10);
    for (char& c : library) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    imported.insert(library);
  }
  EXPECT_FALSE(imported.empty());
  EXPECT_THAT(imported, IsSubsetOf(kProtected));
}

TEST(Executable, AsksForNothingThatXpLacks) {
  // "KERNEL32.dll: OpenThreadToken", as a newer KERNEL32 has it beside ADVAPI32.
  std::string library;
  std::istringstream lines(Headers());
  for (std::string line; std::getline(lines, line);) {
    const std::size_t name = line.find("DLL Name: ");
    if (name != std::string::npos) library = line.substr(name + 10);
    EXPECT_EQ(line.find("GetTickCount64"), std::string::npos) << line;
    if (library == "KERNEL32.dll") {
      EXPECT_EQ(line.find("Token"), std::string::npos) << line;
    }
  }
}

TEST(Executable, ImportsNoCallThatStartsAProgramOrOpensAConnection) {
  const std::string headers = Headers();
  EXPECT_THAT(headers, HasSubstr("LoadLibrary"));  // that names are listed at all
  for (const char* call :
       {"CreateProcess", "ShellExecute", "WinExec", "CreateRemoteThread", "_spawn", "_popen",
        "execv", "  system\n", "_wsystem", "WSAStartup", " select", " socket", " connect",
        "Internet", "WinHttp", "URLDownload"}) {
    EXPECT_THAT(headers, Not(HasSubstr(call)));
  }
}

// What the compiler's other runtime brings, and programs that hunt for malware dislike.
TEST(Executable, ImportsNoCallThatStopsOrRedirectsThreads) {
  const std::string headers = Headers();
  for (const char* call :
       {"SuspendThread", "ResumeThread", "GetThreadContext", "SetThreadContext"}) {
    EXPECT_THAT(headers, Not(HasSubstr(call)));
  }
}

// As the image format's documentation tells it, one word after the other: add, and add what is
// carried out of 16 bits.
TEST(Executable, ItsChecksumIsRight) {
  const std::string bytes = ReadFile(INSTALLER);
  const auto word = [&bytes](std::size_t place) {
    const auto byte = [&bytes](std::size_t i) -> std::uint32_t {
      return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0;
    };
    return byte(place) | byte(place + 1) << 8;
  };
  const std::size_t field = (word(0x3c) | word(0x3e) << 16) + 88;
  const std::uint32_t told = word(field) | word(field + 2) << 16;
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    if (i != field && i != field + 2) sum += word(i);
    sum = (sum & 0xFFFF) + (sum >> 16);
  }
  EXPECT_NE(told, 0U);
  EXPECT_EQ(told, sum + bytes.size());
}

TEST(Executable, IsAHardenedProgramWithoutAConsoleOrATimeStamp) {
  const std::string headers = Headers();
  EXPECT_THAT(headers, HasSubstr("(Windows GUI)"));
  EXPECT_THAT(headers, HasSubstr("DYNAMIC_BASE"));
  EXPECT_THAT(headers, HasSubstr("NX_COMPAT"));
  EXPECT_THAT(headers, HasSubstr("large address aware"));
  EXPECT_THAT(headers, HasSubstr("Time/Date\t\tThu Jan  1 00:00:00 1970"));
}

TEST(Executable, SystemCanPlaceItAnywhere) {
  EXPECT_TRUE(CanLieAnywhere(INSTALLER));
  EXPECT_FALSE(CanLieAnywhere(BARE_PROGRAM));
}

TEST(Executable, NoMemoryIsWritableAndExecutable) {
  EXPECT_THAT(WritableCode(INSTALLER), IsEmpty());
  EXPECT_THAT(WritableCode(BARE_PROGRAM), ElementsAre(".wxcode"));
  EXPECT_THAT(Headers(BARE_PROGRAM), Not(HasSubstr("NX_COMPAT")));
}

// The finished file has no symbols, but the libraries that it is made of have.
TEST(Executable, StacksAreGuarded) {
  EXPECT_THAT(ReadFile(INSTALLER), HasSubstr("stack smashing detected"));
  for (const char* folder : {"platform", "store", "recognition", "engine", "driver", "wizard"}) {
    const std::string name = folder;
    EXPECT_TRUE(IsGuarded(WINDOWS_BUILD "/" + name + "/lib" + name + ".a")) << name;
  }
  EXPECT_FALSE(IsGuarded(BARE_PROGRAM));
}

TEST(Executable, ManifestAsksForNoAdministrator) {
  const std::string bytes = ReadFile(INSTALLER);
  EXPECT_THAT(bytes, HasSubstr("requestedExecutionLevel level=\"asInvoker\""));
  EXPECT_THAT(bytes, HasSubstr("UTF-8</activeCodePage>"));
}

TEST(Executable, ManifestSaysThatPagesAreDrawnAtTheScaleOfTheScreen) {
  const std::string bytes = ReadFile(INSTALLER);
  EXPECT_THAT(bytes, HasSubstr("true/pm</dpiAware>"));
  EXPECT_THAT(bytes, HasSubstr("PerMonitorV2, PerMonitor</dpiAwareness>"));
}

TEST(Executable, IconHasTheSizesThatTheShellAsksForAtEveryScale) {
  // A directory of icons in the resources begins with 0, 1 and their count; the width comes first
  // in each of its entries of 14 bytes, and 256 as 0.
  const std::string bytes = ReadFile(INSTALLER);
  const std::size_t directory = bytes.find(std::string("\0\0\1\0\7\0\x10\x10", 8));
  ASSERT_NE(directory, std::string::npos);
  std::vector<int> widths;
  for (std::size_t i = 0; i < 7; ++i) {
    widths.push_back(static_cast<unsigned char>(bytes[directory + 6 + 14 * i]));
  }
  EXPECT_THAT(widths, ElementsAre(16, 20, 24, 32, 40, 48, 0));
}

// In UTF-16, as resources have their texts.
std::string Wide(const std::string& text) {
  std::string wide;
  for (const char c : text) wide += std::string{c, '\0'};
  return wide;
}

// The text of the version resource under this name: behind the name and its terminator, at the next
// place that four divides.
std::string VersionText(const std::string& bytes, const std::string& name) {
  const std::string key = Wide(name) + std::string(2, '\0');
  std::size_t at = bytes.find(key);
  if (at == std::string::npos) return "(none)";
  at = (at + key.size() + 3) / 4 * 4;
  std::string text;
  for (; at + 1 < bytes.size() && bytes[at] != '\0'; at += 2) text += bytes[at];
  return text;
}

// The package's version as four numbers.
std::string VersionNumbers() {
  int major = 0;
  int minor = 0;
  int beta = 0;
  EXPECT_EQ(std::sscanf(kPackageVersion, "%d.%d-beta%d", &major, &minor, &beta), 3);
  return std::to_string(major) + "." + std::to_string(minor) + ".0." + std::to_string(beta);
}

TEST(Executable, SaysWhatItIsInItsVersionResource) {
  const std::string bytes = ReadFile(INSTALLER);
  EXPECT_EQ(VersionText(bytes, "CompanyName"), "Quirloduino");
  EXPECT_EQ(VersionText(bytes, "FileDescription"), "Adds Quirlo boards to the Arduino IDE");
  EXPECT_EQ(VersionText(bytes, "FileVersion"), kPackageVersion);
  EXPECT_EQ(VersionText(bytes, "InternalName"), "quirloduino");
  EXPECT_EQ(VersionText(bytes, "LegalCopyright"), "Copyright (C) Quirloduino");
  EXPECT_EQ(VersionText(bytes, "OriginalFilename"), "quirloduino.exe");
  EXPECT_EQ(VersionText(bytes, "ProductName"), "Quirloduino");
  EXPECT_EQ(VersionText(bytes, "ProductVersion"), kPackageVersion);
}

TEST(Executable, ManifestHasTheSameVersion) {
  EXPECT_THAT(ReadFile(INSTALLER),
              HasSubstr("name=\"Quirloduino\" version=\"" + VersionNumbers() + "\""));
}

// The numbers stand behind the mark of the fixed part, in two pairs, the higher of each last.
TEST(Executable, FixedVersionHasTheSameNumbers) {
  const std::string bytes = ReadFile(INSTALLER);
  const std::size_t at = bytes.find(std::string("\xBD\x04\xEF\xFE", 4));
  ASSERT_NE(at, std::string::npos);
  const auto number = [&](std::size_t place) {
    return std::to_string(static_cast<unsigned char>(bytes[at + place]));
  };
  for (const std::size_t version : {8U, 16U}) {  // of the file, of the product
    EXPECT_EQ(number(version + 2) + "." + number(version) + "." + number(version + 6) + "." +
                  number(version + 4),
              VersionNumbers());
  }
}

TEST(Executable, HoldsNoPathOfTheMachineThatBuiltIt) {
  EXPECT_THAT(ReadFile(INSTALLER), Not(HasSubstr(CHECKOUT "/")));
}

}  // namespace
