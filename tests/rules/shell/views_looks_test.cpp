// Which views are a look at the waiting work.
#include <gtest/gtest.h>

#include <string>

#include "support/alert_bench.h"

namespace tavlo::test {
namespace {

using forms::By;

struct ViewsLooks : testing::Test, AlertBench {
  /// A transfer that is not ended stays where it is, whatever is retrieved.
  void TransferIsOnItsWay(const std::string& name) {
    Transfer(name);
    disk.OpenWriter(DropFolder() + name);
  }
};

TEST_F(ViewsLooks, QueueAndImportTakeWhatWaitsAsSeenAndStartTheTimer) {
  StartWatching("A");
  int waiting = 0;
  for (forms::Command* const entry : {&form.mnuViewImport, &form.mnuViewQueue}) {
    SCOPED_TRACE(entry->Name);
    TransferIsOnItsWay(std::to_string(++waiting) + ".dS2");
    Watch().Pause();
    entry->Press(By::Hand);
    EXPECT_EQ(Figures().LastQueueCount, waiting);
    EXPECT_TRUE(Watch().tmrWorkWaitingAlert.Enabled());
  }
  WaitForACheck();
  EXPECT_TRUE(Spoken().empty());
}

TEST_F(ViewsLooks, CompletedIsNoLook) {
  StartWatching("A");
  TransferIsOnItsWay("a.dS2");
  form.mnuViewCompleted.Press(By::Hand);
  EXPECT_EQ(Figures().LastQueueCount, 0);
  WaitForACheck();
  EXPECT_EQ(Messages().size(), 1u);
}

}  // namespace
}  // namespace tavlo::test
