#include "store/moved_root.h"

#include <gtest/gtest.h>

#include <string>

#include "support/install.h"
#include "support/simulated_database.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

/// A start whose settings came from another machine.
struct MovedRootTest : testing::Test {
  MovedRootTest() { disk.WithFolder(kRoot); }

  std::string Start() { return store::FollowMovedRoot(disk, folders, settings); }
  /// What a stored path is after the start.
  std::string After(const std::string& stored) {
    database.With("Ew2QueuePath", stored);
    Start();
    return database.Value("Ew2QueuePath");
  }
  void ExpectKept(const std::string& stored) { EXPECT_EQ(After(stored), stored); }

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  SimulatedDatabase database{{.root = kRoot, .revision = "1.0.0"}};
  store::SettingsStore settings{database};
  store::WorkFolders folders{disk, kRoot};
};

TEST_F(MovedRootTest, PathsIntoAHomeThatIsNotHereLeadIntoThisRoot) {
  const std::string other = "/home/anna/Lyrane/TavloDeck";
  database.With("Ew2QueuePath", other + "/Files/eW2Queue")
      .With("Ds2QueuePath", other + "/Files/dS2Queue")
      .With("WavQueuePath", other + "/Files/ImportQueue/of my own")
      .With("Eu2QueuePath", other);
  EXPECT_EQ(Start(),
            "There is no /home/anna here: paths that led to the deck in it lead to this one now.");
  EXPECT_EQ(database.Value("Ew2QueuePath"), kRoot + "/Files/eW2Queue");
  EXPECT_EQ(database.Value("Ds2QueuePath"), kRoot + "/Files/dS2Queue");
  EXPECT_EQ(database.Value("WavQueuePath"), kRoot + "/Files/ImportQueue/of my own");
  EXPECT_EQ(database.Value("Eu2QueuePath"), kRoot);
  EXPECT_EQ(database.Transactions, 1);
}

TEST_F(MovedRootTest, NextStartHasNothingToDo) {
  database.With("Ew2QueuePath", "/home/anna/Lyrane/TavloDeck/Files/eW2Queue");
  Start();
  EXPECT_EQ(Start(), "");
  EXPECT_EQ(database.Transactions, 1);
}

TEST_F(MovedRootTest, PathsOfThisRootAreNotWritten) {
  EXPECT_EQ(Start(), "");
  EXPECT_EQ(database.Transactions, 0);
}

TEST_F(MovedRootTest, PathIntoAHomeThatIsHereIsKeptWhateverItLacks) {
  disk.WithFolder("/home/anna");
  ExpectKept("/home/anna/Lyrane/TavloDeck/Files/eW2Queue");
}

TEST_F(MovedRootTest, PathIntoAHomeThatGivesNoAnswerIsKept) {
  const std::string stored = "/home/anna/Lyrane/TavloDeck/Files/eW2Queue";
  database.With("Ew2QueuePath", stored);
  disk.Places.Stall("/home/anna");
  Start();
  EXPECT_EQ(database.Value("Ew2QueuePath"), stored);
}

TEST_F(MovedRootTest, AnyOtherPathIsKept) {
  ExpectKept("/media/share/Lyrane/TavloDeck/Files/eW2Queue");
  ExpectKept("/home/anna/Dictations");
  ExpectKept("/home/anna/Lyrane/TavloDeckOld/Files");
  ExpectKept("/home/anna/office/Lyrane/TavloDeck/Files");
  ExpectKept("/homes/anna/Lyrane/TavloDeck/Files");
  ExpectKept("/home/anna");
  ExpectKept("D:\\Dictations");
  ExpectKept("");
}

TEST_F(MovedRootTest, WordProcessorInAHomeThatIsNotHereIsKept) {
  database.With("WordProcessorPath", "/home/anna/Lyrane/TavloDeck/writer");
  EXPECT_EQ(Start(), "");
  EXPECT_EQ(database.Value("WordProcessorPath"), "/home/anna/Lyrane/TavloDeck/writer");
}

TEST_F(MovedRootTest, SaveThatIsRefusedSaysNothingAndTheNextStartTriesAgain) {
  database.With("Ew2QueuePath", "/home/anna/Lyrane/TavloDeck/Files/eW2Queue");
  database.RefuseWrites("The disk is full.");
  EXPECT_EQ(Start(), "");
  database.AcceptWrites();
  EXPECT_NE(Start(), "");
  EXPECT_EQ(database.Value("Ew2QueuePath"), kRoot + "/Files/eW2Queue");
}

TEST_F(MovedRootTest, RootThatStandsInNoHomeHasNoHomesBesideIt) {
  store::WorkFolders elsewhere(disk, "/srv/deck");
  const std::string stored = "/srv/other/Lyrane/TavloDeck/Files/eW2Queue";
  database.With("Ew2QueuePath", stored);
  EXPECT_EQ(store::FollowMovedRoot(disk, elsewhere, settings), "");
  EXPECT_EQ(database.Value("Ew2QueuePath"), stored);
}

}  // namespace
}  // namespace tavlo::test
