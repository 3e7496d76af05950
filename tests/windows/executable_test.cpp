// What stands in the executable's own headers, read with the cross compiler's objdump.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "tests/support/temp_dir.h"

namespace {

using testing::HasSubstr;
using testing::IsSubsetOf;
using testing::Not;

// On Windows' list of libraries that are always taken from the system's own folder.
const std::set<std::string> kProtected = {"advapi32.dll", "comdlg32.dll", "gdi32.dll",
                                          "kernel32.dll", "msvcrt.dll",   "ole32.dll",
                                          "setupapi.dll", "shell32.dll",  "user32.dll"};

std::string Headers() {
  const std::string command = "i686-w64-mingw32-objdump -p " INSTALLER;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> buffer{};
  while (std::fgets(buffer.data(), buffer.size(), pipe.get()) != nullptr) text += buffer.data();
  return text;
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

TEST(Executable, IsAHardenedProgramWithoutAConsoleOrATimeStamp) {
  const std::string headers = Headers();
  EXPECT_THAT(headers, HasSubstr("(Windows GUI)"));
  EXPECT_THAT(headers, HasSubstr("DYNAMIC_BASE"));
  EXPECT_THAT(headers, HasSubstr("NX_COMPAT"));
  EXPECT_THAT(headers, HasSubstr("large address aware"));
  EXPECT_THAT(headers, HasSubstr("Time/Date\t\tThu Jan  1 00:00:00 1970"));
}

TEST(Executable, ManifestAsksForNoAdministrator) {
  const std::string bytes = ReadFile(INSTALLER);
  EXPECT_THAT(bytes, HasSubstr("requestedExecutionLevel level=\"asInvoker\""));
  EXPECT_THAT(bytes, HasSubstr("UTF-8</activeCodePage>"));
}

TEST(Executable, CarriesItsVersion) {
  std::string wide;
  for (const char c : std::string("1.60-beta5")) wide += std::string{c, '\0'};
  EXPECT_THAT(ReadFile(INSTALLER), HasSubstr(wide));
}

TEST(Executable, HoldsNoPathOfTheMachineThatBuiltIt) {
  EXPECT_THAT(ReadFile(INSTALLER), Not(HasSubstr(CHECKOUT "/")));
}

}  // namespace
