#include "recognition/check_log.h"

#include <FL/Fl_Text_Buffer.H>
#include <gtest/gtest.h>

#include <string>

#include "tests/recognition/recognition_test.h"

namespace {

// As the program begins, before any fixture sets it; in a process of its own, as ctest runs each.
const Fl_Text_Buffer* const kInitialBuffer = LogBuffer;

class CheckLog : public RecognitionTest {};

TEST_F(CheckLog, BeginsWithoutABuffer) {
  EXPECT_EQ(kInitialBuffer, nullptr);
}

TEST_F(CheckLog, WithoutABufferTheWordsAreLost) {
  LogBuffer = nullptr;
  LogPrintf("%s\n", "lost");
  LogClear();
  EXPECT_EQ(Log(), "");
}

TEST_F(CheckLog, TextIsAppendedWithoutALineEnd) {
  LogPrintf("    java: \"%s\" ", "lib/pde.jar");
  LogPrintf("missing\n");
  EXPECT_EQ(Log(), "    java: \"lib/pde.jar\" missing\n");
}

TEST_F(CheckLog, TextIsCutTo4095Characters) {
  LogPrintf("%s", std::string(4095, 'x').c_str());
  LogPrintf("%s!", std::string(4095, 'y').c_str());
  EXPECT_EQ(Log(), std::string(4095, 'x') + std::string(4095, 'y'));
}

TEST_F(CheckLog, LogItselfHasNoLimit) {
  for (int i = 0; i < 1000; ++i) LogPrintf("%s", std::string(1000, 'x').c_str());
  EXPECT_EQ(Log().size(), 1000000U);
}

TEST_F(CheckLog, ClearEmptiesIt) {
  LogPrintf("text\n");
  LogClear();
  EXPECT_EQ(Log(), "");
  LogPrintf("anew\n");
  EXPECT_EQ(Log(), "anew\n");
}

}  // namespace
