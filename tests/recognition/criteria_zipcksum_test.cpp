// The line "zipcksum:" of a criteria file.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "recognition/cksum.h"
#include "tests/recognition/jar_damage.h"
#include "tests/recognition/recognition_test.h"
#include "tests/support/jars.h"

namespace fs = std::filesystem;

namespace {

// "<cksum> <size>" of a member's bytes.
std::string PairOf(const std::string& bytes) {
  const std::uint32_t checksum =
      CksumFinish(CksumUpdate(0, bytes.data(), bytes.size()), bytes.size());
  return std::to_string(checksum) + " " + std::to_string(bytes.size());
}

std::string Repeated(const std::string& text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i) repeated += text;
  return repeated;
}

class ZipcksumLine : public RecognitionTest {
 protected:
  ZipcksumLine() { WriteJar(jar_, {{"app/Base.class", content_}}); }

  // The verdict of a line on lib/pde.jar, and what it should be by the log's words behind the
  // jar's name.
  Verdict CheckLine(const std::string& argument) {
    return Check("zipcksum:lib/pde.jar " + argument + "\n");
  }
  static Verdict Expected(int result, const std::string& words) {
    return {result, "    java: \"lib/pde.jar\" " + words};
  }
  const Verdict kMatch = Expected(1, "object: \"app/Base.class\" checksum match\n");
  const Verdict kMismatch =
      Expected(0, "object: \"app/Base.class\" checksum mismatch, unsupported Arduino version\n");
  const Verdict kWrongSize =
      Expected(0, "object: \"app/Base.class\" wrong size, unsupported Arduino version\n");

  const std::string jar_ = dir_ / "lib/pde.jar";
  const std::string content_ = std::string(10000, 'b') + "some class";
  const std::string pair_ = PairOf(content_);
};

TEST_F(ZipcksumLine, ListedPairMatches) {
  EXPECT_EQ(CheckLine(pair_ + " app/Base.class"), kMatch);
}

TEST_F(ZipcksumLine, AnyOfSeveralPairsMatches) {
  EXPECT_EQ(CheckLine(pair_ + " 1 2 3 4 app/Base.class"), kMatch);
  EXPECT_EQ(CheckLine("1 2 " + pair_ + " 3 4 app/Base.class"), kMatch);
  EXPECT_EQ(CheckLine("1 2 3 4 " + pair_ + " app/Base.class"), kMatch);
}

TEST_F(ZipcksumLine, SamePairMayStandSeveralTimes) {
  EXPECT_EQ(CheckLine(pair_ + " " + pair_ + " app/Base.class"), kMatch);
}

TEST_F(ZipcksumLine, FifteenPairsAreFine) {
  EXPECT_EQ(CheckLine(Repeated("1 2 ", 14) + pair_ + " app/Base.class"), kMatch);
}

TEST_F(ZipcksumLine, LinesAreJudgedEachByItself) {
  const std::string editor = "the editor";
  WriteJar(jar_, {{"Base.class", content_}, {"Editor.class", editor}});
  EXPECT_EQ(Check("zipcksum:lib/pde.jar " + pair_ + " 1 2 Base.class\n" +
                  "zipcksum:lib/pde.jar 1 2 " + PairOf(editor) + " Editor.class\n"),
            (Verdict{1,
                     "    java: \"lib/pde.jar\" object: \"Base.class\" checksum match\n"
                     "    java: \"lib/pde.jar\" object: \"Editor.class\" checksum match\n"}));
}

TEST_F(ZipcksumLine, SeveralBlanksSeparateLikeOne) {
  EXPECT_EQ(Check("zipcksum:lib/pde.jar   1  2    " + pair_ + "     app/Base.class\n"), kMatch);
}

TEST_F(ZipcksumLine, FolderMayHoldBlanks) {
  const std::string folder = dir_ / "my arduino 1 2/";
  fs::create_directory(folder);
  fs::rename(dir_ / "lib", folder + "lib");
  EXPECT_EQ(CheckFolder(folder, "zipcksum:lib/pde.jar " + pair_ + " app/Base.class\n"), kMatch);
}

TEST_F(ZipcksumLine, MemberMayHoldBlanks) {
  WriteJar(jar_, {{"app/My 2 Base.class", content_}});
  EXPECT_EQ(CheckLine(pair_ + " app/My 2 Base.class"),
            Expected(1, "object: \"app/My 2 Base.class\" checksum match\n"));
}

TEST_F(ZipcksumLine, CarriageReturnIsPartOfTheMember) {
  EXPECT_EQ(CheckLine(pair_ + " app/Base.class\r"),
            Expected(0, "object: \"app/Base.class\r\" missing\n"));
}

TEST_F(ZipcksumLine, LastLineNeedsNoLineFeed) {
  EXPECT_EQ(Check("zipcksum:lib/pde.jar " + pair_ + " app/Base.class"), kMatch);
}

TEST_F(ZipcksumLine, EmptyMemberMatches) {
  WriteJar(jar_, {{"app/Base.class", ""}});
  EXPECT_EQ(CheckLine("4294967295 0 app/Base.class"), kMatch);
}

TEST_F(ZipcksumLine, MembersAroundTheReadBuffersSizeMatch) {
  for (const std::size_t size : {1U, 4355U, 4356U, 4357U, 8711U, 8712U, 8713U, 300000U}) {
    const std::string content = ForgeMember(123456, size + 4);
    WriteJar(jar_, {{"app/Base.class", content}});
    EXPECT_EQ(CheckLine(PairOf(content) + " app/Base.class"), kMatch) << size + 4;
  }
}

TEST_F(ZipcksumLine, LargestChecksumIsReadWhole) {
  WriteJar(jar_, {{"app/Base.class", ForgeMember(4294967295U, 100)}});
  EXPECT_EQ(CheckLine("4294967295 100 app/Base.class"), kMatch);
}

TEST_F(ZipcksumLine, ListedSizeWithAForeignChecksumIsAMismatch) {
  EXPECT_EQ(CheckLine("1 10010 app/Base.class"), kMismatch);
}

TEST_F(ZipcksumLine, ChecksumListedOnlyWithAnotherSizeIsAMismatch) {
  const std::string checksum = pair_.substr(0, pair_.find(' '));
  EXPECT_EQ(CheckLine("1 10010 " + checksum + " 9 app/Base.class"), kMismatch);
}

TEST_F(ZipcksumLine, ForeignSizeIsRefused) {
  const std::string checksum = pair_.substr(0, pair_.find(' '));
  EXPECT_EQ(CheckLine(checksum + " 10009 " + checksum + " 10011 app/Base.class"), kWrongSize);
}

TEST_F(ZipcksumLine, SizeIsNotLookedForAmongTheChecksums) {
  EXPECT_EQ(CheckLine("10010 1 app/Base.class"), kWrongSize);
}

TEST_F(ZipcksumLine, ForeignSizeIsRefusedAlsoWhereTheDataIsCorrupt) {
  FlipDataByte(jar_);
  EXPECT_EQ(CheckLine("1 2 app/Base.class"), kWrongSize);
}

TEST_F(ZipcksumLine, FlippedDataByteFailsWithoutAFurtherWord) {
  FlipDataByte(jar_);
  EXPECT_EQ(CheckLine(pair_ + " app/Base.class"), Expected(0, "object: \"app/Base.class\" "));
}

TEST_F(ZipcksumLine, UnknownCompressionMethodIsUnableToRead) {
  MakeUnreadable(jar_);
  EXPECT_EQ(CheckLine(pair_ + " app/Base.class"),
            Expected(0, "object: \"app/Base.class\" unable to read\n"));
}

TEST_F(ZipcksumLine, MissingMemberIsMissing) {
  EXPECT_EQ(CheckLine(pair_ + " app/Other.class"),
            Expected(0, "object: \"app/Other.class\" missing\n"));
}

TEST_F(ZipcksumLine, MembersNameMustBeExact) {
  EXPECT_EQ(CheckLine(pair_ + " app/base.class").result, 0);
  EXPECT_EQ(CheckLine(pair_ + " Base.class").result, 0);
  EXPECT_EQ(CheckLine(pair_ + " app\\Base.class").result, 0);
}

TEST_F(ZipcksumLine, MissingArchiveIsMissingBeforeAnyObject) {
  fs::remove(jar_);
  EXPECT_EQ(CheckLine(pair_ + " app/Base.class"), Expected(0, "missing\n"));
}

TEST_F(ZipcksumLine, DamagedArchivesAreMissing) {
  const std::string sound = ReadFile(jar_);
  TruncateJar(jar_);
  EXPECT_EQ(CheckLine(pair_ + " app/Base.class"), Expected(0, "missing\n"));
  WriteFile(jar_, sound);
  AlterHeader(jar_);
  EXPECT_EQ(CheckLine(pair_ + " app/Base.class"), Expected(0, "missing\n"));
  WriteFile(jar_, "");
  EXPECT_EQ(CheckLine(pair_ + " app/Base.class"), Expected(0, "missing\n"));
}

TEST_F(ZipcksumLine, MemberThatBeginsWithADigitIsTakenForANumber) {
  WriteJar(jar_, {{"3d.class", content_}});
  // Alone it is a third number with nothing behind it.
  EXPECT_EQ(CheckLine(pair_ + " 3d.class"),
            Expected(0, " INTERNAL ERROR, This is never supposed to happen! :(\n"));
  // Two such make a pair, and what follows them is the member.
  EXPECT_EQ(CheckLine(pair_ + " 3d.class 4d.class Other.class"),
            Expected(0, "object: \"Other.class\" missing\n"));
}

TEST_F(ZipcksumLine, ArchiveAndFolderAreUnchanged) {
  const auto before = ReadTree(dir_.path());
  CheckLine(pair_ + " app/Base.class");
  CheckLine("1 2 app/Base.class");
  EXPECT_EQ(ReadTree(dir_.path()), before);
}

struct MalformedCase {
  const char* situation;
  std::string argument;
};
void PrintTo(const MalformedCase& test, std::ostream* stream) {
  *stream << test.situation;
}

class MalformedZipcksumLine : public RecognitionTest,
                              public testing::WithParamInterface<MalformedCase> {};

TEST_P(MalformedZipcksumLine, EndsTheCheckWithAnInternalError) {
  const std::string& argument = GetParam().argument;
  // Both inside the file and at its very end.
  for (const char* rest : {"\nfile:none\n", ""}) {
    EXPECT_EQ(Check("zipcksum:" + argument + rest),
              (Verdict{0, "    java: \"" + argument.substr(0, argument.find(' ')) +
                              "\"  INTERNAL ERROR, This is never supposed to happen! :(\n"}));
  }
}

const MalformedCase kMalformed[] = {
    {"NoArgument", ""},
    {"ArchiveWithoutABlank", "lib/pde.jar"},
    {"NothingBehindTheArchive", "lib/pde.jar "},
    {"OnlyBlanksBehindTheArchive", "lib/pde.jar    "},
    {"NoNumber", "lib/pde.jar Base.class"},
    {"SingleNumber", "lib/pde.jar 1 Base.class"},
    {"OddCount", "lib/pde.jar 1 2 3 Base.class"},
    {"NoBlankBehindTheLastNumber", "lib/pde.jar 1 2"},
    {"NothingBehindTheLastNumber", "lib/pde.jar 1 2 "},
    {"OnlyBlanksBehindTheLastNumber", "lib/pde.jar 1 2    "},
    {"ThirtyOneNumbers", "lib/pde.jar " + Repeated("7 ", 31) + "Base.class"},
    {"SixteenPairs", "lib/pde.jar " + Repeated("1 2 ", 16) + "Base.class"},
    {"ThirtyThreeNumbers", "lib/pde.jar " + Repeated("7 ", 33) + "Base.class"},
    {"ThousandNumbers", "lib/pde.jar " + Repeated("7 ", 1000) + "Base.class"},
};

INSTANTIATE_TEST_SUITE_P(All, MalformedZipcksumLine, testing::ValuesIn(kMalformed),
                         [](const auto& test) { return std::string(test.param.situation); });

}  // namespace
