#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "lists/finishing.h"
#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using forms::By;
using store::DiskResult;
using Names = std::vector<std::string>;

constexpr std::array kFaults{DiskResult::NoSpace, DiskResult::NoAccess, DiskResult::NotFound,
                             DiskResult::OtherFileSystem, DiskResult::Failed};
constexpr std::array kFailings{SimulatedDisk::Failing::Once, SimulatedDisk::Failing::ForGood};

struct Scene {
  const char* name;
  bool completedElsewhere = false;  ///< The Completed folder lies on a file system of its own.
  bool savedBefore = false;         ///< The name carries a position already.
  bool nameTaken = false;           ///< A document of that name was completed before.
};
constexpr std::array kScenes{
    Scene{"one file system"},
    Scene{"saved before", false, true},
    Scene{"name taken", false, false, true},
    Scene{"Completed elsewhere", true},
    Scene{"Completed elsewhere, saved before, name taken", true, true, true},
};

/// A document in work and another that waits.
struct Trial : ListsBench {
  const std::string completedName = Document().By("Brown").Name();
  const std::string other = Document().By("Okafor").Name();
  std::string document = completedName;

  explicit Trial(const Scene& scene) {
    config.txtAutoPreview.Value = "0";
    if (scene.savedBefore) document = Document().By("Brown").Saved(4000).Name();
    if (scene.completedElsewhere) disk.WithFileSystemAt(folders.CompletedPath());
    if (scene.nameTaken) disk.WithFile(folders.CompletedPath() + completedName, "the earlier one");
    Drop(document);
    Drop(other);
    queue.RefreshQueueList();
    ClickRowOf(document);
    form.cmdPlay.Press(By::Hand);
    form.cmdStop.Press(By::Hand);
    engine.CurrentSamplePosition = 40'000;
    form.cmdComplete.Enabled = true;
    disk.Operations.clear();
  }

  Names PlacesOfDocument() const { return disk.FilesHolding("sound of " + document); }
  /// What a scan can find in the InQueue folder.
  Names Waiting() const {
    Names waiting = disk.NamesIn(folders.InQueuePath);
    std::erase_if(waiting, [](const std::string& name) { return name.starts_with('.'); });
    return waiting;
  }
  Names Listed() {
    Names listed;
    for (int row = 0; row < Rows(); ++row) {
      listed.push_back(Cell(row, forms::document_column::FileName));
    }
    std::sort(listed.begin(), listed.end());
    return listed;
  }
};

void ExpectNothingLost(const Trial& trial, const Scene& scene) {
  EXPECT_FALSE(trial.PlacesOfDocument().empty());
  EXPECT_EQ(trial.disk.FilesHolding("sound of " + trial.other).size(), 1u);
  if (scene.nameTaken) {
    EXPECT_EQ(trial.disk.FilesHolding("the earlier one").size(), 1u);
  }
}

void ExpectListIsBack(Trial& trial) {
  EXPECT_FALSE(trial.window.guards.ListTransitionBusy);
  EXPECT_FALSE(trial.window.guards.ListPauseActive);
  EXPECT_FALSE(trial.window.MiniPlayerShows());
  EXPECT_EQ(trial.form.frmMain.MousePointer, forms::Pointer::Arrow);
  EXPECT_TRUE(trial.form.listViewInQueue.Reachable());
  EXPECT_TRUE(trial.form.cmdUpdateFileList.Reachable());
  EXPECT_TRUE(trial.form.mnuFile.Enabled);
  EXPECT_FALSE(trial.form.cmdSkip.Enabled);
}

void ExpectNextScanShowsTheTruth(Trial& trial) {
  trial.disk.Heal();
  trial.form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_EQ(trial.Listed(), trial.Waiting());
}

/// Presses the key in every scene with every fault at every operation, until the key is done before
/// the fault comes.
template <typename Look>
void FailAtEachOperation(forms::Command forms::MainForm::*key, const Look& look) {
  for (const Scene& scene : kScenes) {
    for (const DiskResult fault : kFaults) {
      for (const auto failing : kFailings) {
        bool fired = true;
        for (int nth = 1; fired; ++nth) {
          SCOPED_TRACE(std::string(scene.name) + ", operation " + std::to_string(nth));
          Trial trial(scene);
          trial.disk.FailOperation(nth, fault, failing);
          (trial.form.*key).Press(By::Hand);
          fired = static_cast<int>(trial.disk.Operations.size()) >= nth;
          ExpectNothingLost(trial, scene);
          ExpectListIsBack(trial);
          look(trial, failing);
          ExpectNextScanShowsTheTruth(trial);
        }
      }
    }
  }
}

TEST(FinishingFaults, CompleteTakesTheDocumentOutOfTheQueueThoughAnyOneOperationFails) {
  FailAtEachOperation(&forms::MainForm::cmdComplete,
                      [](Trial& trial, SimulatedDisk::Failing failing) {
                        EXPECT_EQ(trial.opening.SelectedQueueFile, "");
                        if (failing == SimulatedDisk::Failing::Once) {
                          EXPECT_EQ(trial.Waiting(), Names{trial.other});
                        }
                      });
}

TEST(FinishingFaults, SaveLeavesTheDocumentInTheQueueUnderTheNameThatIsSelected) {
  FailAtEachOperation(&forms::MainForm::cmdSave, [](Trial& trial, SimulatedDisk::Failing) {
    EXPECT_EQ(trial.PlacesOfDocument(),
              Names{trial.folders.InQueuePath + trial.opening.SelectedQueueFile});
  });
}

TEST(FinishingFaults, SkipLeavesTheDocumentAsItWas) {
  FailAtEachOperation(&forms::MainForm::cmdSkip, [](Trial& trial, SimulatedDisk::Failing) {
    EXPECT_EQ(trial.PlacesOfDocument(), Names{trial.folders.InQueuePath + trial.document});
    EXPECT_TRUE(trial.disk.Changes().empty());
  });
}

TEST(FinishingFaults, KillAtAnyOperationOfCompleteLosesNothing) {
  for (const Scene& scene : kScenes) {
    bool killed = true;
    for (int nth = 1; killed; ++nth) {
      SCOPED_TRACE(std::string(scene.name) + ", operation " + std::to_string(nth));
      Trial trial(scene);
      trial.disk.CrashAtOperation(nth);
      trial.form.cmdComplete.Press(By::Hand);
      killed = trial.disk.Crashed();
      ExpectNothingLost(trial, scene);
      trial.disk.LoseWhatWasNotFlushed();
      ExpectNothingLost(trial, scene);
    }
  }
}

TEST(FinishingFaults, RefreshChangesNoFileAndTheNextOneShowsTheTruth) {
  for (const DiskResult fault : kFaults) {
    for (const auto failing : kFailings) {
      bool fired = true;
      for (int nth = 1; fired; ++nth) {
        SCOPED_TRACE("operation " + std::to_string(nth));
        Trial trial(kScenes[0]);
        trial.form.cmdSkip.Press(By::Hand);
        trial.disk.Operations.clear();
        trial.disk.FailOperation(nth, fault, failing);
        trial.form.cmdUpdateFileList.Press(By::Hand);
        fired = static_cast<int>(trial.disk.Operations.size()) >= nth;
        EXPECT_TRUE(trial.disk.Changes().empty());
        ExpectListIsBack(trial);
        ExpectNextScanShowsTheTruth(trial);
      }
    }
  }
}

}  // namespace
}  // namespace tavlo::test
