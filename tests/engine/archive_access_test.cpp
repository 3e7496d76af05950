// Who may use an archive once it was rewritten.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "engine/writers.h"
#include "tests/engine/engine_test.h"
#include "tests/engine/faults.h"
#include "tests/support/jars.h"
#include "tests/support/small_disk.h"

namespace fs = std::filesystem;

namespace {

constexpr uid_t kTeacher = 1000;
constexpr gid_t kClass = 1001;

struct Access {
  mode_t mode;
  uid_t owner;
  gid_t group;

  bool operator==(const Access&) const = default;
};

void PrintTo(const Access& access, std::ostream* out) {
  *out << std::oct << access.mode << std::dec << " of " << access.owner << ":" << access.group;
}

Access Of(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return {};
  return {status.st_mode & 07777U, status.st_uid, status.st_gid};
}

// Owner first: a change of owner takes the set-id bits.
void Set(const std::string& path, const Access& access) {
  ASSERT_EQ(chown(path.c_str(), access.owner, access.group), 0);
  ASSERT_EQ(chmod(path.c_str(), access.mode), 0);
}

class ArchiveAccess : public EngineTest {
 protected:
  ArchiveAccess() {
    Load({{"entry", "ours"}});
    WriteJar(jar_, {{"app/Base.class", "the host's"}, {"app/Own.class", Noise(50'000)}});
  }

  // Replaces an object in the jar of `host`, which ends in a separator.
  static bool Rewrite(const std::string& host) {
    return WriteEntryToArchive(host.c_str(), "app/Base.class", 0, "lib/pde.jar") == 1 &&
           CloseOpenArchive();
  }

  std::string jar_ = *this / "lib/pde.jar";
};

TEST_F(ArchiveAccess, PermissionsStayAsTheyWere) {
  for (const mode_t mode : {0600U, 0640U, 0644U, 0664U, 0755U, 0777U}) {
    Set(jar_, {mode, geteuid(), getegid()});
    EXPECT_TRUE(Rewrite(host()));
    EXPECT_EQ(Of(jar_), (Access{mode, geteuid(), getegid()}));
  }
}

TEST_F(ArchiveAccess, PermissionsComeBackWhereTheLibraryLosesThem) {
  const ScopedFailure private_file(Call::kZipClosePrivately);
  for (const mode_t mode : {0640U, 0644U, 0664U, 0755U, 0444U}) {
    Set(jar_, {mode, geteuid(), getegid()});
    EXPECT_TRUE(Rewrite(host()));
    EXPECT_EQ(Of(jar_), (Access{mode, geteuid(), getegid()}));
  }
}

TEST_F(ArchiveAccess, PermissionsComeBackAlsoWhenTheCloseFails) {
  const ScopedFailure late(Call::kZipCloseTooLate);
  Set(jar_, {0664, geteuid(), getegid()});
  EXPECT_FALSE(Rewrite(host()));
  EXPECT_EQ(Of(jar_), (Access{0664, geteuid(), getegid()}));
}

// Nothing was put in its place, so nothing of it is changed.
TEST_F(ArchiveAccess, ArchiveThatWasNotRewrittenIsLeftAlone) {
  Set(jar_, {06755, geteuid(), getegid()});
  const ScopedReadOnlyFolder folder(*this / "lib");
  {
    const ScopedOrdinaryUser user;
    EXPECT_FALSE(Rewrite(host()));
  }
  EXPECT_EQ(Of(jar_), (Access{06755, geteuid(), getegid()}));
}

TEST_F(ArchiveAccess, SetIdBitsGo) {
  Set(jar_, {06755, geteuid(), getegid()});
  EXPECT_TRUE(Rewrite(host()));
  EXPECT_EQ(Of(jar_), (Access{0755, geteuid(), getegid()}));
}

TEST_F(ArchiveAccess, OwnerAndGroupStayWhenRootRewrites) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  for (const mode_t mode : {0644U, 0600U, 06755U, 0040U}) {
    Set(jar_, {mode, kTeacher, kClass});
    EXPECT_TRUE(Rewrite(host()));
    EXPECT_EQ(Of(jar_), (Access{mode & 0777U, kTeacher, kClass}));
  }
}

TEST_F(ArchiveAccess, LinkedArchiveGetsTheRightsOfTheFileThatItLedTo) {
  fs::rename(jar_, *this / "shared.jar");
  fs::create_symlink("../shared.jar", jar_);
  Set(*this / "shared.jar", {0664, geteuid(), getegid()});
  const ScopedFailure private_file(Call::kZipClosePrivately);
  EXPECT_TRUE(Rewrite(host()));
  EXPECT_FALSE(fs::is_symlink(jar_));
  EXPECT_EQ(Of(jar_).mode, 0664U);
  EXPECT_EQ(Of(*this / "shared.jar").mode, 0664U);
}

// There the library's new file is its owner's alone.
TEST_F(ArchiveAccess, StaysOnAFileSystemThatSharesBlocks) {
  const TempDir folder;
  const ScopedSharingDisk disk(folder.path());
  if (!disk.ok()) GTEST_SKIP() << "no right to mount a file system of blocks that are shared";
  const std::string jar = disk.path() + "/lib/pde.jar";
  fs::create_directories(disk.path() + "/lib");
  for (const mode_t mode : {0644U, 0664U, 06755U}) {
    fs::copy_file(jar_, jar, fs::copy_options::overwrite_existing);
    Set(jar, {mode, kTeacher, kClass});
    EXPECT_TRUE(Rewrite(disk.path() + "/"));
    EXPECT_EQ(Of(jar), (Access{mode & 0777U, kTeacher, kClass}));
    EXPECT_EQ(ReadJar(jar).at("app/Base.class"), "ours");
  }
}

}  // namespace
