#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/disk/posix_disk.h"
#include "support/patience.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using store::DiskResult;
using Names = std::vector<std::string>;

/// What decks ask of a folder that they share.
struct DiskClaims : testing::Test {
  TemporaryFolder folder;
  platform::PosixDisk disk;

  /// The kernel notes moments by its own steps, so it is asked until the next one has come.
  bool TellsOfALaterChange(const std::string& path, std::int64_t before) {
    return Comes([&] {
      EXPECT_EQ(disk.Renew(path), DiskResult::Done);
      return disk.ChangedAt(path) > before;
    });
  }
};

TEST_F(DiskClaims, DotFilesAreListedAloneAndPlainOnesWithoutThem) {
  folder.Write(".TavloClaim a 1 b.dS2", "");
  folder.Write("c.dS2", "");
  ASSERT_EQ(::mkdir((folder / ".folder").c_str(), 0755), 0);
  EXPECT_EQ(disk.ListDotFiles(folder.Path()).names, Names{".TavloClaim a 1 b.dS2"});
  EXPECT_EQ(disk.ListPlainFiles(folder.Path()).names, Names{"c.dS2"});
  EXPECT_FALSE(disk.ListDotFiles(folder / "nothing").started);
}

TEST_F(DiskClaims, RenewalIsAChangeThatLeavesTheStamp) {
  const std::string path = folder.Write("a.dS2", "A");
  const std::array<timespec, 2> longAgo{timespec{.tv_sec = 1000}, timespec{.tv_sec = 1000}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), longAgo.data(), 0), 0);
  const auto facts = disk.Facts(path);
  const auto before = disk.ChangedAt(path);
  ASSERT_TRUE(before.has_value());
  EXPECT_TRUE(TellsOfALaterChange(path, *before));
  EXPECT_EQ(disk.Facts(path), facts);
}

TEST_F(DiskClaims, RenameIsAChangeHoweverOldTheFileIs) {
  const std::string path = folder.Write("a.dS2", "A");
  const std::array<timespec, 2> longAgo{timespec{.tv_sec = 1000}, timespec{.tv_sec = 1000}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), longAgo.data(), 0), 0);
  EXPECT_EQ(disk.Rename(path, folder / ".claim"), DiskResult::Done);
  const auto fresh = disk.ChangedAt(folder.Write("fresh", ""));
  const auto claim = disk.ChangedAt(folder / ".claim");
  ASSERT_TRUE(fresh && claim);
  EXPECT_LT(*fresh - *claim, std::int64_t{600} * 1'000'000'000);
}

TEST_F(DiskClaims, WhatIsNoPlainFileTellsOfNoChange) {
  EXPECT_EQ(disk.ChangedAt(folder.Path()), std::nullopt);
  EXPECT_EQ(disk.ChangedAt(folder / "nothing"), std::nullopt);
  EXPECT_EQ(disk.Renew(folder / "nothing"), DiskResult::NotFound);
}

}  // namespace
}  // namespace tavlo::test
