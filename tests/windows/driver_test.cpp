// The driver page, clicked under Wine: on Wine's own INF files, registry and tokens where those are
// real, and on a made machine that records every call where they are not.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/driver/sample_infs.h"
#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"
#include "tests/windows/planted_libraries.h"
#include "tests/windows/run_in_wine.h"
#include "tests/windows/wine_window.h"
#include "tests/windows/without_utf8.h"

namespace fs = std::filesystem;

namespace {

constexpr Spot kUpdateDriver = {90, 273};

const std::string kSearchKey =
    "HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\DriverSearching";

class DriverPage : public testing::Test {
 protected:
  void SetUp() override {
    if (std::getenv("DISPLAY") == nullptr) GTEST_SKIP() << "no display to show the wizard on";
    Clean();
    RunProgram("reg", {"delete", kSearchKey, "/f"});
  }
  void TearDown() override {
    WineOverrides.clear();
    Clean();
  }
  void Clean() {
    for (const char* name : {"usbser.inf", "cdcacm.inf", "cdcacm.pnf", "oem0.inf"}) {
      fs::remove(inf_ + name);
    }
    for (const char* name : {"cdcacm.inf", "cdcacm.cat"}) fs::remove(temp_ + name);
    for (const char* name : {"ask.txt", "calls.txt", "refuse.txt"}) fs::remove(drive_ + name);
  }

  static void GoToDriverPage(WineWindow* wizard) {
    wizard->Click(kNext);
    wizard->WaitUntilActive(kBack);
  }

  static void SetSearchOrder(const std::string& value) {
    RunProgram("reg", {"add", kSearchKey, "/v", "SearchOrderConfig", "/t", "REG_DWORD", "/d", value,
                       "/f"});
  }
  static std::string SearchOrder() {
    const std::string answer =
        RunProgram("reg", {"query", kSearchKey, "/v", "SearchOrderConfig"}).output;
    const std::size_t value = answer.find("0x");
    return value == std::string::npos ? answer : answer.substr(value, 3);
  }

  std::string drive_ = WinePrefix() + "/drive_c/";
  std::string inf_ = drive_ + "windows/inf/";
  std::string temp_ = drive_ + "users/root/Temp/";
};

TEST_F(DriverPage, SystemsOwnDriverNeedsNoInstall) {
  WriteFile(inf_ + "usbser.inf", kSystemDriverInf);
  SetSearchOrder("1");
  WineWindow wizard(INSTALLER);
  GoToDriverPage(&wizard);
  wizard.Keep("driver-of-the-system");
  EXPECT_TRUE(wizard.IsActive(kNext));
  EXPECT_FALSE(wizard.IsActive(kSkipDriver));
  EXPECT_FALSE(wizard.IsActive(kUpdateDriver));
  wizard.Click(kNext);
  wizard.WaitUntilActive(kHelp);
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
  EXPECT_FALSE(fs::exists(temp_ + "cdcacm.inf")) << "nothing is staged";
  EXPECT_EQ(SearchOrder(), "0x1");
}

TEST_F(DriverPage, OlderSystemsFileNeedsTheInstall) {
  WriteFile(inf_ + "usbser.inf", kOlderSystemInf);
  WineWindow wizard(INSTALLER);
  GoToDriverPage(&wizard);
  EXPECT_TRUE(wizard.IsActive(kSkipDriver));
  EXPECT_TRUE(wizard.IsActive(kNext));
  EXPECT_EQ(ReadFile(temp_ + "cdcacm.inf"), ReadFile(SAMPLE "/cdcacm.inf"));
  EXPECT_EQ(ReadFile(temp_ + "cdcacm.cat"), ReadFile(SAMPLE "/cdcacm.cat"));
  wizard.Click(kSkipDriver);
  wizard.WaitUntilActive(kHelp);
  EXPECT_FALSE(fs::exists(inf_ + "cdcacm.inf"));
}

TEST_F(DriverPage, NextInstallsAndUpdateServesTheDevices) {
  SetSearchOrder("1");
  WineWindow wizard(INSTALLER);
  GoToDriverPage(&wizard);
  ASSERT_TRUE(wizard.IsActive(kSkipDriver));
  wizard.Click(kNext);
  wizard.WaitUntilActive(kHelp);
  EXPECT_EQ(ReadFile(inf_ + "cdcacm.inf"), ReadFile(SAMPLE "/cdcacm.inf"));
  EXPECT_FALSE(fs::exists(temp_ + "cdcacm.inf")) << "the system deletes the source";
  EXPECT_TRUE(fs::exists(temp_ + "cdcacm.cat"));
  wizard.Click(kBack);
  wizard.WaitUntilActive(kUpdateDriver);
  EXPECT_FALSE(wizard.IsActive(kSkipDriver));
  wizard.Keep("driver-installed");
  wizard.ClickAndWait(kUpdateDriver);
  wizard.Keep("driver-updated");
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
  EXPECT_EQ(SearchOrder(), "0x2");
}

TEST_F(DriverPage, InstallsAndUpdatesWithoutALibraryFromBesideTheProgramOrTheCurrentFolder) {
  const TempDir dir;
  const TempDir current;
  fs::copy(INSTALLER, dir / "quirloduino.exe");
  PlantLibraries(dir.path());
  PlantLibraries(current.path());
  WineOverrides = PreferPlantedLibraries();
  {
    WineWindow wizard(dir / "quirloduino.exe", {}, "Quirloduino .* Installer", current.path());
    GoToDriverPage(&wizard);
    ASSERT_TRUE(wizard.IsActive(kSkipDriver));
    wizard.Click(kNext);
    wizard.WaitUntilActive(kHelp);
    EXPECT_TRUE(fs::exists(inf_ + "cdcacm.inf"));
    WriteFile(temp_ + "cdcacm.inf", ReadFile(SAMPLE "/cdcacm.inf"));  // as where the system left it
    wizard.Click(kBack);
    wizard.WaitUntilActive(kUpdateDriver);
    wizard.ClickAndWait(kUpdateDriver);
    wizard.Keep("driver-updated-beside-planted-libraries");
    wizard.Click(kCancel);
    EXPECT_EQ(wizard.End(), 0);
  }
  EXPECT_EQ(LoadedPlantedLibraries(dir.path()), "");
  EXPECT_EQ(LoadedPlantedLibraries(current.path()), "");
}

TEST_F(DriverPage, OrdinaryUserCanOnlySkip) {
  WineWindow wizard(WITHOUT_ADMINISTRATORS, {INSTALLER});
  GoToDriverPage(&wizard);
  wizard.Keep("driver-ordinary-user");
  EXPECT_FALSE(wizard.IsActive(kNext));
  EXPECT_TRUE(wizard.IsActive(kSkipDriver));
  wizard.Click(kSkipDriver);
  wizard.WaitUntilActive(kHelp);
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
}

TEST(Devices, PropertiesOfAKnownDeviceAreReadAndFlagged) {
  const std::string key = "HKLM\\System\\CurrentControlSet\\Enum\\USB\\VID_16C0&PID_0483\\1";
  const auto add = [&](const char* name, const char* type, const std::string& value) {
    return RunProgram("reg", {"add", key, "/v", name, "/t", type, "/d", value, "/f"}).status;
  };
  ASSERT_EQ(add("ClassGUID", "REG_SZ", "{4D36E978-E325-11CE-BFC1-08002BE10318}"), 0);
  ASSERT_EQ(add("HardwareID", "REG_MULTI_SZ", "USB\\VID_16C0&PID_0483\\0" + kHardwareId), 0);
  ASSERT_EQ(add("CompatibleIDs", "REG_MULTI_SZ", "USB\\Class_02"), 0);
  ASSERT_EQ(add("ConfigFlags", "REG_DWORD", "1024"), 0);
  EXPECT_EQ(RunProgram(DRIVER_PROBE, {kHardwareId}).output,
            "ids USB\\VID_16C0&PID_0483|" + kHardwareId +
                "| compatible USB\\Class_02| flags 1024, written\n");
  const std::string after = RunProgram("reg", {"query", key, "/v", "ConfigFlags"}).output;
  EXPECT_NE(after.find("0x420"), std::string::npos) << after;
  RunProgram("reg", {"delete", key, "/f"});
}

struct TemporaryFolderCase {
  const char* situation;
  const char* folder;
  bool utf8;
};

class TemporaryFolder : public DriverPage, public testing::WithParamInterface<TemporaryFolderCase> {
 protected:
  static void Set(const std::string& folder) {
    for (const char* name : {"TEMP", "TMP"}) {
      RunProgram("reg", {"add", "HKCU\\Environment", "/v", name, "/d", folder, "/f"});
    }
  }
  void TearDown() override {
    if (!IsSkipped()) Set("C:\\users\\root\\Temp");
    DriverPage::TearDown();
  }
};

TEST_P(TemporaryFolder, OfAnyNameIsInstalledFrom) {
  const std::string folder = drive_ + GetParam().folder;
  const TempDir dir;
  fs::create_directory(folder);
  Set(std::string("C:\\") + GetParam().folder);
  WineWindow wizard(GetParam().utf8 ? INSTALLER : WithoutUtf8(INSTALLER, dir / "quirloduino.exe"));
  GoToDriverPage(&wizard);
  ASSERT_TRUE(wizard.IsActive(kSkipDriver)) << "nothing was staged";
  EXPECT_EQ(ReadFile(folder + "/cdcacm.inf"), ReadFile(SAMPLE "/cdcacm.inf"));
  wizard.Click(kNext);
  wizard.WaitUntilActive(kHelp);
  EXPECT_EQ(ReadFile(inf_ + "cdcacm.inf"), ReadFile(SAMPLE "/cdcacm.inf"));
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
  fs::remove_all(folder);
}

const TemporaryFolderCase kTemporaryFolders[] = {
    {"WesternInUtf8", "\xC3\xA9 \xC3\xBC \xC3\x9F", true},
    {"WesternInTheSystemsCodePage", "\xC3\xA9 \xC3\xBC \xC3\x9F", false},
    {"RussianInUtf8", "\xD0\x9C\xD0\xB8\xD1\x80", true},
    {"RussianInTheSystemsCodePage", "\xD0\x9C\xD0\xB8\xD1\x80", false},
};

INSTANTIATE_TEST_SUITE_P(All, TemporaryFolder, testing::ValuesIn(kTemporaryFolders),
                         [](const auto& test) { return std::string(test.param.situation); });

// The wizard beside the made machine's libraries. newdev.dll comes from the system's folder, where
// the program insists on finding it.
class MadeMachine : public DriverPage {
 protected:
  void SetUp() override {
    DriverPage::SetUp();
    if (IsSkipped()) return;
    RunProgram(INSTALLER, {"--dir="});  // Wine's own services start on Wine's own libraries
    fs::copy(INSTALLER, dir_ / "quirloduino.exe");
    fs::copy(RECORDING_SETUPAPI, dir_ / "setupapi.dll");
    fs::rename(newdev_, newdev_ + ".of-wine");
    fs::copy(RECORDING_NEWDEV, newdev_);
    WineOverrides = "setupapi,newdev=n";
  }
  void TearDown() override {
    if (fs::exists(newdev_ + ".of-wine")) {
      fs::remove(newdev_);
      fs::rename(newdev_ + ".of-wine", newdev_);
    }
    DriverPage::TearDown();
  }

  // What was called since the last time.
  std::string Calls() {
    const std::string calls =
        fs::exists(drive_ + "calls.txt") ? ReadFile(drive_ + "calls.txt") : "";
    fs::remove(drive_ + "calls.txt");
    return calls;
  }

  TempDir dir_;
  std::string newdev_ = drive_ + "windows/system32/newdev.dll";
};

const std::string kStaged = "C:\\users\\root\\Temp\\cdcacm.inf";

std::string Opened(const std::string& name) {
  return "open " + name + ", class -, style 2, line -\n";
}

std::string TextRead(int size) {
  return "text, inf -, section -, key -, size " + std::to_string(size) + ", required -\n";
}

const std::string kNextLine = "next line, same context\n";

std::string VersionRead(const std::string& name) {
  return Opened(name) + "first line of Version, key -\n" + TextRead(8192) + kNextLine +
         TextRead(8192 - 12) + kNextLine + "close\n";
}

// Loaded from the system's folder at the very start, when the system already asks no questions.
const std::string kStart = "newdev loaded in error mode 1\n";

const std::string kSurvey = Opened("usbser.inf") + VersionRead(kStaged) +
                            "list, folder -, style 2, buffer -, size 0\n"
                            "list, folder -, style 2, buffer given, size 22\n" +
                            VersionRead("oem7.inf");

const std::string kCopy =
    "copy " + kStaged + ", media -, type 0, style 1, size 260, required -, component -\n";

std::string IdsRead(const std::string& device) {
  return "property 1 of " + device + ", size 32768, required -\n";
}
std::string CompatibleIdsRead(const std::string& device) {
  return "property 2 of " + device + ", size 32768, required -\n";
}

const std::string kDevices = Opened(kStaged) + "first line of DeviceList, key -\n" +
                             TextRead(8192) + kNextLine + TextRead(8192) +
                             "update parent given, id " + kHardwareId + ", inf " + kStaged +
                             ", flags 0, reboot -\n"
                             "devices, class -, enumerator -, parent -, flags 4\n"
                             "device 0, record of 28\n" +
                             IdsRead("100") +
                             "status of 100, status given, problem given, flags 0\n"
                             "property 10 of 100, size 4, required -\n"
                             "set property 10 of 100 to 420, size 4\n" +
                             CompatibleIdsRead("100") + "device 1, record of 28\n" +
                             IdsRead("101") + CompatibleIdsRead("101") +
                             "status of 101, status given, problem given, flags 0\n"
                             "device 2, record of 28\n"
                             "devices done\n" +
                             kNextLine + TextRead(8192) + kNextLine + "close\n";

TEST_F(MadeMachine, IsAskedExactlyTheseQuestions) {
  WineWindow wizard(dir_ / "quirloduino.exe");
  GoToDriverPage(&wizard);
  EXPECT_TRUE(wizard.IsActive(kSkipDriver));
  EXPECT_EQ(Calls(), kStart + kSurvey);
  wizard.Click(kNext);
  wizard.WaitUntilActive(kHelp);
  EXPECT_EQ(Calls(), kCopy + kDevices);
  wizard.Click(kBack);
  wizard.WaitUntilActive(kUpdateDriver);
  EXPECT_EQ(Calls(), "") << "the survey's slow part runs once";
  wizard.ClickAndWait(kUpdateDriver);
  wizard.Keep("driver-updated-one");
  EXPECT_EQ(Calls(), kDevices);
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
}

TEST_F(MadeMachine, RefusedInstallIsToldAndTriedAgain) {
  WriteFile(drive_ + "refuse.txt", "");
  WineWindow wizard(dir_ / "quirloduino.exe");
  GoToDriverPage(&wizard);
  Calls();
  wizard.ClickAndWait(kNext);
  wizard.Keep("driver-refused");
  EXPECT_EQ(Calls(), kCopy);
  fs::remove(drive_ + "refuse.txt");
  wizard.Click(kNext);
  wizard.WaitUntilActive(kHelp);
  EXPECT_EQ(Calls(), kCopy + kDevices);
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
}

// The same on a screen of 192 dots per inch.
class DenseMadeMachine : public MadeMachine {
 protected:
  void SetUp() override {
    if (std::getenv("DISPLAY") == nullptr) GTEST_SKIP() << "no display to show the wizard on";
    SetScreenDpi(192);
    MadeMachine::SetUp();
  }
  void TearDown() override {
    MadeMachine::TearDown();
    if (!IsSkipped()) SetScreenDpi(96);
  }
};

TEST_F(DenseMadeMachine, DialogOfTheSystemStandsBeforeTheWizardAndHoldsIt) {
  WriteFile(drive_ + "ask.txt", "");
  WineWindow wizard(dir_ / "quirloduino.exe");
  GoToDriverPage(&wizard);
  wizard.Click(kNext);
  wizard.TurnTo("Windows Security");
  wizard.Keep("driver-dialog");
  EXPECT_TRUE(wizard.StandsBefore("Quirloduino .* Installer"));
  wizard.TurnTo("Quirloduino .* Installer");
  wizard.Keep("driver-behind-dialog");
  wizard.Click(kCancel);
  wizard.TurnTo("Windows Security");  // no click reaches the wizard meanwhile
  wizard.Press("Return");
  wizard.TurnBackTo("Quirloduino .* Installer", "Windows Security");
  wizard.WaitUntilActive(kHelp);
  wizard.Click(kCancel);
  EXPECT_EQ(wizard.End(), 0);
}

}  // namespace
