#include "platform/special_folders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "tests/support/special_file.h"
#include "tests/support/temp_dir.h"

namespace {

// A home folder of its own, and none of the variables that lead elsewhere.
class SpecialFolders : public testing::Test {
 protected:
  void SetUserDirs(const std::string& text) { WriteFile(home_ / ".config/user-dirs.dirs", text); }

  // The folder, or nothing when there is none.
  static std::optional<std::string> Find(SpecialFolder folder) {
    char path[kSpecialFolderSize] = "left over";
    if (SpecialFolderPath(folder, path)) return path;
    EXPECT_STREQ(path, "") << "a refused look-up must leave the text empty";
    return std::nullopt;
  }

  static std::optional<std::string> Documents() { return Find(SpecialFolder::kPersonal); }

  TempDir home_;
  ScopedEnvironment home_variable_{"HOME", home_.path()};
  ScopedEnvironment config_variable_{"XDG_CONFIG_HOME", ""};
  ScopedEnvironment data_variable_{"XDG_DATA_HOME", ""};
};

TEST_F(SpecialFolders, WithoutUserDirsDocumentsIsTheHomeFolder) {
  EXPECT_EQ(Documents(), home_.path());
}

TEST_F(SpecialFolders, WithoutUserDirsDesktopLiesBelowTheHomeFolder) {
  EXPECT_EQ(Find(SpecialFolder::kDesktopDirectory), home_ / "Desktop");
}

TEST_F(SpecialFolders, WithoutDataVariableLocalDataLiesBelowTheHomeFolder) {
  EXPECT_EQ(Find(SpecialFolder::kLocalAppData), home_ / ".local/share");
}

TEST_F(SpecialFolders, ThereAreNoProgramFilesFolders) {
  EXPECT_EQ(Find(SpecialFolder::kProgramFiles), std::nullopt);
  EXPECT_EQ(Find(SpecialFolder::kProgramFilesX86), std::nullopt);
}

TEST_F(SpecialFolders, TrailingSeparatorOfTheHomeFolderIsLeftOff) {
  const ScopedEnvironment home("HOME", home_.path() + "//");
  EXPECT_EQ(Documents(), home_.path());
}

TEST_F(SpecialFolders, MissingHomeGivesNoFolder) {
  SetUserDirs("XDG_DOCUMENTS_DIR=\"/somewhere\"\n");
  const ScopedEnvironment home("HOME", "");
  for (const bool set : {true, false}) {
    if (!set) unsetenv("HOME");
    EXPECT_EQ(Documents(), std::nullopt);
    EXPECT_EQ(Find(SpecialFolder::kDesktopDirectory), std::nullopt);
    EXPECT_EQ(Find(SpecialFolder::kLocalAppData), std::nullopt);
  }
}

TEST_F(SpecialFolders, OverlongHomeGivesNoFolder) {
  const std::string longest = "/" + std::string(kSpecialFolderSize - 2, 'h');
  const ScopedEnvironment home("HOME", longest);
  EXPECT_EQ(Documents(), longest);
  EXPECT_EQ(Find(SpecialFolder::kDesktopDirectory), std::nullopt);
  EXPECT_EQ(Find(SpecialFolder::kLocalAppData), std::nullopt);
  const ScopedEnvironment longer("HOME", longest + "h");
  EXPECT_EQ(Documents(), std::nullopt);
}

TEST_F(SpecialFolders, ConfigVariableMovesUserDirs) {
  const TempDir config;
  const ScopedEnvironment variable("XDG_CONFIG_HOME", config.path());
  SetUserDirs("XDG_DOCUMENTS_DIR=\"$HOME/Wrong\"\n");
  WriteFile(config / "user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Right\"\n");
  EXPECT_EQ(Documents(), home_ / "Right");
}

TEST_F(SpecialFolders, RelativeConfigVariableIsIgnored) {
  const ScopedEnvironment variable("XDG_CONFIG_HOME", "config");
  SetUserDirs("XDG_DOCUMENTS_DIR=\"$HOME/Right\"\n");
  EXPECT_EQ(Documents(), home_ / "Right");
}

TEST_F(SpecialFolders, OverlongConfigVariableLeavesTheDefault) {
  const ScopedEnvironment variable("XDG_CONFIG_HOME", "/" + std::string(kSpecialFolderSize, 'c'));
  EXPECT_EQ(Documents(), home_.path());
}

TEST_F(SpecialFolders, DataVariableMovesLocalData) {
  const ScopedEnvironment variable("XDG_DATA_HOME", "/srv/data");
  EXPECT_EQ(Find(SpecialFolder::kLocalAppData), "/srv/data");
}

TEST_F(SpecialFolders, TrailingSeparatorOfTheDataVariableIsLeftOff) {
  const ScopedEnvironment variable("XDG_DATA_HOME", "/srv/data/");
  EXPECT_EQ(Find(SpecialFolder::kLocalAppData), "/srv/data");
}

TEST_F(SpecialFolders, RelativeDataVariableIsIgnored) {
  const ScopedEnvironment variable("XDG_DATA_HOME", "srv/data");
  EXPECT_EQ(Find(SpecialFolder::kLocalAppData), home_ / ".local/share");
}

TEST_F(SpecialFolders, OverlongDataVariableGivesNoFolder) {
  const ScopedEnvironment variable("XDG_DATA_HOME", "/" + std::string(kSpecialFolderSize - 1, 'd'));
  EXPECT_EQ(Find(SpecialFolder::kLocalAppData), std::nullopt);
}

TEST_F(SpecialFolders, DesktopIsReadFromItsOwnKey) {
  SetUserDirs("XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\nXDG_DESKTOP_DIR=\"$HOME/Table\"\n");
  EXPECT_EQ(Find(SpecialFolder::kDesktopDirectory), home_ / "Table");
  EXPECT_EQ(Documents(), home_ / "Papers");
}

struct UserDirsCase {
  const char* situation;
  const char* text;
  const char* documents;  // a leading "~" stands for the home folder
};
void PrintTo(const UserDirsCase& test, std::ostream* stream) {
  *stream << test.situation;
}

class UserDirs : public SpecialFolders, public testing::WithParamInterface<UserDirsCase> {};

TEST_P(UserDirs, GivesTheFolder) {
  SetUserDirs(GetParam().text);
  std::string expected = GetParam().documents;
  if (expected[0] == '~') expected = home_.path() + expected.substr(1);
  EXPECT_EQ(Documents(), expected);
}

const UserDirsCase kUserDirsCases[] = {
    {"BelowHome", "XDG_DOCUMENTS_DIR=\"$HOME/Documents\"\n", "~/Documents"},
    {"Absolute", "XDG_DOCUMENTS_DIR=\"/srv/papers\"\n", "/srv/papers"},
    {"HomeItself", "XDG_DOCUMENTS_DIR=\"$HOME\"\n", "~"},
    {"HomeWithSeparator", "XDG_DOCUMENTS_DIR=\"$HOME/\"\n", "~"},
    {"Root", "XDG_DOCUMENTS_DIR=\"/\"\n", "/"},
    {"TrailingSeparators", "XDG_DOCUMENTS_DIR=\"$HOME/Documents//\"\n", "~/Documents"},
    {"BlanksAroundTheParts", " \tXDG_DOCUMENTS_DIR \t= \t\"$HOME/Documents\"\n", "~/Documents"},
    {"BlankInThePath", "XDG_DOCUMENTS_DIR=\"$HOME/My Documents\"\n", "~/My Documents"},
    {"NoLineEnd", "XDG_DOCUMENTS_DIR=\"$HOME/Documents\"", "~/Documents"},
    {"CarriageReturn", "XDG_DOCUMENTS_DIR=\"$HOME/Documents\"\r\n", "~/Documents"},
    {"EscapedQuote", "XDG_DOCUMENTS_DIR=\"$HOME/a\\\"b\"\n", "~/a\"b"},
    {"EscapedDollar", "XDG_DOCUMENTS_DIR=\"$HOME/\\$HOME\"\n", "~/$HOME"},
    {"EscapedBackslash", "XDG_DOCUMENTS_DIR=\"$HOME/a\\\\b\"\n", "~/a\\b"},
    {"LastLineWins",
     "XDG_DOCUMENTS_DIR=\"$HOME/First\"\nXDG_MUSIC_DIR=\"$HOME/Music\"\n"
     "XDG_DOCUMENTS_DIR=\"$HOME/Last\"\n",
     "~/Last"},
    {"MalformedLineAfterAGoodOneChangesNothing",
     "XDG_DOCUMENTS_DIR=\"$HOME/Good\"\nXDG_DOCUMENTS_DIR=$HOME/Bad\n", "~/Good"},
    {"Comment", "# XDG_DOCUMENTS_DIR=\"$HOME/Documents\"\n", "~"},
    {"OtherKey", "XDG_MUSIC_DIR=\"$HOME/Music\"\n", "~"},
    {"LongerKey", "XDG_DOCUMENTS_DIRS=\"$HOME/Documents\"\n", "~"},
    {"NoEqualsSign", "XDG_DOCUMENTS_DIR \"$HOME/Documents\"\n", "~"},
    {"NoQuotes", "XDG_DOCUMENTS_DIR=$HOME/Documents\n", "~"},
    {"NoClosingQuote", "XDG_DOCUMENTS_DIR=\"$HOME/Documents\n", "~"},
    {"BackslashBeforeTheEnd", "XDG_DOCUMENTS_DIR=\"$HOME/Documents\\", "~"},
    {"RelativePath", "XDG_DOCUMENTS_DIR=\"Documents\"\n", "~"},
    {"OtherVariable", "XDG_DOCUMENTS_DIR=\"$HOMES/Documents\"\n", "~"},
    {"EmptyValue", "XDG_DOCUMENTS_DIR=\"\"\n", "~"},
    {"EmptyFile", "", "~"},
};

INSTANTIATE_TEST_SUITE_P(All, UserDirs, testing::ValuesIn(kUserDirsCases),
                         [](const auto& test) { return std::string(test.param.situation); });

TEST_F(SpecialFolders, LongestUserDirectoryIsKept) {
  const std::string longest = "/" + std::string(kSpecialFolderSize - 2, 'd');
  SetUserDirs("XDG_DOCUMENTS_DIR=\"" + longest + "\"\n");
  EXPECT_EQ(Documents(), longest);
}

TEST_F(SpecialFolders, OverlongUserDirectoryLeavesTheDefault) {
  const std::string overlong = "/" + std::string(kSpecialFolderSize - 1, 'd');
  SetUserDirs("XDG_DOCUMENTS_DIR=\"" + overlong + "\"\n");
  EXPECT_EQ(Documents(), home_.path());
}

TEST_F(SpecialFolders, UserDirectoryBelowAnOverlongHomeGivesNoFolder) {
  const TempDir config;
  WriteFile(config / "user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME\"\n");
  const ScopedEnvironment variable("XDG_CONFIG_HOME", config.path());
  const ScopedEnvironment home("HOME", "/" + std::string(kSpecialFolderSize, 'h'));
  EXPECT_EQ(Documents(), std::nullopt);
}

TEST_F(SpecialFolders, SettingsThatAreNoFileAreNone) {
  const TempDir config;
  const ScopedEnvironment variable("XDG_CONFIG_HOME", config.path());
  for (const SpecialFile& special : kSpecialFiles) {
    special.make(config / "user-dirs.dirs");
    EXPECT_EQ(Documents(), home_.path()) << special.kind;
    std::filesystem::remove(config / "user-dirs.dirs");
  }
}

TEST_F(SpecialFolders, RestOfAnOverlongLineIsNoLineOfItsOwn) {
  // The reader takes 1,023 characters at a time.
  SetUserDirs("#" + std::string(1022, '-') + "XDG_DOCUMENTS_DIR=\"$HOME/Wrong\"\n" +
              "XDG_DESKTOP_DIR=\"$HOME/Table\"\n");
  EXPECT_EQ(Documents(), home_.path());
  EXPECT_EQ(Find(SpecialFolder::kDesktopDirectory), home_ / "Table");
}

}  // namespace
