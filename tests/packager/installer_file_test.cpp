// The payload read back out of finished programs: of the one that the build linked around the tree
// beside this file, and of made ones for the forms that this machine's compiler doesn't make.
#include "packager/installer_file.h"

#include <elf.h>

#include <cstring>
#include <filesystem>
#include <utility>

#include "packager/refusal.h"
#include "tests/packager/made_image.h"
#include "tests/packager/payload_fixture.h"

namespace fs = std::filesystem;

namespace {

const char kTree[] = PROJECT_FOLDER "/tests/packager/payload";

class InstallerFile : public testing::Test {
 protected:
  std::string Put(const std::string& content) const {
    WriteFile(path(), content);
    return path();
  }
  std::string path() const { return dir_ / "an installer"; }

  // Expects the one line of a refusal from both readers, and from the program.
  void ExpectRefused(const std::string& content, const std::string& why) const {
    Put(content);
    for (const auto read : {+[](const std::string& file) { ReadInstaller(fs::path(file)); },
                            +[](const std::string& file) { ReadInstallerTable(file); }}) {
      try {
        read(path());
        FAIL() << "taken instead of: " << why;
      } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.what(), path() + ": " + why);
      }
    }
    for (const std::string command : {"list", "verify"}) {
      const ProgramResult result = RunPack({command, path()});
      EXPECT_EQ(result.error, "quirloduino-pack: " + path() + ": " + why + "\n");
      EXPECT_EQ(result.output, "");
      EXPECT_EQ(result.status, 2);
    }
  }

  TempDir dir_;
};

MadeImage Made(MadeImage::Form form = MadeImage::Form::kWindows) {
  MadeImage made;
  made.form = form;
  made.entries = {{"quirlo.exe", "a tool"}, {"empty.h", ""}, {"quirloduino.txt", "1.60-beta5"}};
  return made;
}

void ExpectMade(const std::string& path) {
  const PackedPayload packed = ReadInstaller(fs::path(path));
  EXPECT_EQ(packed.content, "a tool1.60-beta5");
  EXPECT_EQ(packed.position, (std::vector<std::uint64_t>{0, 6, 6}));
  const std::vector<PayloadFile> expected = {
      {"quirlo.exe", 6}, {"empty.h", 0}, {"quirloduino.txt", 10}};
  EXPECT_EQ(packed.table.entries, expected);
  EXPECT_EQ(ReadInstallerTable(path).entries, expected);
  EXPECT_EQ(packed.table.content_size, 16U);
}

// `program`, a 64-bit one, with zeros in the place of each pointer that a relocation fills, and how
// many these are.
std::pair<std::string, std::size_t> WithoutRelocatedValues(std::string program) {
  Elf64_Ehdr header;
  std::memcpy(&header, program.data(), sizeof header);
  std::vector<Elf64_Phdr> segments(header.e_phnum);
  std::memcpy(segments.data(), program.data() + header.e_phoff,
              sizeof(Elf64_Phdr) * header.e_phnum);
  const auto offset_of = [&segments](std::uint64_t address) -> std::size_t {
    for (const Elf64_Phdr& segment : segments) {
      if (segment.p_type == PT_LOAD && address - segment.p_vaddr < segment.p_filesz) {
        return address - segment.p_vaddr + segment.p_offset;
      }
    }
    return 0;
  };
  std::vector<Elf64_Shdr> sections(header.e_shnum);
  std::memcpy(sections.data(), program.data() + header.e_shoff,
              sizeof(Elf64_Shdr) * header.e_shnum);
  std::size_t emptied = 0;
  for (const Elf64_Shdr& section : sections) {
    if (section.sh_type != SHT_RELA) continue;
    for (std::size_t at = 0; at < section.sh_size; at += sizeof(Elf64_Rela)) {
      Elf64_Rela relocation;
      std::memcpy(&relocation, program.data() + section.sh_offset + at, sizeof relocation);
      if (ELF64_R_TYPE(relocation.r_info) != R_X86_64_RELATIVE) continue;
      program.replace(offset_of(relocation.r_offset), 8, 8, '\0');
      ++emptied;
    }
  }
  return {std::move(program), emptied};
}

struct LinkedProgram {
  const char* description;
  const char* file;
};

class LinkedInstaller : public testing::TestWithParam<LinkedProgram> {};

TEST_P(LinkedInstaller, HoldsTheTreeItWasMadeOf) {
  const ProgramResult verified = RunPack({"verify", GetParam().file, "--tree", kTree});
  EXPECT_EQ(verified.error, "");
  EXPECT_THAT(verified.output, testing::StartsWith("verified: 11 entries, "));
  EXPECT_EQ(verified.status, 0);
}

TEST_P(LinkedInstaller, IsListedLikeItsTree) {
  const ProgramResult listed = RunPack({"list", GetParam().file});
  EXPECT_EQ(listed.output, RunPack({"list", kTree}).output);
  EXPECT_EQ(listed.error, "");
  EXPECT_EQ(listed.status, 0);
}

TEST_P(LinkedInstaller, IsReadWhenNothingIsLeftToStrip) {
  const TempDir dir;
  const std::string stripped = dir / "stripped";
  ASSERT_EQ(RunProgram("/usr/bin/strip", {"--strip-all", "-o", stripped, GetParam().file}).status,
            0);
  EXPECT_EQ(RunPack({"verify", stripped, "--tree", kTree}).status, 0);
}

// Some linkers leave a pointer's value in its place beside the relocation, others don't.
TEST(InstallerAtAnyAddress, IsReadByItsRelocationsAlone) {
  const TempDir dir;
  const auto [program, emptied] = WithoutRelocatedValues(ReadFile(LINKED_INSTALLER));
  ASSERT_GT(emptied, 9U);
  WriteFile(dir / "installer", program);
  const ProgramResult result = RunPack({"verify", dir / "installer", "--tree", kTree});
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.status, 0);
}

TEST_P(LinkedInstaller, DiffersFromAnotherTree) {
  const TempDir dir;
  fs::copy(kTree, dir / "tree", fs::copy_options::recursive);
  WriteFile(dir / "tree/quirlo.exe", "TOOL\n");
  const ProgramResult result = RunPack({"verify", GetParam().file, "--tree", dir / "tree"});
  EXPECT_EQ(result.error, "quirloduino-pack: quirlo.exe: differs from the tree's file\n");
  EXPECT_EQ(result.status, 2);
}

INSTANTIATE_TEST_SUITE_P(Forms, LinkedInstaller,
                         testing::Values(LinkedProgram{"AnyAddress", LINKED_INSTALLER},
                                         LinkedProgram{"FixedAddress", FIXED_INSTALLER}),
                         [](const auto& instance) { return instance.param.description; });

TEST_F(InstallerFile, OfWindowsIsRead) {
  ExpectMade(Put(MakeImage(Made())));
}

TEST_F(InstallerFile, OfWindowsIsReadWithASignatureBehindIt) {
  ExpectMade(Put(MakeImage(Made()) + std::string(5000, '\x30')));
}

TEST_F(InstallerFile, Of32BitLinuxIsRead) {
  ExpectMade(Put(MakeImage(Made(MadeImage::Form::kElf32))));
}

TEST_F(InstallerFile, IsFoundBehindSomebodyElsesNote) {
  for (const auto form : {MadeImage::Form::kWindows, MadeImage::Form::kElf32}) {
    MadeImage made = Made(form);
    made.other_note_first = true;
    ExpectMade(Put(MakeImage(made)));
  }
}

TEST_F(InstallerFile, WithoutTheNoteIsNone) {
  const std::string why = "is no Quirloduino installer";
  MadeImage made = Made();
  made.note_name = std::string("Quirlodujno\0", 12);
  ExpectRefused(MakeImage(made), why);
  made = Made(MadeImage::Form::kElf32);
  made.note_type = 2;
  ExpectRefused(MakeImage(made), why);
  ExpectRefused(ReadFile(PACK_PROGRAM), why);
}

TEST_F(InstallerFile, ThatIsNoProgramIsTold) {
  ExpectRefused("", "is no program");
  ExpectRefused("a text", "is no program");
  ExpectRefused(
      "\x7F"
      "ELF",
      "is no program");
  ExpectRefused(std::string("\x7F"
                            "ELF\2\2",
                            6) +
                    std::string(90, '\0'),
                "is no program");
  ExpectRefused(std::string("\x7F"
                            "ELF\2\1",
                            6) +
                    std::string(90, '\0'),
                "is no program");
  ExpectRefused("MZ" + std::string(90, '\0'), "is no program for Windows");
  ExpectRefused("MZ" + std::string(9, '\0'), "is a program cut short");
  std::string image = MakeImage(Made());
  image[0x80 + 24] = 7;
  ExpectRefused(image, "is no program for Windows");
}

TEST_F(InstallerFile, MissingIsTold) {
  const ProgramResult result = RunPack({"list", path()});
  EXPECT_EQ(result.error, "quirloduino-pack: " + path() + ": no such folder\n");
  EXPECT_EQ(result.status, 2);
}

// Cut at each place, a program is refused and nothing else happens: no crash, no other error.
TEST_F(InstallerFile, CutAnywhereIsRefused) {
  for (const auto form : {MadeImage::Form::kWindows, MadeImage::Form::kElf32}) {
    const std::string image = MakeImage(Made(form));
    // What fills a Windows program's last section up isn't needed.
    const std::size_t needed =
        form == MadeImage::Form::kWindows ? image.size() - 0x200 + 0x1C : image.size();
    for (std::size_t size = 0; size < needed; ++size) {
      EXPECT_THROW(ReadInstaller("cut", image.substr(0, size)), Refusal) << size;
    }
    ExpectMade(Put(image.substr(0, needed)));
  }
}

// Whatever byte is damaged, the answer is a payload or a refusal.
TEST_F(InstallerFile, DamagedAnywhereIsRefusedOrRead) {
  for (const auto form : {MadeImage::Form::kWindows, MadeImage::Form::kElf32}) {
    const std::string image = MakeImage(Made(form));
    for (std::size_t at = 0; at < image.size(); ++at) {
      std::string damaged = image;
      damaged[at] = static_cast<char>(damaged[at] ^ 0xFF);
      try {
        ReadInstaller("damaged", damaged);
      } catch (const Refusal&) {
      }
    }
  }
}

TEST_F(InstallerFile, TablesThatLeadOutOfItAreRefused) {
  MadeImage made = Made();
  made.extra_entries = 0x3FFFFFFF;
  ExpectRefused(MakeImage(made), "points at bytes that it doesn't hold");
  made = Made();
  made.names_moved = 0x10000000;
  ExpectRefused(MakeImage(made), "points at bytes that it doesn't hold");
  made = Made();
  made.entries.clear();
  ExpectRefused(MakeImage(made), "carries no entry");
  made = Made();
  made.entries[0].first = std::string(4096, 'n');
  ExpectRefused(MakeImage(made), "holds a text without an end");
}

TEST_F(InstallerFile, FrameThatFailsIsRefusedByVerifyAlone) {
  MadeImage made = Made();
  made.extra_frame = 1;
  Put(MakeImage(made));
  EXPECT_THROW(ReadInstaller(fs::path(path())), Refusal);
  EXPECT_EQ(ReadInstallerTable(path()).entries.size(), 3U);
}

TEST_F(InstallerFile, IsHeldToTheRulesByVerify) {
  MadeImage made = Made();
  made.entries.back().second = "1.61";
  Put(MakeImage(made));
  const ProgramResult result = RunPack({"verify", path()});
  EXPECT_EQ(result.error,
            "quirloduino-pack: quirloduino.txt: the version marker must hold exactly 1.60-beta5, "
            "without a line end\n");
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.status, 2);
}

}  // namespace
