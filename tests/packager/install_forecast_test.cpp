// What becomes of each entry, and how many by which rule for the delivered payload. That the
// decision itself is the installer's is tested where it stands; here, that it is asked rightly.
#include "packager/install_forecast.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "packager/payload_limits.h"
#include "packager/payload_listing.h"
#include "packager/refusal.h"
#include "tests/engine/delivered_payload.h"
#include "tests/packager/made_view.h"
#include "tests/support/arduino_host.h"

namespace {

PayloadView Delivered() {
  std::vector<std::pair<std::string, std::string>> entries;
  for (const TestEntry& entry : DeliveredPayload()) entries.emplace_back(entry.name, entry.content);
  return MadeView(entries);
}

PayloadView Small() {
  std::vector<std::pair<std::string, std::string>> entries;
  for (const TestEntry& entry : SmallPayload1819()) entries.emplace_back(entry.name, entry.content);
  return MadeView(entries);
}

std::size_t IndexOf(const PayloadView& payload, const std::string& name) {
  for (std::size_t i = 0; i < payload.entries.size(); ++i) {
    if (payload.entries[i].name == name) return i;
  }
  ADD_FAILURE() << name;
  return 0;
}

std::string Refused(const PayloadView& payload, const std::string& release,
                    const std::set<std::string>& left_out = {}) {
  try {
    const InstallForecast forecast(payload, release, left_out);
    return "";
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
}

TEST(InstallForecast, CountsTheDeliveredPayloadByItsRules) {
  EXPECT_EQ(ForecastSummary(Delivered(), {"1.8.19"}, ListingForm::kText),
            "entries by rule                                       1.8.19\n"
            "another release's                                       5200\n"
            "driver INF, for the driver page                            1\n"
            "board list                                                 1\n"
            "platform description                                       1\n"
            "tool                                                      14\n"
            "plugin                                                     1\n"
            "version marker                                             1\n"
            "toolchain, alias                                         368\n"
            "toolchain                                               1726\n"
            "class of pde.jar                                          53\n"
            "class of arduino-core.jar                                  8\n"
            "rest of WINDOWS/, not installed                            2\n"
            "core, no longer used and removed                           1\n"
            "keywords of the cores                                      1\n"
            "core                                                     399\n"
            "release's library                                        965\n"
            "example                                                   51\n"
            "math library                                               4\n"
            "release's example                                          8\n"
            "library's text or picture, for the library page           75\n"
            "library                                                 4682\n"
            "no rule                                                    8\n"
            "all                                                    13570\n");
}

TEST(InstallForecast, HasAColumnForEachReleaseByItsNumbers) {
  const PayloadView payload = Delivered();
  const std::vector<std::string> releases = ReleasesOf(payload);
  EXPECT_EQ(releases,
            (std::vector<std::string>{"1.8.5", "1.8.9", "1.8.13", "1.8.15", "1.8.16", "1.8.19"}));
  const std::string text = ForecastSummary(payload, releases, ListingForm::kText);
  EXPECT_NE(text.find("\nclass of pde.jar                                          52        52 "
                      "       58        53        54        53\n"),
            std::string::npos)
      << text;
}

TEST(InstallForecast, TellsPlaceFileAndSource) {
  const PayloadView payload = Small();
  const InstallForecast forecast(payload, "1.8.19");
  const auto at = [&](const std::string& name) { return forecast.At(IndexOf(payload, name)); };

  EXPECT_EQ(LandingPath(at("Q4Security.jar")), "tools/Q4Security/tool/Q4Security.jar");
  const Foretold alias = at("arm/bin/arm-none-eabi-g++.exe --> arm/bin/arm-none-eabi-c++.exe");
  EXPECT_EQ(LandingPath(alias), "hardware/tools/arm/bin/arm-none-eabi-g++.exe");
  EXPECT_EQ(alias.source, IndexOf(payload, "arm/bin/arm-none-eabi-c++.exe"));
  const Foretold member = at("1.8.19/WINDOWS/pde.jar/processing/app/Base.class");
  EXPECT_EQ(member.action, DispositionAction::kWriteObject);
  EXPECT_EQ(LandingPath(member), "lib/pde.jar");
  EXPECT_EQ(member.file, "processing/app/Base.class");
  EXPECT_TRUE(member.antivirus_hint);
  const Foretold removal = at("cores/quirlo4/libc.c");
  EXPECT_EQ(removal.action, DispositionAction::kRemove);
  EXPECT_EQ(LandingPath(removal), "hardware/quirlo/avr/cores/quirlo4/libc.c");
  EXPECT_EQ(at("vscode_plugins.exe").action, DispositionAction::kPassOver);
  EXPECT_EQ(LandingPath(at("vscode_plugins.exe")), "");
}

TEST(InstallForecast, PassesOverTheLibrariesLeftOutAndNoOther) {
  const PayloadView payload = Small();
  const InstallForecast forecast(payload, "1.8.19", {"OneWire"});
  EXPECT_EQ(LandingPath(forecast.At(IndexOf(payload, "libraries/OneWire/OneWire.cpp"))), "");
  EXPECT_EQ(LandingPath(forecast.At(IndexOf(payload, "libraries/Ping/Ping.h"))),
            "hardware/quirlo/avr/libraries/Ping/Ping.h");
}

TEST(InstallForecast, RefusesWhatThePayloadDoesNotHave) {
  EXPECT_EQ(Refused(Small(), "1.8.5"), "1.8.5: the payload has no such release");
  EXPECT_EQ(Refused(Small(), "1.8.1"), "1.8.1: the payload has no such release");
  EXPECT_EQ(Refused(Small(), "1.8.19", {"OneWir"}), "OneWir: the payload has no such library");
  EXPECT_EQ(Refused(Small(), "1.8.19", {"OneWire", "Ping"}), "");
}

TEST(InstallForecast, TellsThatAnInstallWouldFail) {
  const PayloadView payload = MadeView({{"1.8.19/WINDOWS/directory_criteria.txt", ""},
                                        {"1.8.19/WINDOWS/locations.txt", kLocations},
                                        {"arm/a --> arm/b", ""},
                                        {"arm/b", "later"}});
  const std::string text =
      ForecastListing(payload, InstallForecast(payload, "1.8.19"), ListingForm::kText);
  EXPECT_NE(text.find("2\t0\tarm/a --> arm/b\tthe install fails\ttoolchain, alias\n"),
            std::string::npos)
      << text;
}

TEST(PayloadLimits, FindsTheLongestPlaceOfAllReleases) {
  const std::string member = "1.8.5/libraries/" + std::string(60, 'x') + "/a.h";
  const PayloadView payload =
      MadeView({{"1.8.19/WINDOWS/directory_criteria.txt", ""},
                {"1.8.19/WINDOWS/locations.txt", kLocations},
                {"1.8.5/WINDOWS/directory_criteria.txt", ""},
                {"1.8.5/WINDOWS/locations.txt", kLocations},
                {"1.8.5/WINDOWS/pde.jar/" + std::string(300, 'y') + ".class", ""},
                {member, ""},
                {"libraries/" + std::string(59, 'z') + "/a.h", ""},
                {"libraries/" + std::string(60, 'z') + "/a.h", ""},  // as long, but later
                {"cores/" + std::string(50, 'v') + "/b.h", ""},
                {"notes/" + std::string(200, 'w'), ""}});
  const LongestPlace longest = FindLongestPlace(payload);
  EXPECT_EQ(longest.entry, member);
  EXPECT_EQ(longest.path, "hardware/quirlo/avr/libraries/" + std::string(60, 'x') + "/a.h");
}

TEST(PayloadLimits, AHostFolderGetsWhatThePlaceAndASeparatorLeave) {
  EXPECT_EQ(LongestHostFolder(158), 100U);
  EXPECT_EQ(LongestHostFolder(257), 1U);
  EXPECT_EQ(LongestHostFolder(258), 0U);
  EXPECT_EQ(LongestHostFolder(259), 0U);
  EXPECT_EQ(LongestHostFolder(5000), 0U);
}

TEST(PayloadLimits, AreTold) {
  EXPECT_EQ(LimitsText(Small(), 1000),
            "longest path below the host folder: 60 bytes, of armlib/libarm_cortexM4l_math.a\n"
            "a host folder's path may have 198 bytes before names are cut\n"
            "an installer takes 2637 bytes of memory: 1637 of content, 1000 packed\n"
            "       3 entries           33 bytes  root tools\n"
            "       2 entries            8 bytes  arm/\n"
            "       2 entries           13 bytes  driver\n"
            "       5 entries         1466 bytes  release WINDOWS/\n"
            "       1 entry              5 bytes  release libraries/\n"
            "       1 entry              7 bytes  release examples/\n"
            "       1 entry              5 bytes  examples/\n"
            "       3 entries           42 bytes  cores/\n"
            "       3 entries           23 bytes  libraries/\n"
            "       1 entry              4 bytes  armlib/\n"
            "       1 entry              7 bytes  images\n"
            "       2 entries           14 bytes  release board files\n"
            "       1 entry             10 bytes  version marker\n");
}

}  // namespace
