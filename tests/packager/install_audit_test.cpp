// An audit of made folders: each way in which one can differ from what an install leaves.
#include "packager/install_audit.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "packager/refusal.h"
#include "tests/packager/made_view.h"
#include "tests/support/arduino_host.h"
#include "tests/support/jars.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

const std::string kCores = "hardware/quirlo/avr/cores/";
const std::string kLibraries = "hardware/quirlo/avr/libraries/";

const std::vector<std::pair<std::string, std::string>> kEntries = {
    {"quirlo.exe", "tool"},
    {"arm/c++.exe", "compiler"},
    {"arm/g++.exe --> arm/c++.exe", ""},
    {"1.8.19/WINDOWS/directory_criteria.txt", kCriteria1819},
    {"1.8.19/WINDOWS/locations.txt", kLocations},
    {"1.8.19/WINDOWS/pde.jar/a/One.class", "class one"},
    {"1.8.19/WINDOWS/pde.jar/a/Two.class", "class two"},
    {"cores/quirlo4/libc.c", "// this file no longer used\n"},
    {"libraries/Ping/Ping.h", "ping"},
    {"libraries/Ping/empty.h", ""},
    {"libraries/Servo/Servo.h", "servo"},
    {"quirloduino.txt", "1.60-beta5"}};

class InstallAudit : public testing::Test {
 protected:
  // As an install leaves it.
  InstallAudit() {
    WriteFile(host_ / "hardware/tools/quirlo.exe", "tool");
    WriteFile(host_ / "hardware/tools/arm/c++.exe", "compiler");
    WriteFile(host_ / "hardware/tools/arm/g++.exe", "compiler");
    WriteJar(host_ / "lib/pde.jar",
             {{"a/One.class", "class one"}, {"a/Two.class", "class two"}, {"b/Other.class", "x"}});
    WriteFile(host_ / (kLibraries + "Ping/Ping.h"), "ping");
    WriteFile(host_ / (kLibraries + "Ping/empty.h"), "");
    WriteFile(host_ / (kLibraries + "Servo/Servo.h"), "servo");
    WriteFile(host_ / "lib/quirloduino.txt", "1.60-beta5");
  }

  HostAudit Audit(const std::vector<std::pair<std::string, std::string>>& entries = kEntries,
                  const std::set<std::string>& left_out = {}) const {
    const PayloadView payload = MadeView(entries);
    return AuditHost(payload, InstallForecast(payload, "1.8.19", left_out), host_.path());
  }

  // The only finding.
  Finding Found() const {
    const HostAudit audit = Audit();
    EXPECT_EQ(audit.findings.size(), 1U);
    return audit.findings.empty() ? Finding{} : audit.findings.front();
  }

  void ExpectFound(FindingKind kind, const std::string& path, const std::string& member,
                   const std::string& words) const {
    const Finding finding = Found();
    EXPECT_EQ(finding.kind, kind);
    EXPECT_EQ(finding.path, path);
    EXPECT_EQ(finding.member, member);
    EXPECT_EQ(finding.words, words);
  }

  TempDir host_;
};

TEST_F(InstallAudit, FindsNothingAfterAnInstall) {
  const HostAudit audit = Audit();
  EXPECT_TRUE(audit.findings.empty());
  EXPECT_EQ(audit.files, 7U);
  EXPECT_EQ(audit.members, 2U);
  EXPECT_EQ(audit.removals, 1U);
  EXPECT_EQ(audit.marker, "1.60-beta5");
  EXPECT_TRUE(audit.absent_libraries.empty());
  EXPECT_TRUE(audit.old_libraries.empty());
}

TEST_F(InstallAudit, ChangesNothing) {
  fs::remove(host_ / "hardware/tools/quirlo.exe");
  WriteFile(host_ / (kCores + "quirlo4/libc.c"), "old");
  const auto before = ReadTree(host_.path());
  Audit();
  EXPECT_EQ(ReadTree(host_.path()), before);
}

TEST_F(InstallAudit, TellsAMissingFileAndThatScannersTakeSuch) {
  fs::remove(host_ / "hardware/tools/quirlo.exe");
  ExpectFound(FindingKind::kMissing, "hardware/tools/quirlo.exe", "", "");
  EXPECT_TRUE(Found().antivirus_hint);
}

TEST_F(InstallAudit, TellsAMissingAlias) {
  fs::remove(host_ / "hardware/tools/arm/g++.exe");
  ExpectFound(FindingKind::kMissing, "hardware/tools/arm/g++.exe", "", "");
  EXPECT_FALSE(Found().antivirus_hint);
}

TEST_F(InstallAudit, ComparesAnAliasWithItsTarget) {
  WriteFile(host_ / "hardware/tools/arm/g++.exe", "compileR");
  ExpectFound(FindingKind::kDiffers, "hardware/tools/arm/g++.exe", "", "differs at byte 7");
}

TEST_F(InstallAudit, TellsOtherBytesAndOtherSizes) {
  WriteFile(host_ / (kLibraries + "Ping/Ping.h"), "pinG");
  ExpectFound(FindingKind::kDiffers, kLibraries + "Ping/Ping.h", "", "differs at byte 3");
  WriteFile(host_ / (kLibraries + "Ping/Ping.h"), "pin");
  ExpectFound(FindingKind::kDiffers, kLibraries + "Ping/Ping.h", "", "has 3 bytes, not 4");
  WriteFile(host_ / (kLibraries + "Ping/Ping.h"), "ping!");
  ExpectFound(FindingKind::kDiffers, kLibraries + "Ping/Ping.h", "", "has 5 bytes, not 4");
}

TEST_F(InstallAudit, AnEmptyFileMustBeEmpty) {
  WriteFile(host_ / (kLibraries + "Ping/empty.h"), "x");
  ExpectFound(FindingKind::kDiffers, kLibraries + "Ping/empty.h", "", "has 1 byte, not 0");
}

TEST_F(InstallAudit, TellsWhatIsNoPlainFile) {
  fs::remove(host_ / "hardware/tools/quirlo.exe");
  fs::create_directory(host_ / "hardware/tools/quirlo.exe");
  ExpectFound(FindingKind::kDiffers, "hardware/tools/quirlo.exe", "", "is no plain file");
}

TEST_F(InstallAudit, TellsMembersThatDiffer) {
  WriteJar(host_ / "lib/pde.jar", {{"a/One.class", "class 1"}, {"a/Two.class", "class two"}});
  ExpectFound(FindingKind::kDiffers, "lib/pde.jar", "a/One.class", "has 7 bytes, not 9");
  WriteJar(host_ / "lib/pde.jar", {{"a/One.class", "class one!"}, {"a/Two.class", "class two"}});
  ExpectFound(FindingKind::kDiffers, "lib/pde.jar", "a/One.class", "has 10 bytes, not 9");
  WriteJar(host_ / "lib/pde.jar", {{"a/One.class", "class one"}, {"a/Two.class", "class twO"}});
  ExpectFound(FindingKind::kDiffers, "lib/pde.jar", "a/Two.class", "differs at byte 8");
  EXPECT_TRUE(Found().antivirus_hint);
}

TEST_F(InstallAudit, FindsADifferenceBehindTheFirstPieceOfAMember) {
  std::string large;
  while (large.size() < 10000) large += std::to_string(large.size()) + " ";
  large.resize(10000);
  auto entries = kEntries;
  entries[5].second = large;
  large[9000] = 'x';
  WriteJar(host_ / "lib/pde.jar", {{"a/One.class", large}, {"a/Two.class", "class two"}});
  const HostAudit audit = Audit(entries);
  ASSERT_EQ(audit.findings.size(), 1U);
  EXPECT_EQ(audit.findings[0].words, "differs at byte 9000");
}

TEST_F(InstallAudit, TellsAMissingMemberByItsExactName) {
  WriteJar(host_ / "lib/pde.jar", {{"a/one.class", "class one"}, {"a/Two.class", "class two"}});
  ExpectFound(FindingKind::kMissing, "lib/pde.jar", "a/One.class", "");
}

TEST_F(InstallAudit, TellsAMissingArchiveOnce) {
  fs::remove(host_ / "lib/pde.jar");
  ExpectFound(FindingKind::kMissing, "lib/pde.jar", "", "");
}

TEST_F(InstallAudit, TellsAnArchiveThatIsNoneOnce) {
  WriteFile(host_ / "lib/pde.jar", "not an archive");
  ExpectFound(FindingKind::kUnreadable, "lib/pde.jar", "", "can't be opened (Not a zip archive)");
}

TEST_F(InstallAudit, TellsWhatItMayNotRead) {
  fs::permissions(host_ / "hardware/tools/quirlo.exe", fs::perms::none);
  fs::permissions(host_.path(), fs::perms::all);
  const ScopedOrdinaryUser ordinary;
  ExpectFound(FindingKind::kUnreadable, "hardware/tools/quirlo.exe", "",
              "can't be opened (Permission denied)");
}

TEST_F(InstallAudit, TellsARetiredFileThatIsStillThere) {
  WriteFile(host_ / (kCores + "quirlo4/libc.c"), "// this file no longer used\n");
  ExpectFound(FindingKind::kRetired, kCores + "quirlo4/libc.c", "", "");
}

TEST_F(InstallAudit, TellsWhatTheMarkerSays) {
  WriteFile(host_ / "lib/quirloduino.txt", "1.59");
  ExpectFound(FindingKind::kMarker, "lib/quirloduino.txt", "", "says 1.59, not 1.60-beta5");
  EXPECT_EQ(Audit().marker, "1.59");
  WriteFile(host_ / "lib/quirloduino.txt", "1.60-beta5" + std::string(100, 'x'));
  EXPECT_EQ(Audit().marker, "1.60-beta5" + std::string(70, 'x'));
  EXPECT_EQ(Found().kind, FindingKind::kMarker);
  fs::remove(host_ / "lib/quirloduino.txt");
  ExpectFound(FindingKind::kMarker, "lib/quirloduino.txt", "", "is missing");
  EXPECT_EQ(Audit().marker, std::nullopt);
}

TEST_F(InstallAudit, ALibraryLeftOutIsNotMissed) {
  fs::remove_all(host_ / (kLibraries + "Ping"));
  EXPECT_TRUE(Audit(kEntries, {"Ping"}).findings.empty());
  const HostAudit audit = Audit();
  EXPECT_EQ(audit.findings.size(), 2U);
  EXPECT_EQ(audit.absent_libraries, std::vector<std::string>{"Ping"});
}

TEST_F(InstallAudit, ALibraryOfWhichAFileIsThereIsNotAbsent) {
  fs::remove(host_ / (kLibraries + "Ping/Ping.h"));
  const HostAudit audit = Audit();
  EXPECT_EQ(audit.findings.size(), 1U);
  EXPECT_TRUE(audit.absent_libraries.empty());
}

TEST_F(InstallAudit, TheLaterOfTwoEntriesOfOnePlaceCounts) {
  auto entries = kEntries;
  entries.insert(entries.begin() + 5, {"1.8.19/libraries/ping/PING.h", "the release's"});
  EXPECT_TRUE(Audit(entries).findings.empty());
  EXPECT_EQ(Audit(entries).files, 7U);
  std::swap(entries[5], entries[9]);  // now the release's comes last
  ASSERT_EQ(entries[9].first, "1.8.19/libraries/ping/PING.h");
  WriteFile(host_ / (kLibraries + "ping/PING.h"), "the release's");
  EXPECT_TRUE(Audit(entries).findings.empty());
}

TEST_F(InstallAudit, NotesTheLibrariesThatOnlyTheWizardRemoves) {
  WriteFile(host_ / (kLibraries + "SD/utility/old.h"), "old");
  WriteFile(host_ / (kLibraries + "openGLCD"), "a file, which nothing removes");
  const HostAudit audit = Audit();
  EXPECT_TRUE(audit.findings.empty());
  EXPECT_EQ(audit.old_libraries, std::vector<std::string>{kLibraries + "SD/utility"});
}

TEST_F(InstallAudit, RefusesAPayloadThatFailsToInstall) {
  auto entries = kEntries;
  entries[2].first = "arm/g++.exe --> arm/nowhere.exe";
  try {
    Audit(entries);
    FAIL();
  } catch (const Refusal& refusal) {
    EXPECT_STREQ(
        refusal.what(),
        "arm/g++.exe --> arm/nowhere.exe: the install of this payload fails at this entry");
  }
}

}  // namespace
