#include <gtest/gtest.h>

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

constexpr std::array kFaults{DiskResult::NoSpace,          DiskResult::NoAccess,
                             DiskResult::NotFound,         DiskResult::OtherFileSystem,
                             DiskResult::ProcessInTrouble, DiskResult::Failed};
constexpr std::array kFailings{SimulatedDisk::Failing::Once, SimulatedDisk::Failing::ForGood};

struct Scene {
  const char* name;
  bool completedElsewhere = false;  ///< The Completed folder lies on a file system of its own.
  bool savedBefore = false;         ///< The name carries a position already.
  bool nameTaken = false;           ///< The names that Complete and Save give are taken.
  bool firstNameWaits = false;  ///< Another waits under the name that it had before it was saved.
  bool queuesByItself = false;  ///< The next document is selected instead of the word.
  bool unplayable = false;      ///< The document never sounded; Complete takes it away.
};
constexpr std::array kScenes{
    Scene{"one file system"},
    Scene{"saved before", false, true},
    Scene{"name taken", false, false, true},
    Scene{
        .name = "saved before, the first name waits", .savedBefore = true, .firstNameWaits = true},
    Scene{"Completed elsewhere", true},
    Scene{"Completed elsewhere, saved before, name taken", true, true, true},
    Scene{.name = "the next one by itself", .queuesByItself = true},
    Scene{.name = "the next one by itself, Completed elsewhere",
          .completedElsewhere = true,
          .queuesByItself = true},
    Scene{.name = "unplayable", .unplayable = true},
};

struct Key {
  forms::Command forms::MainForm::*command;
  const char* word;
};
constexpr Key kComplete{&forms::MainForm::cmdComplete, "Complete"};
constexpr Key kSave{&forms::MainForm::cmdSave, "Save"};
constexpr Key kSkip{&forms::MainForm::cmdSkip, "Return"};
constexpr std::array kKeys{kComplete, kSave, kSkip};

/// A document in work and another that waits.
struct FinishingTrial : ListsBench {
  const std::string completedName = Document().By("Brown").Name();
  const std::string savedName = Document().By("Brown").Saved(40'000).Name();
  const std::string other = Document().By("Okafor").Name();
  std::string document = completedName;

  explicit FinishingTrial(const Scene& scene) {
    config.txtAutoPreview.Value = "0";
    if (scene.savedBefore) document = Document().By("Brown").Saved(4000).Name();
    if (scene.completedElsewhere) disk.WithFileSystemAt(folders.CompletedPath());
    if (scene.nameTaken) {
      disk.WithFile(folders.CompletedPath() + completedName, "the earlier one");
      disk.WithFile(folders.InQueuePath + savedName, "the one of the saved name");
    }
    if (scene.firstNameWaits) {
      disk.WithFile(folders.InQueuePath + completedName, "the one of the first name");
    }
    if (scene.queuesByItself) config.txtAutoQueueJob.Value = "Y";
    Drop(document);
    if (scene.unplayable) file.Sounds.erase(folders.InQueuePath + document);
    Drop(other);
    queue.RefreshQueueList();
    WorkOn(document, 40'000);
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
};

void ExpectNothingLost(const FinishingTrial& trial, const Scene& scene) {
  EXPECT_FALSE(trial.PlacesOfDocument().empty());
  EXPECT_EQ(trial.disk.FilesHolding("sound of " + trial.other).size(), 1u);
  if (scene.nameTaken) {
    EXPECT_EQ(trial.disk.FilesHolding("the earlier one").size(), 1u);
    EXPECT_EQ(trial.disk.Contents(trial.folders.InQueuePath + trial.savedName),
              "the one of the saved name");
  }
  if (scene.firstNameWaits) {
    EXPECT_EQ(trial.disk.Contents(trial.folders.InQueuePath + trial.completedName),
              "the one of the first name");
  }
}

bool IsKey(const Key& a, const Key& b) { return a.command == b.command; }

/// What the key asked for stands on the disk, just so.
bool Happened(const FinishingTrial& trial, const Key& key) {
  if (IsKey(key, kSkip)) return true;
  const std::string place = IsKey(key, kSave) ? trial.folders.InQueuePath + trial.savedName
                                              : trial.folders.CompletedPath() + trial.completedName;
  return trial.PlacesOfDocument() == Names{place};
}

/// The caption counts only a list that is whole.
bool ListIsWhole(const FinishingTrial& trial) {
  return trial.form.frameInQueue.Caption.Get() != "Queue";
}

/// Nothing is spoken of that did not happen.
void ExpectWords(FinishingTrial& trial, const Key& key, const Scene& scene) {
  Names words;
  if (!scene.queuesByItself && Happened(trial, key)) {
    words.push_back(key.word);
    const bool allDone = trial.Rows() == 0 && ListIsWhole(trial);
    if (IsKey(key, kComplete) && allDone) words.push_back("AllDone");
  }
  EXPECT_EQ(trial.prompts, words);
}

/// The quiet line speaks of what went otherwise, and of nothing else: where the document is, where
/// the one is that it displaced, and that the list is not whole.
void ExpectQuietLine(const FinishingTrial& trial, const Key& key, const Scene& scene,
                     DiskResult fault) {
  const std::string& line = trial.form.lblNotice.Value;
  const bool cutShort = !ListIsWhole(trial) && fault == DiskResult::ProcessInTrouble;
  const Names earlier = trial.disk.FilesHolding("the earlier one");
  const bool displaced =
      scene.nameTaken && earlier != Names{trial.folders.CompletedPath() + trial.completedName};
  EXPECT_EQ(!line.empty(), !Happened(trial, key) || displaced || cutShort) << line;
  EXPECT_EQ(line.find("The Queue list is not whole") != line.npos, cutShort) << line;
  if (displaced) {
    EXPECT_NE(line.find("; another document of that name is "), line.npos) << line;
    EXPECT_TRUE(line.ends_with(": " + earlier[0]) || line.ends_with(" is kept as " + earlier[0]) ||
                cutShort)
        << line;
  }
  for (const std::string& place : trial.PlacesOfDocument()) {
    const bool rescued =
        place.find(".Rescued ") != place.npos || place.starts_with(trial.folders.RescuedPath());
    EXPECT_EQ(line.find(place) != line.npos, rescued) << place << " | " << line;
  }
}

/// The first row that is not Saved is selected by itself, and no other; none of a list that could
/// not be read.
void ExpectNextDocument(FinishingTrial& trial) {
  if (!ListIsWhole(trial)) {
    EXPECT_EQ(trial.form.listViewInQueue.ListIndex, -1);
    EXPECT_FALSE(trial.form.cmdPlay.Enabled);
    return;
  }
  for (int row = 0; row < trial.Rows(); ++row) {
    if (trial.Cell(row, forms::document_column::Saved) == "Saved") continue;
    EXPECT_EQ(trial.opening.SelectedQueueFile, trial.Cell(row, forms::document_column::FileName));
    EXPECT_EQ(trial.form.listViewInQueue.ListIndex, row);
    EXPECT_TRUE(trial.form.cmdPlay.Enabled);
    return;
  }
}

void ExpectListIsBack(FinishingTrial& trial) {
  EXPECT_TRUE(trial.window.guards.TransportMayAct());
  EXPECT_TRUE(trial.window.guards.ListsMayChange());
  EXPECT_FALSE(trial.window.MiniPlayerShows());
  EXPECT_EQ(trial.form.frmMain.MousePointer, forms::Pointer::Arrow);
  EXPECT_TRUE(trial.form.listViewInQueue.Reachable());
  EXPECT_TRUE(trial.form.cmdUpdateFileList.Reachable());
  EXPECT_TRUE(trial.form.mnuFile.Enabled);
  EXPECT_FALSE(trial.form.cmdSkip.Enabled);
}

void ExpectNextScanShowsTheTruth(FinishingTrial& trial) {
  trial.disk.Heal();
  trial.form.cmdUpdateFileList.Press(By::Hand);
  EXPECT_EQ(trial.Listed(), trial.Waiting());
}

/// How a press of a key met its fault.
struct Fault {
  SimulatedDisk::Failing failing;
  /// False when the key was done before the fault came.
  bool fired;
};

/// Presses the key in every scene with every fault at every operation, until the key is done before
/// the fault comes.
template <typename Look>
void FailAtEachOperation(const Key& key, const Look& look) {
  for (const Scene& scene : kScenes) {
    // A document that cannot be played is never in work, so only Complete can be pressed.
    if (scene.unplayable && key.command != kComplete.command) continue;
    for (const DiskResult result : kFaults) {
      for (const auto failing : kFailings) {
        Fault fault{failing, true};
        for (int nth = 1; fault.fired; ++nth) {
          SCOPED_TRACE(std::string(scene.name) + ", operation " + std::to_string(nth));
          FinishingTrial trial(scene);
          ASSERT_TRUE((trial.form.*key.command).Reachable());
          trial.disk.FailOperation(nth, result, failing);
          (trial.form.*key.command).Press(By::Hand);
          fault.fired = static_cast<int>(trial.disk.Operations.size()) >= nth;
          ExpectNothingLost(trial, scene);
          ExpectListIsBack(trial);
          ExpectWords(trial, key, scene);
          ExpectQuietLine(trial, key, scene, result);
          if (scene.queuesByItself) ExpectNextDocument(trial);
          look(trial, scene, fault);
          ExpectNextScanShowsTheTruth(trial);
        }
      }
    }
  }
}

TEST(FinishingFaults, CompleteTakesTheDocumentOutOfTheQueueThoughAnyOneOperationFails) {
  FailAtEachOperation(kComplete, [](FinishingTrial& trial, const Scene& scene, const Fault& fault) {
    if (!scene.queuesByItself) {
      EXPECT_EQ(trial.opening.SelectedQueueFile, "");
    }
    if (fault.failing == SimulatedDisk::Failing::Once) {
      Names others{trial.other};
      if (scene.nameTaken) others.insert(others.begin(), trial.savedName);
      if (scene.firstNameWaits) others.insert(others.begin(), trial.completedName);
      EXPECT_EQ(trial.Waiting(), others);
    }
    if (!fault.fired) {
      EXPECT_EQ(trial.PlacesOfDocument(),
                Names{trial.folders.CompletedPath() + trial.completedName});
    }
  });
}

TEST(FinishingFaults, CompleteLeavesAtMostTwoWholeDocumentsWhateverFailsForGood) {
  FailAtEachOperation(kComplete, [](FinishingTrial& trial, const Scene&, const Fault&) {
    EXPECT_LE(trial.PlacesOfDocument().size(), 2u);
  });
}

TEST(FinishingFaults, SaveLeavesTheDocumentInTheQueueUnderTheNameThatIsSelected) {
  FailAtEachOperation(kSave, [](FinishingTrial& trial, const Scene& scene, const Fault& fault) {
    const Names places = trial.PlacesOfDocument();
    ASSERT_EQ(places.size(), 1u);
    const std::string name = places[0].substr(trial.folders.InQueuePath.size());
    EXPECT_TRUE(name == trial.document || name == trial.savedName) << name;
    if (!scene.queuesByItself) {
      EXPECT_EQ(trial.opening.SelectedQueueFile, name);
    }
    if (!fault.fired) {
      EXPECT_EQ(name, scene.nameTaken ? trial.document : trial.savedName);
    }
  });
}

TEST(FinishingFaults, SkipLeavesTheDocumentAsItWas) {
  FailAtEachOperation(kSkip, [](FinishingTrial& trial, const Scene& scene, const Fault&) {
    EXPECT_EQ(trial.PlacesOfDocument(), Names{trial.folders.InQueuePath + trial.document});
    EXPECT_TRUE(trial.disk.Changes().empty());
    if (!scene.queuesByItself) {
      EXPECT_EQ(trial.opening.SelectedQueueFile, trial.document);
    }
  });
}

TEST(FinishingFaults, KillAtAnyOperationOfAnyKeyLosesNothing) {
  for (const Key& key : kKeys) {
    for (const Scene& scene : kScenes) {
      bool killed = true;
      for (int nth = 1; killed; ++nth) {
        SCOPED_TRACE(std::string(key.word) + ", " + scene.name + ", operation " +
                     std::to_string(nth));
        FinishingTrial trial(scene);
        ASSERT_TRUE(scene.unplayable || (trial.form.*key.command).Reachable());
        trial.disk.CrashAtOperation(nth);
        (trial.form.*key.command).Press(By::Hand);
        killed = trial.disk.Crashed();
        ExpectNothingLost(trial, scene);
        trial.disk.LoseWhatWasNotFlushed();
        ExpectNothingLost(trial, scene);
      }
    }
  }
}

TEST(FinishingFaults, RefreshChangesNoFileAndTheNextOneShowsTheTruth) {
  for (const DiskResult fault : kFaults) {
    for (const auto failing : kFailings) {
      bool fired = true;
      for (int nth = 1; fired; ++nth) {
        SCOPED_TRACE("operation " + std::to_string(nth));
        FinishingTrial trial(kScenes[0]);
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
