#include "platform/disk/instance_lock.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <filesystem>
#include <optional>
#include <string>

#include "support/half_ended.h"
#include "support/other_program.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using platform::InstanceLock;

struct InstanceLockTest : testing::Test {
  TemporaryFolder home;
  std::string root = home / "Lyrane/TavloDeck";
};

TEST_F(InstanceLockTest, SecondCopyIsToldAndMayStartWhenTheFirstHasEnded) {
  std::optional<InstanceLock> first(root);
  EXPECT_FALSE(first->AnotherCopyRuns());
  EXPECT_TRUE(InstanceLock(root).AnotherCopyRuns());
  first.reset();
  EXPECT_FALSE(InstanceLock(root).AnotherCopyRuns());
}

TEST_F(InstanceLockTest, CopyInAnotherProcessIsSeen) {
  const InstanceLock first(root);
  const int status = RunShell("flock --exclusive --nonblock '" + home.Path() + "/Lyrane' true");
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 1);
}

TEST_F(InstanceLockTest, RootsOfTwoHomesDoNotMeet) {
  const TemporaryFolder otherHome;
  const InstanceLock first(root);
  EXPECT_FALSE(InstanceLock(otherHome / "Lyrane/TavloDeck").AnotherCopyRuns());
}

TEST_F(InstanceLockTest, OnlyTheParentFolderIsMadeAndNoFileIsLeft) {
  { const InstanceLock first(root); }
  EXPECT_TRUE(std::filesystem::is_directory(home / "Lyrane"));
  EXPECT_TRUE(std::filesystem::is_empty(home / "Lyrane"));
}

TEST_F(InstanceLockTest, ProgramThatWeStartedDoesNotKeepTheLock) {
  std::optional<InstanceLock> first(root);
  const auto wordProcessor = OtherProgram::Idle();
  first.reset();
  EXPECT_FALSE(InstanceLock(root).AnotherCopyRuns());
}

TEST_F(InstanceLockTest, ProcessThatCannotEndKeepsTheLockUnlessItGaveItBack) {
  std::optional<InstanceLock> lock;
  const auto take = [&] { lock.emplace(root); };
  {
    const HalfEnded ended(take, [&] { lock->GiveBack(); });
    EXPECT_FALSE(InstanceLock(root).AnotherCopyRuns());
  }
  const HalfEnded ended(take, [] {});
  EXPECT_TRUE(InstanceLock(root).AnotherCopyRuns());
}

TEST_F(InstanceLockTest, LockThatWasGivenBackMayBeTakenInTheSameProcess) {
  InstanceLock first(root);
  first.GiveBack();
  EXPECT_FALSE(InstanceLock(root).AnotherCopyRuns());
}

TEST_F(InstanceLockTest, CopyThatFoundAnotherOneGivesNothingBack) {
  const InstanceLock first(root);
  InstanceLock second(root);
  second.GiveBack();
  EXPECT_TRUE(InstanceLock(root).AnotherCopyRuns());
}

TEST_F(InstanceLockTest, FolderThatCannotBeOpenedCountsAsNoOtherCopy) {
  EXPECT_FALSE(InstanceLock(home / "nothing/Lyrane/TavloDeck").AnotherCopyRuns());
}

}  // namespace
}  // namespace tavlo::test
