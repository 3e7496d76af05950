// The protections of what users and authors run, read from the finished files. A program that is
// built without any shows that each of them is seen to be missing.
#include <gtest/gtest.h>

#include <string>

#include "tests/binaries/elf_protections.h"

namespace {

struct Program {
  const char* name;
  const char* path;
};
void PrintTo(const Program& program, std::ostream* out) {
  *out << program.name;
}

class Protections : public testing::TestWithParam<Program> {
 protected:
  const ElfProtections found_ = ReadElfProtections(GetParam().path);
};

TEST_P(Protections, LiesAtAnAddressDrawnAtEachStart) {
  EXPECT_TRUE(found_.position_independent);
  EXPECT_FALSE(found_.text_relocations);
}

TEST_P(Protections, TablesOfAddressesAreReadOnlyFromTheStart) {
  EXPECT_TRUE(found_.relro);
  EXPECT_TRUE(found_.bind_now);
}

TEST_P(Protections, NoMemoryIsWritableAndExecutable) {
  EXPECT_TRUE(found_.stack_not_executable);
  EXPECT_FALSE(found_.writable_and_executable);
}

TEST_P(Protections, StacksAreGuarded) {
  EXPECT_TRUE(HasStackProtector(found_));
}

TEST_P(Protections, CallsOfTheCLibraryAreChecked) {
  EXPECT_TRUE(HasCheckedCalls(found_));
}

TEST_P(Protections, LibrariesComeFromTheSystemsFoldersAlone) {
  EXPECT_FALSE(found_.search_path);
}

INSTANTIATE_TEST_SUITE_P(Programs, Protections,
                         testing::Values(Program{"Installer", INSTALLER},
                                         Program{"Packager", PACKAGER},
                                         Program{"CriteriaTool", CRITERIA_TOOL}),
                         [](const auto& program) { return std::string(program.param.name); });

TEST(ProtectionsReader, SeesThatABareProgramHasNone) {
  const ElfProtections found = ReadElfProtections(BARE_PROGRAM);
  EXPECT_FALSE(found.position_independent);
  EXPECT_FALSE(found.relro);
  EXPECT_FALSE(found.bind_now);
  EXPECT_FALSE(found.stack_not_executable);
  EXPECT_TRUE(found.writable_and_executable);
  EXPECT_TRUE(found.search_path);
  EXPECT_FALSE(HasStackProtector(found));
  EXPECT_FALSE(HasCheckedCalls(found));
}

}  // namespace
