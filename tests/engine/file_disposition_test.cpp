#include "engine/file_disposition.h"

#include <FL/Fl_Check_Browser.H>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "engine/install_error.h"
#include "engine/library_query.h"
#include "engine/writers.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"
#include "tests/engine/engine_test.h"
#include "tests/support/jars.h"

namespace {

namespace fs = std::filesystem;

using FileDisposition = EngineTest;
using Files = std::map<std::string, std::string>;

const Files kNothing;

// One entry of the payload of 1.8.19 and what becomes of it.
struct Case {
  const char* situation;
  const char* name;
  const char* place;  // below the host folder; empty when nothing is written
  bool hint = false;
};

void PrintTo(const Case& entry, std::ostream* out) {
  *out << entry.name;
}

std::string SituationOf(const testing::TestParamInfo<Case>& info) {
  return info.param.situation;
}

class Disposed : public EngineTest, public testing::WithParamInterface<Case> {};

TEST_P(Disposed, EndsAtItsPlaceAlone) {
  const Case& entry = GetParam();
  Load({{"arm/bin/arm-none-eabi-c++.exe", "content"},
        {entry.name, std::string(entry.name).find(" --> ") == std::string::npos ? "content" : ""}});
  const bool written = *entry.place != '\0';
  EXPECT_EQ(Dispose(entry.name), written ? 1 : 0);
  EXPECT_EQ(Files(), written ? ::Files({{entry.place, "content"}}) : kNothing);
  EXPECT_EQ(AntivirusHint, entry.hint);
  EXPECT_STREQ(InstallErrorText(), "");
  EXPECT_EQ(OpenArchive.handle, nullptr);
}

// The delivered locations, by example.
INSTANTIATE_TEST_SUITE_P(
    ResultingPlaces, Disposed,
    testing::Values(Case{"Tool", "quirlo_reboot.exe", "hardware/tools/quirlo_reboot.exe", true},
                    Case{"Plugin", "Q4Security.jar", "tools/Q4Security/tool/Q4Security.jar"},
                    Case{"Alias", "arm/bin/arm-none-eabi-g++.exe --> arm/bin/arm-none-eabi-c++.exe",
                         "hardware/tools/arm/bin/arm-none-eabi-g++.exe"},
                    Case{"Boards", "1.8.19/boards.txt", "hardware/quirlo/avr/boards.txt"},
                    Case{"CoresKeywords", "cores/keywords.txt", "hardware/quirlo/avr/keywords.txt"},
                    Case{"Core", "cores/quirlo3/serial4.c",
                         "hardware/quirlo/avr/cores/quirlo3/serial4.c"},
                    Case{"ReleaseLibrary", "1.8.19/libraries/Servo/Servo.h",
                         "hardware/quirlo/avr/libraries/Servo/Servo.h"},
                    Case{"Library", "libraries/AccelStepper/keywords.txt",
                         "hardware/quirlo/avr/libraries/AccelStepper/keywords.txt"},
                    Case{"ReleaseExample", "1.8.19/examples/readme.md", "examples/readme.md"},
                    Case{"MathLibrary", "armlib/libarm_cortexM4l_math.a",
                         "hardware/tools/arm/arm-none-eabi/lib/libarm_cortexM4l_math.a"},
                    Case{"VersionMarker", "quirloduino.txt", "lib/quirloduino.txt"}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(
    OtherReleases, Disposed,
    testing::Values(Case{"BoardsAreSkipped", "1.8.9/boards.txt", ""},
                    Case{"InfIsSkipped", "1.8.9/cdcacm.inf", ""},
                    Case{"ClassIsSkippedWithoutHint", "1.8.9/WINDOWS/pde.jar/Base.class", ""},
                    Case{"BundleFileIsSkippedWithoutHint", "1.8.9/WINDOWS/Info.plist", ""},
                    Case{"LibraryIsSkipped", "1.8.9/libraries/Servo/Servo.h", ""},
                    Case{"LeadingDigitWithoutAReleaseIsSkipped", "7zip.txt", ""},
                    Case{"ReleaseThatBeginsTheSelectedOneIsSkipped", "1.8.1/boards.txt", ""},
                    Case{"ReleaseThatTheSelectedOneBeginsIsSkipped", "1.8.190/boards.txt", ""}),
    SituationOf);

// Driver files, in every group.
INSTANTIATE_TEST_SUITE_P(
    Infs, Disposed,
    testing::Values(Case{"DriverIsSkipped", "cdcacm.inf", ""},
                    Case{"InTheReleaseIsSkipped", "1.8.19/boards.inf", ""},
                    Case{"AmongOtherToolsIsSkipped", "otherlibs/WINDOWS/a.inf", ""},
                    Case{"InTheToolchainIsSkipped", "arm/a.inf", ""},
                    Case{"InAJarTreeIsSkipped", "1.8.19/WINDOWS/pde.jar/a.inf", ""},
                    Case{"InACoreIsSkipped", "cores/quirlo3/a.inf", ""},
                    Case{"AmongExamplesIsSkipped", "examples/a.inf", ""},
                    Case{"InALibraryIsSkipped", "libraries/OneWire/a.inf", ""},
                    Case{"EndingInTheMiddleIsWritten", "arm/a.inf.txt",
                         "hardware/tools/arm/a.inf.txt"},
                    Case{"EndingInOtherCaseIsWritten", "arm/a.INF", "hardware/tools/arm/a.INF"}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(BoardFiles, Disposed,
                         testing::Values(Case{"BoardsGoToTheBoards", "1.8.19/boards.txt",
                                              "hardware/quirlo/avr/boards.txt"},
                                         Case{"PlatformGoesToTheBoards", "1.8.19/platform.txt",
                                              "hardware/quirlo/avr/platform.txt"},
                                         Case{"BoardsWithoutAReleaseAreSkipped", "boards.txt", ""},
                                         Case{"BoardsInAFolderAreSkipped", "1.8.19/more/boards.txt",
                                              ""}),
                         SituationOf);

INSTANTIATE_TEST_SUITE_P(
    Tools, Disposed,
    testing::Values(
        Case{"Reboot", "quirlo_reboot.exe", "hardware/tools/quirlo_reboot.exe", true},
        Case{"Size", "quirlo_size.exe", "hardware/tools/quirlo_size.exe", true},
        Case{"Restart", "quirlo_restart.exe", "hardware/tools/quirlo_restart.exe", true},
        Case{"PostCompile", "quirlo_post_compile.exe", "hardware/tools/quirlo_post_compile.exe",
             true},
        Case{"Cleanup", "quirlo_cleanup.exe", "hardware/tools/quirlo_cleanup.exe", true},
        Case{"Gateway", "quirlo_gateway.exe", "hardware/tools/quirlo_gateway.exe", true},
        Case{"Ports", "quirlo_ports.exe", "hardware/tools/quirlo_ports.exe", true},
        Case{"Serialmon", "quirlo_serialmon.exe", "hardware/tools/quirlo_serialmon.exe", true},
        Case{"Secure", "quirlo_secure.exe", "hardware/tools/quirlo_secure.exe", true},
        Case{"Mktinyfat", "mktinyfat.exe", "hardware/tools/mktinyfat.exe", true},
        Case{"StdoutRedirect", "stdout_redirect.exe", "hardware/tools/stdout_redirect.exe", true},
        Case{"PrecompileHelper", "precompile_helper.exe", "hardware/tools/precompile_helper.exe",
             true},
        Case{"PreUninstall", "pre_uninstall.bat", "hardware/tools/pre_uninstall.bat", true},
        Case{"Quirlo", "quirlo.exe", "hardware/tools/quirlo.exe", true},
        Case{"VscodePluginsAreOnNoList", "vscode_plugins.exe", ""},
        Case{"PostInstallIsOnNoList", "post_install.bat", ""},
        Case{"LongerNameIsOnNoList", "quirlo.exe.bak", ""},
        Case{"OtherCaseIsOnNoList", "Quirlo.exe", ""},
        Case{"InAFolderIsOnNoList", "tools/quirlo.exe", ""},
        Case{"OfTheReleaseIsOnNoList", "1.8.19/quirlo.exe", ""}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(
    SingleFiles, Disposed,
    testing::Values(
        Case{"PluginGoesToItsFolder", "Q4Security.jar", "tools/Q4Security/tool/Q4Security.jar"},
        Case{"MarkerGoesToTheVersion", "quirloduino.txt", "lib/quirloduino.txt"},
        Case{"MarkerOfTheReleaseIsSkipped", "1.8.19/quirloduino.txt", ""},
        Case{"KeywordsOfTheReleaseGoToTheirKey", "1.8.19/keywords.txt", "lib/keywords.txt"},
        Case{"OwnKeywordsGoToTheirKey", "1.8.19/keywords_quirlo.txt", "lib/keywords_quirlo.txt"},
        Case{"ThemeGoesBelowTheVersion", "1.8.19/theme.txt", "lib/theme/theme.txt"},
        Case{"KeywordsWithoutAReleaseAreSkipped", "keywords.txt", ""},
        Case{"CatalogIsSkipped", "cdcacm.cat", ""}, Case{"ImageIsSkipped", "quirlo_icon.png", ""},
        Case{"UnknownGroupIsSkipped", "drivers/a.txt", ""},
        Case{"UnknownPartOfTheReleaseIsSkipped", "1.8.19/other/a.txt", ""}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(
    OtherTools, Disposed,
    testing::Values(Case{"LoseTheirPrefix", "otherlibs/WINDOWS/a/b.dll", "hardware/tools/a/b.dll"},
                    Case{"OfOtherSystemsAreSkipped", "otherlibs/LINUX/b.so", ""}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(
    Toolchain, Disposed,
    testing::Values(
        Case{"ArmKeepsItsWholeName", "arm/bin/arm-none-eabi-as.exe",
             "hardware/tools/arm/bin/arm-none-eabi-as.exe"},
        Case{"ArmNoneEabiKeepsItsWholeName", "arm-none-eabi/lib/a.a",
             "hardware/tools/arm-none-eabi/lib/a.a"},
        Case{"AvrquirloKeepsItsWholeName", "avrquirlo/bin/b.exe",
             "hardware/tools/avrquirlo/bin/b.exe"},
        Case{"ToolNameInsideSetsNoHint", "arm/quirlo.exe", "hardware/tools/arm/quirlo.exe"},
        Case{"JavaFileStaysInside", "arm/a.java", "hardware/tools/arm/a.java"},
        Case{"AliasUnderArmNoneEabi", "arm-none-eabi/g++ --> arm/bin/arm-none-eabi-c++.exe",
             "hardware/tools/arm-none-eabi/g++"},
        Case{"AliasUnderAvrquirlo", "avrquirlo/g++ --> arm/bin/arm-none-eabi-c++.exe",
             "hardware/tools/avrquirlo/g++"},
        Case{"PrefixWithoutItsSlashIsSkipped", "armory/a.txt", ""}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(
    Java, Disposed,
    testing::Values(Case{"GoesToTheFixedFolder", "1.8.19/processing/app/Base.java",
                         "src/processing/app/Base.java"},
                    Case{"InAJarTreeGoesToTheFixedFolder", "1.8.19/WINDOWS/pde.jar/Base.java",
                         "src/WINDOWS/pde.jar/Base.java"},
                    Case{"InAReleaseLibraryGoesToTheFixedFolder", "1.8.19/libraries/A/a.java",
                         "src/libraries/A/a.java"},
                    Case{"OutsideTheReleaseIsNoSource", "examples/a.java", "examples/a.java"},
                    Case{"OtherEndingGoesOn", "1.8.19/libraries/A/a.java.txt",
                         "hardware/quirlo/avr/libraries/A/a.java.txt"}),
    SituationOf);

// What is no class of the two known archives.
INSTANTIATE_TEST_SUITE_P(
    JarTrees, Disposed,
    testing::Values(
        Case{"ClassOfAnUnknownJarIsSkipped", "1.8.19/WINDOWS/other.jar/A.class", ""},
        Case{"ClassInNoJarIsSkipped", "1.8.19/WINDOWS/A.class", ""},
        Case{"InfoPlistIsSkippedWithHint", "1.8.19/WINDOWS/a.app/Info.plist", "", true},
        Case{"InfoPlistAtTheTopIsSkippedWithHint", "1.8.19/WINDOWS/Info.plist", "", true},
        Case{"ApplicationStubIsSkippedWithHint", "1.8.19/WINDOWS/a/JavaApplicationStub", "", true},
        Case{"CodeResourcesAreSkippedWithHint", "1.8.19/WINDOWS/a/CodeResources", "", true},
        Case{"LongerBundleNameSetsNoHint", "1.8.19/WINDOWS/a/MyInfo.plist", ""},
        Case{"CriteriaAreSkipped", "1.8.19/WINDOWS/directory_criteria.txt", ""},
        Case{"LocationsAreSkipped", "1.8.19/WINDOWS/locations.txt", ""},
        Case{"WholeCoreJarIsSkipped", "1.8.19/WINDOWS/arduino-core.jar-1.53", ""},
        Case{"WholeIdeJarIsSkipped", "1.8.19/WINDOWS/pde.jar-1.54b9", ""},
        Case{"OtherFileInAJarTreeIsSkipped", "1.8.19/WINDOWS/pde.jar/a.properties", ""},
        Case{"LibraryBelowIsSkipped", "1.8.19/WINDOWS/libraries/A/a.h", ""}),
    SituationOf);

INSTANTIATE_TEST_SUITE_P(Cores, Disposed,
                         testing::Values(Case{"SplitAtTheLastSlash", "cores/a/b/c.h",
                                              "hardware/quirlo/avr/cores/a/b/c.h"},
                                         Case{"KeywordsInACoreStayThere", "cores/a/keywords.txt",
                                              "hardware/quirlo/avr/cores/a/keywords.txt"},
                                         Case{"HeaderOfTheOldReleasesIsWritten",
                                              "cores/quirlo/Udp.h",
                                              "hardware/quirlo/avr/cores/quirlo/Udp.h"}),
                         SituationOf);

INSTANTIATE_TEST_SUITE_P(
    ExamplesAndLibraries, Disposed,
    testing::Values(
        Case{"ReleaseLibrary", "1.8.19/libraries/A/a.h", "hardware/quirlo/avr/libraries/A/a.h"},
        Case{"ReleaseFileBesideTheLibraries", "1.8.19/libraries/a.txt",
             "hardware/quirlo/avr/libraries/a.txt"},
        Case{"CommonExample", "examples/Quirlo/a.ino", "examples/Quirlo/a.ino"},
        Case{"ReleaseExample", "1.8.19/examples/a/b.ino", "examples/a/b.ino"},
        Case{"MathLibrary", "armlib/a.a", "hardware/tools/arm/arm-none-eabi/lib/a.a"},
        Case{"LibraryDescriptionIsSkipped", "libraries/XPT2046_Touchscreen.txt", ""},
        Case{"LibraryPictureIsSkipped", "libraries/DogLcd.png", ""},
        Case{"LibraryFile", "libraries/A/b/c.h", "hardware/quirlo/avr/libraries/A/b/c.h"}),
    SituationOf);

TEST_F(FileDisposition, IndexAboveTheLastFailsInSilence) {
  Load({});
  AntivirusHint = true;
  EXPECT_EQ(DisposeEntry(host(), Store.entry_count), -1);
  EXPECT_FALSE(AntivirusHint);
  EXPECT_EQ(DisposeEntry(host(), 0xFFFFFFFF), -1);
  EXPECT_STREQ(InstallErrorText(), "");
}

TEST_F(FileDisposition, SilentFailureLeavesTheErrorTextAsItWas) {
  Load({});
  SetInstallError("earlier words");
  EXPECT_EQ(DisposeEntry(host(), Store.entry_count), -1);
  EXPECT_STREQ(InstallErrorText(), "earlier words");
}

TEST_F(FileDisposition, DriverFilesStayInTheStore) {
  Load({{"cdcacm.cat", "catalog"}, {"cdcacm.inf", "driver"}});
  EXPECT_EQ(Dispose("cdcacm.cat"), 0);
  EXPECT_EQ(Dispose("cdcacm.inf"), 0);
  EXPECT_EQ(EntryAt(0).size, 7U);
  EXPECT_EQ(EntryAt(1).size, 6U);
}

TEST_F(FileDisposition, HintIsClearedByTheNextEntry) {
  Load({{"quirlo.exe", ""}, {"1.8.19/WINDOWS/a/Info.plist", ""}, {"cdcacm.cat", ""}});
  for (const char* name : {"quirlo.exe", "1.8.19/WINDOWS/a/Info.plist"}) {
    Dispose(name);
    EXPECT_TRUE(AntivirusHint);
    Dispose("cdcacm.cat");
    EXPECT_FALSE(AntivirusHint);
  }
}

TEST_F(FileDisposition, HintStandsWhenTheToolCannotBeWritten) {
  Load({{"quirlo.exe", ""}});
  fs::create_directories(*this / "hardware/tools/quirlo.exe");
  EXPECT_EQ(Dispose("quirlo.exe"), -1);
  EXPECT_TRUE(AntivirusHint);
  EXPECT_STREQ(InstallErrorText(), "Unable to write file \"hardware/tools/quirlo.exe\".");
}

TEST_F(FileDisposition, ClassesGoToTheirArchivesWithHint) {
  const struct {
    const char* jar;
    const char* object;
  } archives[] = {{"pde.jar", "processing/app/Base$18.class"},
                  {"arduino-core.jar", "cc/arduino/Compiler.class"}};
  for (const auto& [jar, object] : archives) {
    const std::string path = *this / ("lib/" + std::string(jar));
    WriteJar(path, {{"kept", "kept"}});
    const std::string name = "1.8.19/WINDOWS/" + std::string(jar) + "/" + object;
    Load({{name, "ours"}});
    EXPECT_EQ(Dispose(name), 1);
    EXPECT_TRUE(AntivirusHint);
    EXPECT_EQ(OpenArchive.path, path);
    EXPECT_TRUE(CloseOpenArchive());
    EXPECT_EQ(ReadJar(path), (JarMembers{{"kept", "kept"}, {object, "ours"}}));
  }
}

TEST_F(FileDisposition, MissingArchiveFailsWithHint) {
  Load({{"1.8.19/WINDOWS/pde.jar/A.class", "ours"}});
  EXPECT_EQ(Dispose("1.8.19/WINDOWS/pde.jar/A.class"), -1);
  EXPECT_TRUE(AntivirusHint);
  EXPECT_EQ(InstallErrorText(), "Unable to open file \"" + (*this / "lib/pde.jar") + "\".");
}

TEST_F(FileDisposition, SkippedEntryLeavesTheArchiveOpen) {
  WriteJar(*this / "lib/pde.jar", {{"kept", "kept"}});
  Load({{"1.8.19/WINDOWS/pde.jar/A.class", "ours"},
        {"1.8.9/boards.txt", ""},
        {"cdcacm.inf", ""},
        {"1.8.19/WINDOWS/directory_criteria.txt", ""},
        {"quirlo_icon.png", ""}});
  EXPECT_EQ(DisposeEntry(host(), 0), 1);
  const auto* const handle = OpenArchive.handle;
  ASSERT_NE(handle, nullptr);
  for (std::uint32_t i = 1; i < 5; ++i) EXPECT_EQ(DisposeEntry(host(), i), 0);
  EXPECT_EQ(OpenArchive.handle, handle);
}

TEST_F(FileDisposition, AliasIsAFullIndependentCopy) {
  Load({{"arm/a", "content"}, {"arm/b --> arm/a", ""}});
  EXPECT_EQ(Dispose("arm/a"), 1);
  EXPECT_EQ(Dispose("arm/b --> arm/a"), 1);
  EXPECT_EQ(fs::hard_link_count(*this / "hardware/tools/arm/b"), 1U);
  WriteFile(*this / "hardware/tools/arm/a", "changed");
  EXPECT_EQ(ReadFile(*this / "hardware/tools/arm/b"), "content");
}

TEST_F(FileDisposition, AliasOfAnEmptyFileIsAnEmptyFile) {
  Load({{"arm/a", ""}, {"arm/b --> arm/a", ""}, {"arm/c", "more"}});
  EXPECT_EQ(Dispose("arm/b --> arm/a"), 1);
  EXPECT_EQ(Files(), (::Files{{"hardware/tools/arm/b", ""}}));
}

TEST_F(FileDisposition, AliasTakesTheFirstOfSeveralTargets) {
  Load({{"arm/a", "first"}, {"arm/a", "second"}, {"arm/b --> arm/a", ""}});
  EXPECT_EQ(Dispose("arm/b --> arm/a"), 1);
  EXPECT_EQ(Files(), (::Files{{"hardware/tools/arm/b", "first"}}));
}

TEST_F(FileDisposition, AliasTargetMayLieOutsideTheToolchain) {
  Load({{"cdcacm.cat", "catalog"}, {"arm/b --> cdcacm.cat", ""}});
  EXPECT_EQ(Dispose("arm/b --> cdcacm.cat"), 1);
  EXPECT_EQ(Files(), (::Files{{"hardware/tools/arm/b", "catalog"}}));
}

TEST_F(FileDisposition, AliasSplitsAtItsFirstSeparator) {
  Load({{"b --> c", "content"}, {"arm/a --> b --> c", ""}});
  EXPECT_EQ(Dispose("arm/a --> b --> c"), 1);
  EXPECT_EQ(Files(), (::Files{{"hardware/tools/arm/a", "content"}}));
}

class BadAlias : public EngineTest, public testing::WithParamInterface<const char*> {};

TEST_P(BadAlias, FailsWithWordsAndWritesNothing) {
  Load({{"arm/before", "content"}, {GetParam(), ""}, {"arm/after", "content"}});
  EXPECT_EQ(Dispose(GetParam()), -1);
  EXPECT_STREQ(InstallErrorText(), "internal file reference error!!");
  EXPECT_EQ(Files(), kNothing);
}

INSTANTIATE_TEST_SUITE_P(TargetNowhere, BadAlias, testing::Values("arm/x --> arm/missing"));
INSTANTIATE_TEST_SUITE_P(TargetAtAHigherIndex, BadAlias, testing::Values("arm/x --> arm/after"));
INSTANTIATE_TEST_SUITE_P(TargetIsItself, BadAlias, testing::Values("arm/x --> arm/x"));
INSTANTIATE_TEST_SUITE_P(TargetInOtherCase, BadAlias, testing::Values("arm/x --> arm/Before"));
INSTANTIATE_TEST_SUITE_P(TargetEmpty, BadAlias, testing::Values("arm/x --> "));

TEST_F(FileDisposition, AliasLeftSideOf511CharactersIsTaken) {
  const std::string left = "arm/" + std::string(507, 'x');
  Load({{"arm/a", "content"}, {left + " --> arm/missing", ""}});
  EXPECT_EQ(DisposeEntry(host(), 1), -1);
  EXPECT_STREQ(InstallErrorText(), "internal file reference error!!");
}

TEST_F(FileDisposition, AliasLeftSideOf512CharactersFailsInSilence) {
  const std::string left = "arm/" + std::string(508, 'x');
  Load({{"arm/a", "content"}, {left + " --> arm/a", ""}});
  EXPECT_EQ(DisposeEntry(host(), 1), -1);
  EXPECT_STREQ(InstallErrorText(), "");
  EXPECT_EQ(Files(), kNothing);
}

TEST_F(FileDisposition, AliasWithoutTheBlanksIsAPlainFile) {
  Load({{"arm/a-->b", "content"}});
  EXPECT_EQ(Dispose("arm/a-->b"), 1);
  EXPECT_EQ(Files(), (::Files{{"hardware/tools/arm/a-->b", "content"}}));
}

TEST_F(FileDisposition, FileDirectlyUnderCoresFailsInSilence) {
  Load({{"cores/readme.txt", "content"}});
  EXPECT_EQ(Dispose("cores/readme.txt"), -1);
  EXPECT_STREQ(InstallErrorText(), "");
  EXPECT_EQ(Files(), kNothing);
}

TEST_F(FileDisposition, LibraryNameOf255CharactersIsTriedAnd256AreSkipped) {
  // The longer path of 255 is cut at its own limit, and refused there: that shows it was tried.
  Load({{"libraries/" + std::string(255, 'x') + "/a.h", ""},
        {"libraries/" + std::string(256, 'x') + "/a.h", ""}});
  EXPECT_EQ(DisposeEntry(host(), 1), 0);
  EXPECT_STREQ(InstallErrorText(), "");
  EXPECT_EQ(DisposeEntry(host(), 0), -1);
  EXPECT_EQ(std::string(InstallErrorText()).rfind("Could not create directory \"", 0), 0U);
}

TEST_F(FileDisposition, UntickedLibraryIsSkippedAndTheReleasesOwnIsWritten) {
  Load({{"libraries/Servo/Servo.h", "common"},
        {"libraries/Ticked/a.h", "ticked"},
        {"libraries/NoRow/a.h", "no row"},
        {"1.8.19/libraries/Servo/Servo.h", "the release's"}});
  Fl_Check_Browser list(0, 0, 100, 100);
  list.add("Servo", 0);
  list.add("Ticked", 1);
  LibraryList = &list;
  EXPECT_EQ(Dispose("libraries/Servo/Servo.h"), 0);
  EXPECT_EQ(Dispose("libraries/Ticked/a.h"), 1);
  EXPECT_EQ(Dispose("libraries/NoRow/a.h"), 0);
  EXPECT_EQ(Dispose("1.8.19/libraries/Servo/Servo.h"), 1);
  LibraryList = nullptr;
  ResetLibraryQuery();
  EXPECT_EQ(Files(), (::Files{{std::string(kLibraries) + "Ticked/a.h", "ticked"},
                              {std::string(kLibraries) + "Servo/Servo.h", "the release's"}}));
}

TEST_F(FileDisposition, SecondRunWritesOverTheFirst) {
  Load({{"examples/a.ino", "first, longer"}});
  EXPECT_EQ(Dispose("examples/a.ino"), 1);
  Load({{"examples/a.ino", "second"}});
  EXPECT_EQ(Dispose("examples/a.ino"), 1);
  EXPECT_EQ(Files(), (::Files{{"examples/a.ino", "second"}}));
}

TEST_F(FileDisposition, WritersFailurePassesThrough) {
  Load({{"examples/a.ino", "content"}});
  fs::remove(host());
  EXPECT_EQ(Dispose("examples/a.ino"), -1);
  EXPECT_EQ(InstallErrorText(), "Directory \"" + std::string(host()) + "\" does not exist!");
}

TEST_F(FileDisposition, HostFolderMayEndInABackslash) {
  Load({{"cores/quirlo3/a.c", "content"}});
  std::string folder = host();
  folder.back() = '\\';
  EXPECT_EQ(DisposeEntry(folder.c_str(), 0), 1);
  EXPECT_EQ(Files(), (::Files{{std::string(kCores) + "quirlo3/a.c", "content"}}));
}

TEST_F(FileDisposition, NameWithTheSeparatorOutsideTheToolchainIsNoAlias) {
  Load({{"examples/a", "first"},
        {"examples/b --> examples/a", "second"},
        {"cores/q/b --> examples/a", "third"}});
  EXPECT_EQ(Dispose("examples/b --> examples/a"), 1);
  EXPECT_EQ(Dispose("cores/q/b --> examples/a"), 1);
  EXPECT_EQ(Files(), (::Files{{"examples/b --> examples/a", "second"},
                              {std::string(kCores) + "q/b --> examples/a", "third"}}));
}

// A release that the packager would refuse. Nothing may spill into the host's own root.
class ReleaseWithoutLocations : public EngineTest,
                                public testing::WithParamInterface<const char*> {};

TEST_P(ReleaseWithoutLocations, FailsAndWritesNothing) {
  Load({{"arm/a", ""}, {GetParam(), ""}});
  SelectRelease("1.8.9");
  EXPECT_EQ(Dispose(GetParam()), -1);
  EXPECT_EQ(Files(), kNothing);
}

INSTANTIATE_TEST_SUITE_P(Keys, ReleaseWithoutLocations,
                         testing::Values("1.8.9/boards.txt", "quirlo.exe", "Q4Security.jar",
                                         "otherlibs/WINDOWS/a", "quirloduino.txt", "arm/b",
                                         "arm/b --> arm/a", "1.8.9/keywords.txt", "1.8.9/theme.txt",
                                         "1.8.9/WINDOWS/pde.jar/A.class", "cores/keywords.txt",
                                         "cores/a/b.c", "1.8.9/libraries/A/a.h", "examples/a",
                                         "armlib/a", "1.8.9/examples/a", "libraries/A/a.h"));

}  // namespace
