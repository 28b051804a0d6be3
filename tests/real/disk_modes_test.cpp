#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "platform/disk/posix_disk.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using platform::PosixDisk;
using store::DiskResult;

struct stat StatusOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status;
}

/// Who may read what the disk copies.
struct DiskModes : testing::Test {
  TemporaryFolder folder;
  PosixDisk disk;
};

TEST_F(DiskModes, CopyKeepsTheModeOfItsSource) {
  int copies = 0;
  for (const mode_t mode : {0600u, 0640u, 0644u, 0444u, 0666u}) {
    const auto path = folder.Write("a.wav", "sound");
    ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    const std::string copy = folder / (std::to_string(++copies) + ".wav");
    EXPECT_EQ(disk.Copy(path, copy), DiskResult::Done);
    EXPECT_EQ(StatusOf(copy).st_mode & 07777, mode);
    ASSERT_EQ(::unlink(path.c_str()), 0);
  }
}

TEST_F(DiskModes, NoOtherUserCanReadACopyBeforeItIsWhole) {
  const std::string path = folder.Write("a.wav", std::string(600'000, 's'));
  ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
  std::vector<mode_t> modes;
  PosixDisk breathing(platform::WriterWatch::SystemClock, platform::WriterWatch::TrustInLeasesOf,
                      [&] { modes.push_back(StatusOf(folder / "b.wav").st_mode & 07777); });
  EXPECT_EQ(breathing.Copy(path, folder / "b.wav"), DiskResult::Done);
  ASSERT_FALSE(modes.empty());
  EXPECT_EQ(modes, std::vector<mode_t>(modes.size(), 0600));
}

TEST_F(DiskModes, CopyBelongsToTheOwnerOfItsSourceWhereThatMayBe) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root may give a file away";
  const auto path = folder.Write("a.wav", "sound");
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  ASSERT_EQ(::chown(path.c_str(), 12'345, 23'456), 0);
  EXPECT_EQ(disk.Copy(path, folder / "b.wav"), DiskResult::Done);
  const struct stat copy = StatusOf(folder / "b.wav");
  EXPECT_EQ(copy.st_uid, 12'345u);
  EXPECT_EQ(copy.st_gid, 23'456u);
  EXPECT_EQ(copy.st_mode & 07777, 0640u);
}

TEST_F(DiskModes, CopyThatCannotHaveTheGroupOpensNothingToAnother) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root may become somebody else";
  const auto path = folder.Write("a.wav", "sound");
  ASSERT_EQ(::chmod(path.c_str(), 0664), 0);
  ASSERT_EQ(::chmod(folder.Path().c_str(), 0777), 0);
  const pid_t other = ::fork();
  if (other == 0) {
    constexpr unsigned kNobody = 65'534;
    const bool left =
        ::setgroups(0, nullptr) == 0 && ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0;
    ::_exit(left && disk.Copy(path, folder / "b.wav") == DiskResult::Done ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(other, &status, 0), other);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(StatusOf(folder / "b.wav").st_mode & 07777, 0644u);
}

}  // namespace
}  // namespace tavlo::test
