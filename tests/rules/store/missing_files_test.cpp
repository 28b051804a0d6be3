#include "store/missing_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/install.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::DiskResult;

const std::string kPrompts = kRoot + "/Prompts";
const std::string kInstalled = kShare + "/Prompts";

struct OlderRoot {
  OlderRoot() {
    disk.WithFolder(kRoot)
        .WithFile(kPrompts + "/Save.wav", "my own voice")
        .WithFile(kInstalled + "/Complete.wav", "complete")
        .WithFile(kInstalled + "/Save.wav", "save")
        .WithFile(kInstalled + "/Welcome.wav", "welcome");
  }

  void Add() { store::AddMissingPrompts(disk, kRoot, "/usr/share/tavlodeck"); }
  std::vector<std::string> Names() const {
    std::vector<std::string> names = disk.NamesIn(kPrompts);
    std::ranges::sort(names);
    return names;
  }

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
};

const std::vector<std::string> kAll{"Complete.wav", "Save.wav", "Welcome.wav"};

struct MissingPromptsTest : testing::Test, OlderRoot {};

TEST_F(MissingPromptsTest, AreAddedAndAUsersOwnRecordingStays) {
  Add();
  EXPECT_EQ(Names(), kAll);
  EXPECT_EQ(disk.Contents(kPrompts + "/Complete.wav"), "complete");
  EXPECT_EQ(disk.Contents(kPrompts + "/Welcome.wav"), "welcome");
  EXPECT_EQ(disk.Contents(kPrompts + "/Save.wav"), "my own voice");
}

TEST_F(MissingPromptsTest, RootThatLacksNothingIsNotTouched) {
  Add();
  const auto changes = disk.Changes().size();
  Add();
  EXPECT_EQ(disk.Changes().size(), changes);
}

TEST_F(MissingPromptsTest, FolderThatIsMissingIsMade) {
  disk.Remove(kPrompts + "/Save.wav");
  disk.Remove(kPrompts);
  Add();
  EXPECT_EQ(Names(), kAll);
  EXPECT_EQ(disk.Contents(kPrompts + "/Save.wav"), "save");
}

TEST_F(MissingPromptsTest, RootIsLeftAloneWhenNothingIsInstalled) {
  disk.BreakListing(kInstalled);
  Add();
  EXPECT_TRUE(disk.Changes().empty());
}

TEST_F(MissingPromptsTest, FolderInThePlaceOfAPromptStays) {
  disk.WithFolder(kPrompts + "/Welcome.wav");
  Add();
  EXPECT_EQ(disk.Look(kPrompts + "/Welcome.wav"), store::Entry::Folder);
  EXPECT_EQ(disk.Contents(kPrompts + "/Complete.wav"), "complete");
}

bool HoldsOnlyWholePrompts(const SimulatedDisk& disk) {
  const auto isWholeOrMissing = [&](const char* name, const char* contents) {
    const std::string path = kPrompts + "/" + name;
    return !disk.Has(path) || disk.Contents(path) == contents;
  };
  return isWholeOrMissing("Complete.wav", "complete") &&
         isWholeOrMissing("Welcome.wav", "welcome") &&
         disk.Contents(kPrompts + "/Save.wav") == "my own voice";
}

TEST(MissingPromptsFaults, CrashAtAnyOperationLeavesWholePromptsAndTheNextStartAddsTheRest) {
  bool finished = false;
  for (int nth = 1; !finished; ++nth) {
    SCOPED_TRACE(nth);
    OlderRoot root;
    root.disk.CrashAtOperation(nth);
    root.Add();
    finished = !root.disk.Crashed();
    EXPECT_TRUE(HoldsOnlyWholePrompts(root.disk));
    root.disk.Heal();
    root.Add();
    EXPECT_EQ(root.Names(), kAll);
    EXPECT_TRUE(HoldsOnlyWholePrompts(root.disk));
  }
}

TEST(MissingPromptsFaults, StallAtAnyOperationLeavesWholePromptsAndALaterStartAddsTheRest) {
  for (const std::string& place : {kRoot, kInstalled}) {
    for (const auto late : {SimulatedPlaces::Late::Happens, SimulatedPlaces::Late::Fails}) {
      bool stalled = true;
      for (int nth = 1; stalled; ++nth) {
        SCOPED_TRACE(place + " " + std::to_string(nth));
        OlderRoot root;
        root.disk.StallAtOperation(nth, place);
        root.Add();
        stalled = root.disk.Places.Stalls(place);
        EXPECT_LE(root.loop.Now().sinceStart, SimulatedPlaces::kPatience);
        EXPECT_TRUE(HoldsOnlyWholePrompts(root.disk));
        root.disk.Places.Resume(place, late);
        root.disk.Heal();
        root.Add();
        EXPECT_EQ(root.Names(), kAll);
        EXPECT_TRUE(HoldsOnlyWholePrompts(root.disk));
      }
    }
  }
}

TEST(MissingPromptsFaults, FailureOfAnyOperationLeavesOnlyWholePrompts) {
  std::size_t operations = 1;
  for (std::size_t nth = 1; nth <= operations; ++nth) {
    SCOPED_TRACE(nth);
    OlderRoot root;
    root.disk.FailOperation(static_cast<int>(nth), DiskResult::NoSpace);
    root.Add();
    operations = std::max(operations, root.disk.Operations.size());
    EXPECT_TRUE(HoldsOnlyWholePrompts(root.disk));
  }
}

const std::string kFascia = kRoot + "/Fascia";

struct MissingFasciaTest : testing::Test {
  MissingFasciaTest() {
    disk.WithFolder(kRoot)
        .WithFile("/usr/share/tavlodeck/Fascia/Ash.png", "ash")
        .WithFile("/usr/share/tavlodeck/Fascia/Slate.png", "slate");
  }

  void Add() { store::AddMissingFascia(disk, kRoot, "/usr/share/tavlodeck"); }

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
};

TEST_F(MissingFasciaTest, IsAddedToARootWithoutTheFolder) {
  Add();
  EXPECT_EQ(disk.Contents(kFascia + "/Ash.png"), "ash");
  EXPECT_EQ(disk.Contents(kFascia + "/Slate.png"), "slate");
}

TEST_F(MissingFasciaTest, IsAddedToAnEmptyFolder) {
  disk.WithFolder(kFascia);
  Add();
  EXPECT_EQ(disk.Contents(kFascia + "/Ash.png"), "ash");
}

TEST_F(MissingFasciaTest, PictureThatWasThrownAwayDoesNotComeBack) {
  disk.WithFile(kFascia + "/Ash.png", "my own ash");
  Add();
  EXPECT_FALSE(disk.Has(kFascia + "/Slate.png"));
  EXPECT_EQ(disk.Contents(kFascia + "/Ash.png"), "my own ash");
}

TEST_F(MissingFasciaTest, FolderThatGivesNoAnswerIsLeftAlone) {
  disk.WithFolder(kFascia);
  disk.Places.Stall(kFascia);
  Add();
  EXPECT_TRUE(disk.Changes().empty());
}

TEST_F(MissingFasciaTest, FolderThatCanNotBeReadIsLeftAlone) {
  disk.WithFolder(kFascia);
  disk.BreakListing(kFascia);
  Add();
  EXPECT_TRUE(disk.Changes().empty());
}

}  // namespace
}  // namespace tavlo::test
