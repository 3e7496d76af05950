// The whole way: the tree beside this file, packed by the build, assembled into this program, and
// expanded by the store.
#include <gtest/gtest.h>

#include <string>

#include "store/embedded_file_store.h"
#include "store/package_version.h"

namespace {

std::string BytesOf(const char* name) {
  const int index = FindEntryByName(name);
  if (index < 0) return "no such entry";
  const PayloadEntry entry = EntryAt(static_cast<std::uint32_t>(index));
  return {reinterpret_cast<const char*>(entry.data), entry.size};
}

class PackedStore : public testing::Test {
 protected:
  ~PackedStore() override { ResetEmbeddedFileStore(); }
};

TEST_F(PackedStore, ExpandsToItsFiles) {
  ASSERT_TRUE(LoadEmbeddedFiles());
  EXPECT_EQ(BytesOf("quirlo.exe"), "tool\n");
  EXPECT_EQ(BytesOf("libraries/Echo/two words.h"), "blank\n");
  EXPECT_EQ(BytesOf("1.8.19/WINDOWS/pde.jar/processing/app/Base$18.class"), "class\n");
  EXPECT_EQ(BytesOf("libraries/Echo/empty.h"), "");
  EXPECT_EQ(BytesOf("arm/bin/g++.exe --> arm/bin/c++.exe"), "");
  EXPECT_EQ(BytesOf("arm/bin/g++.exe"), "no such entry");
}

TEST_F(PackedStore, EndsInTheVersionMarker) {
  ASSERT_TRUE(LoadEmbeddedFiles());
  const PayloadEntry last = EntryAt(Store.entry_count - 1);
  EXPECT_STREQ(last.name, "quirloduino.txt");
  EXPECT_EQ(BytesOf(last.name), kPackageVersion);
}

TEST_F(PackedStore, KnowsItsReleases) {
  EXPECT_STREQ(SupportedVersions(), "1.8.19");
}

}  // namespace
