// What recognition asks of the archive library, and what it makes of the library's failures. Linked
// with --wrap on the functions below.
#include <gtest/gtest.h>
#include <zip.h>

#include <algorithm>
#include <string>

#include "recognition/cksum.h"
#include "recognition/identify_arduino.h"
#include "tests/recognition/recognition_test.h"
#include "tests/support/arduino_host.h"
#include "tests/support/jars.h"

namespace {

// What was called since the last reset, and which calls are to fail.
struct Calls {
  int opened = 0;
  int open_flags = 0;
  int closed = 0;
  int members_opened = 0;
  zip_uint64_t longest_read = 0;
  bool stat_fails = false;
  bool member_open_fails = false;
  zip_int64_t bytes_before_the_end = -1;    // -1: all
  zip_int64_t bytes_before_a_failure = -1;  // -1: no failure
};

Calls calls;

}  // namespace

extern "C" {
zip_t* RealOpen(const char* path, int flags, int* error) __asm__("__real_zip_open");
zip_t* WrappedOpen(const char* path, int flags, int* error) __asm__("__wrap_zip_open");
int RealClose(zip_t* archive) __asm__("__real_zip_close");
int WrappedClose(zip_t* archive) __asm__("__wrap_zip_close");
int RealStat(zip_t* archive, zip_uint64_t index, zip_flags_t flags,
             zip_stat_t* record) __asm__("__real_zip_stat_index");
int WrappedStat(zip_t* archive, zip_uint64_t index, zip_flags_t flags,
                zip_stat_t* record) __asm__("__wrap_zip_stat_index");
zip_file_t* RealOpenMember(zip_t* archive, zip_uint64_t index,
                           zip_flags_t flags) __asm__("__real_zip_fopen_index");
zip_file_t* WrappedOpenMember(zip_t* archive, zip_uint64_t index,
                              zip_flags_t flags) __asm__("__wrap_zip_fopen_index");
zip_int64_t RealRead(zip_file_t* member, void* bytes,
                     zip_uint64_t count) __asm__("__real_zip_fread");
zip_int64_t WrappedRead(zip_file_t* member, void* bytes,
                        zip_uint64_t count) __asm__("__wrap_zip_fread");

zip_t* WrappedOpen(const char* path, int flags, int* error) {
  ++calls.opened;
  calls.open_flags |= flags;
  return RealOpen(path, flags, error);
}

int WrappedClose(zip_t* archive) {
  ++calls.closed;
  return RealClose(archive);
}

int WrappedStat(zip_t* archive, zip_uint64_t index, zip_flags_t flags, zip_stat_t* record) {
  const int result = RealStat(archive, index, flags, record);
  return calls.stat_fails ? -1 : result;
}

zip_file_t* WrappedOpenMember(zip_t* archive, zip_uint64_t index, zip_flags_t flags) {
  ++calls.members_opened;
  return calls.member_open_fails ? nullptr : RealOpenMember(archive, index, flags);
}

zip_int64_t WrappedRead(zip_file_t* member, void* bytes, zip_uint64_t count) {
  calls.longest_read = std::max(calls.longest_read, count);
  if (calls.bytes_before_a_failure == 0) return -1;
  zip_int64_t* limit = calls.bytes_before_a_failure > 0 ? &calls.bytes_before_a_failure
                                                        : &calls.bytes_before_the_end;
  if (*limit < 0) return RealRead(member, bytes, count);
  const zip_int64_t read =
      RealRead(member, bytes, std::min(count, static_cast<zip_uint64_t>(*limit)));
  *limit -= read;
  return read;
}
}

namespace {

class JarAccess : public RecognitionTest {
 protected:
  JarAccess() {
    WriteJar(dir_ / "a.jar", {{"M", content_}});
    calls = {};
  }
  ~JarAccess() override { EXPECT_EQ(calls.closed, calls.opened); }

  static constexpr std::size_t kSize = 10000;
  const std::string content_ = ForgeMember(123456, kSize);
  const std::string line_ = "zipcksum:a.jar 123456 10000 M\n";
};

TEST_F(JarAccess, ArchivesAreOpenedWithTheConsistencyCheckAlone) {
  EXPECT_EQ(Check(line_ + "zipfile:a.jar\n").result, 1);
  EXPECT_EQ(calls.open_flags, 4);
}

TEST_F(JarAccess, ArchiveIsOpenedAnewForEveryLine) {
  EXPECT_EQ(Check(line_ + line_ + line_).result, 1);
  EXPECT_EQ(calls.opened, 3);
}

TEST_F(JarAccess, MalformedLineTouchesNoArchive) {
  EXPECT_EQ(Check("zipcksum:a.jar 123456 M\n").result, 0);
  EXPECT_EQ(calls.opened, 0);
}

TEST_F(JarAccess, MemberOfAForeignSizeIsNotDecompressed) {
  EXPECT_EQ(Check("zipcksum:a.jar 123456 9999 M\n").result, 0);
  EXPECT_EQ(calls.members_opened, 0);
}

TEST_F(JarAccess, MemberIsReadInPiecesOfThePathBuffersSize) {
  EXPECT_EQ(Check(line_).result, 1);
  EXPECT_EQ(calls.longest_read, 4356U);
}

TEST_F(JarAccess, FolderWithoutVersionFileFailsBeforeAnyJarIsTouched) {
  const TestStore store(ControlEntries1819());
  MakeArduino1819(dir_.path());
  std::filesystem::remove(dir_ / "lib/version.txt");
  calls = {};
  EXPECT_EQ(IdentifyArduino(Folder().c_str()), 0);
  EXPECT_EQ(calls.opened, 0);
}

TEST_F(JarAccess, FailedStatCountsAsAWrongSize) {
  calls.stat_fails = true;
  EXPECT_EQ(Check(line_), (Verdict{0,
                                   "    java: \"a.jar\" object: \"M\" "
                                   "wrong size, unsupported Arduino version\n"}));
}

TEST_F(JarAccess, MemberThatDoesNotOpenIsUnableToRead) {
  calls.member_open_fails = true;
  EXPECT_EQ(Check(line_), (Verdict{0, "    java: \"a.jar\" object: \"M\" unable to read\n"}));
}

TEST_F(JarAccess, ReadThatFailsAtOnceOrHalfWaySaysNothing) {
  for (const zip_int64_t bytes : {0, 5000}) {
    calls.bytes_before_a_failure = bytes;
    EXPECT_EQ(Check(line_), (Verdict{0, "    java: \"a.jar\" object: \"M\" "})) << bytes;
  }
}

TEST_F(JarAccess, ChecksumOfAMemberThatEndsEarlyIsFinishedWithTheRecordsSize) {
  calls.bytes_before_the_end = 5000;
  const std::uint32_t checksum = CksumFinish(CksumUpdate(0, content_.data(), 5000), kSize);
  EXPECT_EQ(Check("zipcksum:a.jar " + std::to_string(checksum) + " 10000 M\n"),
            (Verdict{1, "    java: \"a.jar\" object: \"M\" checksum match\n"}));
}

}  // namespace
