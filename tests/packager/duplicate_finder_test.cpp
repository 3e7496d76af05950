#include "packager/duplicate_finder.h"

#include <gtest/gtest.h>

#include "packager/refusal.h"
#include "recognition/cksum.h"
#include "tests/support/temp_dir.h"

namespace {

using Indices = std::vector<std::size_t>;

class DuplicateFinder : public testing::Test {
 protected:
  // Adds the next file of the table.
  void Add(const std::string& name, const std::string& content) {
    WriteFile(dir_ / name, content);
    files_.push_back({name, content.size()});
  }
  Indices Find() const { return FindDuplicates(dir_.path(), files_); }

  TempDir dir_;
  std::vector<PayloadFile> files_;
};

TEST_F(DuplicateFinder, LaterFilesPointToTheFirst) {
  Add("arm/a", "same");
  Add("arm/b", "diff");
  Add("arm/c", "same");
  Add("arm/d", "same");
  Add("arm/e", "diff");
  EXPECT_EQ(Find(), (Indices{0, 1, 0, 0, 1}));
}

TEST_F(DuplicateFinder, EmptyFilesAreNoDuplicates) {
  Add("arm/a", "");
  Add("arm/b", "");
  EXPECT_EQ(Find(), (Indices{0, 1}));
}

TEST_F(DuplicateFinder, FilesOutsideTheToolchainAreNoDuplicates) {
  Add("quirlo.exe", "same");
  Add("arm/a", "same");
  Add("arm-none-eabi/a", "same");
  Add("armlib/a", "same");
  EXPECT_EQ(Find(), (Indices{0, 1, 2, 3}));
}

std::uint32_t Checksum(const std::string& text) {
  return CksumFinish(CksumUpdate(0, text.data(), text.size()), text.size());
}

TEST_F(DuplicateFinder, BytesDecideWhereSizeAndChecksumAgree) {
  const std::string one(64, 'q');
  std::string other = one;
  // The checksum can't see its own polynomial, 1 04C11DB7, wherever it is mixed in.
  const char polynomial[] = "\x01\x04\xC1\x1D\xB7";
  for (std::size_t i = 0; i < 5; ++i)
    other[20 + i] = static_cast<char>(other[20 + i] ^ polynomial[i]);
  ASSERT_EQ(Checksum(other), Checksum(one));
  Add("arm/a", one);
  Add("arm/b", other);
  Add("arm/c", one);
  Add("arm/d", other);
  EXPECT_EQ(Find(), (Indices{0, 1, 0, 1}));
}

TEST_F(DuplicateFinder, FileThatChangesItsLengthMeanwhileIsRefused) {
  Add("arm/a", "same");
  Add("arm/b", "same");
  WriteFile(dir_ / "arm/b", "longer");
  EXPECT_THROW(Find(), Refusal);
}

}  // namespace
