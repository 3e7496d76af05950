// Failures before the file is opened for writing: each leaves it as it was.
#include "engine/host_preferences.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/engine/engine_test.h"
#include "tests/engine/faults.h"

namespace {

class PreferencesFailure : public EngineTest {
 protected:
  void ExpectKept(Call call) const {
    const std::string path = *this / "portable/preferences.txt";
    WriteFile(path, "board=uno\n");
    {
      const ScopedFailure failure(call);
      UpdatePreferences(host(), 10819);
    }
    EXPECT_EQ(ReadFile(path), "board=uno\n");
    UpdatePreferences(host(), 10819);
    EXPECT_NE(ReadFile(path), "board=uno\n");  // the failure, and nothing else, kept it
  }
};

TEST_F(PreferencesFailure, ShortReadKeepsTheFile) {
  ExpectKept(Call::kFread);
}

TEST_F(PreferencesFailure, NoMemoryKeepsTheFile) {
  ExpectKept(Call::kMalloc);
}

// Nobody would be told of it: what couldn't be written is lost, and the run goes on.
TEST_F(PreferencesFailure, FailedWriteEndsSilentlyAndLosesTheLine) {
  const std::string path = *this / "portable/preferences.txt";
  WriteFile(path, "sketch=1\nboard=uno\n");
  {
    const ScopedFailure failure(Call::kFwrite);
    UpdatePreferences(host(), 10819);
  }
  EXPECT_EQ(ReadFile(path).find("sketch=1\n"), std::string::npos);
}

}  // namespace
