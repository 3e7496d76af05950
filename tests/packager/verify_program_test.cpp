// quirloduino-pack verify, on what pack made and on what somebody changed since.
#include <zstd.h>

#include <filesystem>

#include "packager/table_files.h"
#include "tests/packager/payload_fixture.h"

namespace fs = std::filesystem;

namespace {

class Verify : public PayloadTest {
 protected:
  Verify() { ExpectPacked(); }

  std::string Out(const std::string& name) const { return output() + "/" + name; }

  ProgramResult Run(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"verify", output()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunPack(arguments);
  }

  void ExpectFault(const std::string& line, const std::vector<std::string>& more = {}) const {
    const ProgramResult result = Run(more);
    EXPECT_EQ(result.error, "quirloduino-pack: " + line + "\n");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 2);
  }

  // Packs these entries as another packager might, without a rule.
  void PackForeign(const std::vector<std::pair<std::string, std::string>>& entries) const {
    PayloadTable table{};
    std::string content;
    for (const auto& [name, bytes] : entries) {
      table.entries.push_back({name, bytes.size()});
      content += bytes;
    }
    std::string frame(ZSTD_compressBound(content.size()), '\0');
    ZSTD_CCtx* context = ZSTD_createCCtx();
    ZSTD_CCtx_setParameter(context, ZSTD_c_checksumFlag, 1);
    frame.resize(
        ZSTD_compress2(context, frame.data(), frame.size(), content.data(), content.size()));
    ZSTD_freeCCtx(context);
    table.content_size = content.size();
    table.frame_length = frame.size();
    WriteFile(Out("payload.zst"), frame);
    WriteFile(Out("payload.tbl"), TableText(table));
    WriteFile(Out("payload_tables.cpp"), TableSource(table));
  }
};

const char kLongest[] =
    "longest path below the host folder: 36 bytes, of arm/bin/arm-none-eabi-c++.exe\n"
    "a host folder's path may have 222 bytes before names are cut\n";
const char kWeights[] =
    "       1 entry              4 bytes  root tools\n"
    "       2 entries            8 bytes  arm/\n"
    "       9 entries         1160 bytes  release WINDOWS/\n"
    "       2 entries           12 bytes  cores/\n"
    "       1 entry              5 bytes  libraries/\n"
    "       6 entries          100 bytes  release board files\n"
    "       1 entry             10 bytes  version marker\n";

TEST_F(Verify, SoundPayloadIsToldWithWhatItAsksOfItsUsers) {
  const std::uintmax_t packed = fs::file_size(Out("payload.zst"));
  const std::string line = "verified: 22 entries, 1299 bytes, packed into " +
                           std::to_string(packed) + "\n" + kLongest + "an installer takes " +
                           std::to_string(1299 + packed) + " bytes of memory: 1299 of content, " +
                           std::to_string(packed) + " packed\n" + kWeights;
  for (const ProgramResult& result : {Run(), Run({"--tree", tree()})}) {
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output, line);
    EXPECT_EQ(result.status, 0);
  }
}

TEST_F(Verify, MissingFilesAreNamed) {
  for (const std::string name : {"payload.zst", "payload.tbl", "payload_tables.cpp"}) {
    fs::rename(Out(name), Out("away"));
    ExpectFault(Out(name) + ": can't be opened (No such file or directory)");
    fs::rename(Out("away"), Out(name));
  }
}

TEST_F(Verify, SourceOfAnotherPackingIsFound) {
  const std::string source = ReadFile(Out("payload_tables.cpp"));
  WriteFile(Out("payload_tables.cpp"), source + "\n");
  ExpectFault(Out("payload_tables.cpp") + ": doesn't agree with " + Out("payload.tbl"));
}

TEST_F(Verify, FrameOfAnotherLengthIsFound) {
  const std::string frame = ReadFile(Out("payload.zst"));
  WriteFile(Out("payload.zst"), frame + "x");
  ExpectFault(Out("payload.zst") + ": has " + std::to_string(frame.size() + 1) +
              " bytes, but the table says " + std::to_string(frame.size()));
}

TEST_F(Verify, DamagedFrameIsFound) {
  std::string frame = ReadFile(Out("payload.zst"));
  frame.back() = static_cast<char>(frame.back() ^ 1);
  WriteFile(Out("payload.zst"), frame);
  ExpectFault(Out("payload.zst") + ": can't be expanded (Restored data doesn't match checksum)");
}

TEST_F(Verify, SizesThatDoNotSumAreFound) {
  std::string table = ReadFile(Out("payload.tbl"));
  table.replace(table.find("4\tquirlo.exe"), 1, "5");
  WriteFile(Out("payload.tbl"), table);
  ExpectFault(Out("payload.tbl") + ": the sizes sum to 1300, but the content has 1299 bytes");
}

TEST_F(Verify, ChangedTreeIsFound) {
  Write("libraries/Servo/Servo.h", "SERVO");
  ExpectFault("libraries/Servo/Servo.h: differs from the tree's file", {"--tree", tree()});
  Write("libraries/Servo/Servo.h", "longer");
  ExpectFault("libraries/Servo/Servo.h: has 5 bytes, but the tree's file has 6",
              {"--tree", tree()});
  Remove("libraries/Servo");
  ExpectFault("libraries/Servo/Servo.h: stands at index 14, where the tree has 1.8.13/boards.txt",
              {"--tree", tree()});
}

TEST_F(Verify, FileThatIsNewInTheTreeIsFound) {
  Write("libraries/ADC/ADC.h", "");
  ExpectFault("libraries/Servo/Servo.h: stands at index 14, where the tree has libraries/ADC/ADC.h",
              {"--tree", tree()});
}

TEST_F(Verify, ToolchainFileThatIsNoLongerADuplicateIsFound) {
  Write("arm/bin/arm-none-eabi-g++.exe", "other!!!");
  ExpectFault(
      "arm/bin/arm-none-eabi-g++.exe --> arm/bin/arm-none-eabi-c++.exe: stands at index 2, where "
      "the tree has arm/bin/arm-none-eabi-g++.exe",
      {"--tree", tree()});
}

TEST_F(Verify, ForeignPayloadsAreHeldToTheRules) {
  const std::pair<std::string, std::string> marker = {"quirloduino.txt", "1.60-beta5"};
  PackForeign({{"quirlo.exe", "x"}, marker});
  EXPECT_EQ(Run().status, 0) << Run().error;

  PackForeign({{"../quirlo.exe", "x"}, marker});
  ExpectFault("../quirlo.exe: \"..\" ends in a dot or blank, which Windows drops");
  PackForeign({{"/quirlo.exe", "x"}, marker});
  ExpectFault("/quirlo.exe: a name must not begin with \"/\"");
  PackForeign({{"a\tb", "x"}, marker});
  ExpectFault("a\\x09b: a name must be printable ASCII");
  PackForeign({{"arm/b --> arm/a", ""}, {"arm/a", "x"}, marker});
  ExpectFault("arm/b --> arm/a: an alias's target must be an earlier entry");
  PackForeign({marker, {"quirlo.exe", "x"}});
  ExpectFault("quirlo.exe: the last entry must be the version marker, quirloduino.txt");
  PackForeign({{"quirlo.exe", "x"}, {"quirlo.exe", "x"}, marker});
  ExpectFault("quirlo.exe: the name stands twice");
  PackForeign({{"quirlo.exe", "x"}, {"quirloduino.txt", "1.60-beta4"}});
  ExpectFault(
      "quirloduino.txt: the version marker must hold exactly 1.60-beta5, without a line end");
  PackForeign({{"1.8.5/WINDOWS/directory_criteria.txt", ""},
               {"1.8.5/WINDOWS/locations.txt", "TOOL_SUBDIR"},
               marker});
  ExpectFault("1.8.5/WINDOWS/locations.txt: TOOL_SUBDIR has no value in double quotes");
}

TEST_F(Verify, ForeignTableThatEndsInAnArchiveObjectIsFound) {
  PackForeign({{"1.8.5/WINDOWS/directory_criteria.txt", SoundCriteria()},
               {"1.8.5/WINDOWS/locations.txt", SoundLocations()},
               {"1.8.5/boards.txt", ""},
               {"1.8.5/platform.txt", ""},
               {"quirloduino.txt", "1.60-beta5"},
               {"1.8.5/WINDOWS/pde.jar/A.class", "x"}});
  ExpectFault("1.8.5/WINDOWS/pde.jar/A.class: the table must not end in an object of an archive");
}

}  // namespace
