#include "recognition/zipcksum_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

struct Split {
  std::string archive;
  std::vector<std::uint32_t> numbers;
  std::string member;
};

// The line's parts, or nothing for a malformed line. The text lies in a block of exactly its size,
// so that the sanitizer sees every byte read beyond it.
std::optional<Split> SplitLine(const std::string& text) {
  std::vector<char> block(text.c_str(), text.c_str() + text.size() + 1);
  ZipcksumLine line;
  if (!SplitZipcksumLine(block.data(), &line)) return std::nullopt;
  return Split{block.data(), {line.numbers, line.numbers + line.count}, line.member};
}

TEST(SplitZipcksumLine, GivesArchiveNumbersAndMember) {
  const auto split = SplitLine("lib/pde.jar 2401002797 66872 3533158812 66872 app/Base.class");
  ASSERT_TRUE(split);
  EXPECT_EQ(split->archive, "lib/pde.jar");
  EXPECT_THAT(split->numbers, ElementsAre(2401002797U, 66872U, 3533158812U, 66872U));
  EXPECT_EQ(split->member, "app/Base.class");
}

TEST(SplitZipcksumLine, EveryBlankBehindTheArchiveBecomesATerminator) {
  const auto split = SplitLine("a.jar    1   2   M");
  ASSERT_TRUE(split);
  EXPECT_EQ(split->archive, "a.jar");
  EXPECT_THAT(split->numbers, ElementsAre(1U, 2U));
  EXPECT_EQ(split->member, "M");
}

TEST(SplitZipcksumLine, MemberIsAllToTheEnd) {
  const auto split = SplitLine("a.jar 1 2 My 3 Class.class ");
  ASSERT_TRUE(split);
  EXPECT_EQ(split->member, "My 3 Class.class ");
}

TEST(SplitZipcksumLine, EmptyArchiveIsNoFault) {
  const auto split = SplitLine(" 1 2 M");
  ASSERT_TRUE(split);
  EXPECT_EQ(split->archive, "");
  EXPECT_EQ(split->member, "M");
}

TEST(SplitZipcksumLine, FifteenPairsFitAndSixteenDoNot) {
  std::string text = "a.jar";
  for (int i = 0; i < 15; ++i) text += " 1 2";
  const auto split = SplitLine(text + " M");
  ASSERT_TRUE(split);
  EXPECT_EQ(split->numbers.size(), 30U);
  EXPECT_FALSE(SplitLine(text + " 1 M"));
  EXPECT_FALSE(SplitLine(text + " 1 2 M"));
}

TEST(SplitZipcksumLine, MalformedLinesAreRefused) {
  for (const char* text : {"", "a.jar", "a.jar ", "a.jar M", "a.jar 1 M", "a.jar 1 2 3 M",
                           "a.jar 1 2", "a.jar 1 2 ", "a.jar 1 2 3d", "a.jar M 1 2"}) {
    EXPECT_FALSE(SplitLine(text)) << text;
  }
}

}  // namespace
