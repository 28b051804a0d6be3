#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using forms::By;
using store::DiskResult;

constexpr std::array kFaults{DiskResult::NoSpace, DiskResult::NoAccess, DiskResult::NotFound,
                             DiskResult::Failed};
constexpr std::array kFailings{SimulatedDisk::Failing::Once, SimulatedDisk::Failing::ForGood};

/// A root that stands, with a document that waits.
struct StartTrial : DeckBench {
  const std::string document = Drop(Document().Name());

  void ExpectReady() {
    EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
    EXPECT_TRUE(form.cmdUpdateFileList.Reachable());
    EXPECT_TRUE(form.mnuFile.Enabled);
  }
};

TEST(StartFaults, StartThatMeetsAnyFaultIsReadyOrSaysWhyItIsNotAndLosesNothing) {
  for (const DiskResult fault : kFaults) {
    for (const auto failing : kFailings) {
      bool fired = true;
      for (int nth = 1; fired; ++nth) {
        SCOPED_TRACE("operation " + std::to_string(nth));
        StartTrial trial;
        trial.disk.FailOperation(nth, fault, failing);
        trial.StartUntilReady();
        fired = static_cast<int>(trial.disk.Operations.size()) >= nth;
        EXPECT_EQ(trial.disk.FilesHolding("sound of " + trial.document),
                  std::vector{DeckBench::InQueue() + trial.document});
        if (trial.ended) {
          EXPECT_EQ(trial.ended, 1);
          EXPECT_EQ(trial.loop.Shown.size(), 1u);
          continue;
        }
        trial.ExpectReady();
        trial.disk.Heal();
        trial.form.cmdUpdateFileList.Press(By::Hand);
        EXPECT_EQ(trial.form.listViewInQueue.Rows().size(), 1u);
      }
    }
  }
}

}  // namespace
}  // namespace tavlo::test
