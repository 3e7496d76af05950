// What the tests of recognition share: a folder to judge, a check log to read, and the proof that
// nothing stays open.
#pragma once

#include <FL/Fl_Text_Buffer.H>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "recognition/check_criteria.h"
#include "recognition/check_log.h"
#include "tests/support/temp_dir.h"
#include "tests/support/test_store.h"

// The outcome of one check and all the words that it left.
struct Verdict {
  int result;
  std::string log;
};
inline bool operator==(const Verdict& a, const Verdict& b) {
  return a.result == b.result && a.log == b.log;
}
inline void PrintTo(const Verdict& verdict, std::ostream* stream) {
  *stream << verdict.result << " with the log\n" << verdict.log;
}

class RecognitionTest : public testing::Test {
 protected:
  RecognitionTest() { LogBuffer = &log_; }

  // Every file and archive must be closed again, on every path.
  ~RecognitionTest() override {
    LogBuffer = nullptr;
    EXPECT_EQ(OpenHandles(), handles_before_) << "a file or archive stayed open";
  }

  std::string Log() {
    char* text = log_.text();
    std::string log = text;
    std::free(text);
    return log;
  }

  // The folder that is judged, with its separator.
  std::string Folder() const { return dir_.path() + "/"; }

  // Judges a folder by one criteria file, which is the last entry of the store, so that the
  // sanitizer sees every byte read beyond its end.
  Verdict CheckFolder(const std::string& folder, const std::string& criteria,
                      const std::string& release = "1.8.19") {
    const std::vector<TestEntry> entries = {
        {"quirlo.exe", "tool"}, {release + "/WINDOWS/directory_criteria.txt", criteria}};
    const TestStore store(entries);
    log_.text("");
    const int result = CheckCriteria(folder.c_str(), 1);
    return {result, Log()};
  }
  Verdict Check(const std::string& criteria, const std::string& release = "1.8.19") {
    return CheckFolder(Folder(), criteria, release);
  }

  TempDir dir_;

 private:
  static std::ptrdiff_t OpenHandles() {
    namespace fs = std::filesystem;
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  }

  // No user's own settings may put the note on the Windows App into a log.
  TempDir home_;
  ScopedEnvironment home_variable_{"HOME", home_.path()};
  ScopedEnvironment config_variable_{"XDG_CONFIG_HOME", ""};
  Fl_Text_Buffer log_;
  std::ptrdiff_t handles_before_ = OpenHandles();
};
