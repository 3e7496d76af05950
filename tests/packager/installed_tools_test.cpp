// The author's tools as cmake --install brings them into a prefix.
#include <filesystem>
#include <regex>
#include <set>

#include "tests/packager/payload_fixture.h"

namespace fs = std::filesystem;

namespace {

class InstalledTools : public testing::Test {
 protected:
  InstalledTools() {
    const ProgramResult result = RunProgram(
        CMAKE_PROGRAM, {"--install", BUILD_FOLDER, "--component", "tools", "--prefix", prefix()});
    EXPECT_EQ(result.status, 0) << result.error;
  }
  std::string prefix() const { return dir_ / "a prefix"; }

  // The words that the shell offers for `line`, whose last word is being typed.
  std::string Completions(const std::string& tool, const std::string& line) const {
    const ProgramResult result = RunProgram(
        "/bin/bash", {"-c",
                      "PATH=\"$1/bin:$PATH\"; . \"$1/share/bash-completion/completions/$2\"; "
                      "COMP_WORDS=($2 $3); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); "
                      "_${2//-/_} \"$2\"; echo \"${COMPREPLY[*]}\"",
                      "bash", prefix(), tool, line});
    EXPECT_EQ(result.error, "");
    return result.output;
  }

  TempDir dir_;
};

TEST_F(InstalledTools, ArePagesCompletionsAndProgramsAndNothingElse) {
  std::set<std::string> names;
  for (const auto& [name, content] : ReadTree(prefix())) {
    if (!name.ends_with("/")) names.insert(name);
  }
  EXPECT_EQ(names, (std::set<std::string>{"bin/quirloduino-criteria", "bin/quirloduino-pack",
                                          "share/bash-completion/completions/quirloduino-criteria",
                                          "share/bash-completion/completions/quirloduino-pack",
                                          "share/man/man1/quirloduino-criteria.1",
                                          "share/man/man1/quirloduino-pack.1"}));
  EXPECT_EQ(RunProgram(prefix() + "/bin/quirloduino-pack", {"--version"}).status, 0);
  EXPECT_EQ(RunProgram(prefix() + "/bin/quirloduino-criteria", {"--help"}).status, 0);
}

TEST_F(InstalledTools, PagesTellOfEveryOption) {
  for (const std::string tool : {"quirloduino-pack", "quirloduino-criteria"}) {
    const std::string page = ReadFile(prefix() + "/share/man/man1/" + tool + ".1");
    const std::string all = tool == "quirloduino-pack" ? "--help-all" : "--help";
    const std::string help = RunProgram(prefix() + "/bin/" + tool, {all}).output;
    const std::regex option("--[a-z]+");
    std::size_t found = 0;
    for (std::sregex_iterator match(help.begin(), help.end(), option), end; match != end; ++match) {
      const std::string in_page = std::regex_replace(match->str(), std::regex("-"), "\\-");
      EXPECT_NE(page.find(in_page), std::string::npos) << tool << " " << match->str();
      ++found;
    }
    EXPECT_GT(found, 1U);
    EXPECT_EQ(page.find("@OPTIONS@"), std::string::npos);
  }
}

TEST_F(InstalledTools, ShellCompletesCommandsAndOptions) {
  EXPECT_EQ(Completions("quirloduino-pack", "ver"), "verify\n");
  EXPECT_EQ(Completions("quirloduino-pack", "pack --outp"), "--output\n");
  EXPECT_EQ(Completions("quirloduino-pack", "verify x --tr"), "--tree\n");
  EXPECT_EQ(Completions("quirloduino-criteria", "--fi"), "--file\n");
}

}  // namespace
