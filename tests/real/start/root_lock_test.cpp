#include "platform/desktop/root_lock.h"

#include <gtest/gtest.h>

#include <string>

#include "support/errands_at_hand.h"
#include "support/half_ended.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using platform::desktop::RootLock;
using shell::RootClaim;

struct RootLockTest : testing::Test {
  TemporaryFolder home;
  const std::string root = home / "Lyrane/TavloDeck";
  ErrandsAtHand errands;
};

TEST_F(RootLockTest, RootBelongsToTheFirstCopyUntilThatGivesItBack) {
  RootLock first(errands, root);
  EXPECT_EQ(first.Claim(), RootClaim::Ours);
  EXPECT_EQ(RootLock(errands, root).Claim(), RootClaim::OfAnotherCopy);
  first.GiveBack();
  EXPECT_EQ(RootLock(errands, root).Claim(), RootClaim::Ours);
  EXPECT_EQ(RootLock(errands, root).Claim(), RootClaim::Ours);
}

TEST_F(RootLockTest, RootThatGivesNoAnswerIsNobodysAndIsNotHeldWhenItHasAnswered) {
  RootLock lock(errands, root);
  errands.Stalls = true;
  EXPECT_EQ(lock.Claim(), RootClaim::OutOfReach);
  EXPECT_EQ(lock.Claim(), RootClaim::OutOfReach);
  errands.ComeBack();
  EXPECT_EQ(RootLock(errands, root).Claim(), RootClaim::Ours);
}

TEST_F(RootLockTest, RootThatGivesNoAnswerAtTheEndIsGivenBackWhenItAnswers) {
  RootLock lock(errands, root);
  EXPECT_EQ(lock.Claim(), RootClaim::Ours);
  errands.Stalls = true;
  lock.GiveBack();
  ErrandsAtHand elsewhere;
  EXPECT_EQ(RootLock(elsewhere, root).Claim(), RootClaim::OfAnotherCopy);
  errands.ComeBack();
  EXPECT_EQ(RootLock(elsewhere, root).Claim(), RootClaim::Ours);
}

TEST_F(RootLockTest, RootIsFreeThoughTheProcessThatGaveItBackCannotEnd) {
  RootLock lock(errands, root);
  const HalfEnded ended([&] { lock.Claim(); }, [&] { lock.GiveBack(); });
  EXPECT_EQ(RootLock(errands, root).Claim(), RootClaim::Ours);
}

}  // namespace
}  // namespace tavlo::test
