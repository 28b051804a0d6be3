#include "lists/outcome_in_words.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "store/disk_words.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using lists::Trip;
using store::DiskResult;

struct OutcomeInWordsTest : testing::Test {
  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  store::WorkFolders folders{disk, "/root"};

  std::string Words(Trip trip, const store::Moved& moved) const {
    return lists::MoveInWords(trip, moved, "a.wav", folders);
  }
};

TEST_F(OutcomeInWordsTest, MoveThatDidJustWhatWasAskedForNeedsNoWords) {
  EXPECT_EQ(Words(Trip::ToCompleted, {.result = DiskResult::Done, .arrived = true}), "");
}

TEST_F(OutcomeInWordsTest, DocumentThatStayedIsSaidToStayUnlessItMayBeGone) {
  EXPECT_EQ(Words(Trip::ToCompleted, {.result = DiskResult::NoAccess}),
            "Not moved to Completed: access is denied. It stays in the Queue: a.wav");
  EXPECT_EQ(Words(Trip::ToQueue, {.result = DiskResult::NoSpace}),
            "Not returned to the Queue: the disk is full. It stays in Completed: a.wav");
  EXPECT_EQ(Words(Trip::ToCompleted, {.result = DiskResult::NotFound}),
            "Not moved to Completed: there is no such file or folder. Document: a.wav");
}

TEST_F(OutcomeInWordsTest, WholeCopyWhoseSourceStandsTooIsToldOfAsSuch) {
  EXPECT_EQ(Words(Trip::ToCompleted, {.result = DiskResult::NoAccess, .arrived = true}),
            "Copied to Completed, but the one in the Queue was not deleted: access is denied. It "
            "stays in the Queue: a.wav");
  EXPECT_EQ(Words(Trip::ToCompleted, {.result = DiskResult::Failed,
                                      .arrived = true,
                                      .rescued = "/root/Files/Rescued/a.wav"}),
            "Copied to Completed, but the one in the Queue was not deleted: the disk reported an "
            "error. The document is in the rescue folder: /root/Files/Rescued/a.wav");
}

TEST_F(OutcomeInWordsTest, WhatIsKeptOutsideOfTheRescueFolderIsNotSaidToBeInIt) {
  EXPECT_EQ(Words(Trip::ToCompleted,
                  {.result = DiskResult::NoSpace, .rescued = "/root/Files/InQueue/.Rescued a.wav"}),
            "Not moved to Completed: the disk is full. The document is kept as "
            "/root/Files/InQueue/.Rescued a.wav");
}

TEST_F(OutcomeInWordsTest, OfWhatMayStillHappenNothingIsClaimed) {
  EXPECT_EQ(Words(Trip::ToCompleted, {.result = DiskResult::OutOfReach, .arrived = true}),
            "It is not known whether the document was moved to Completed: the folder gives no "
            "answer. The next list shows it. Document: a.wav");
  EXPECT_EQ(Words(Trip::ToQueue, {.result = DiskResult::OutOfReach}),
            "It is not known whether the document was returned to the Queue: the folder gives no "
            "answer. The next list shows it. Document: a.wav");
  EXPECT_EQ(lists::SaveFailureInWords({.result = DiskResult::OutOfReach}, "a.wav"),
            "It is not known whether the position was saved: the folder gives no answer. The next "
            "list shows it. Document: a.wav");
  EXPECT_EQ(lists::DeleteFailureInWords(DiskResult::OutOfReach, true, "a.wav"),
            "It is not known whether the document was deleted: the folder gives no answer. The "
            "next list shows it. Document: a.wav");
  EXPECT_EQ(lists::DeleteAllFailureInWords(DiskResult::OutOfReach),
            "It is not known whether all documents were deleted: the folder gives no answer. The "
            "next list shows it.");
}

TEST_F(OutcomeInWordsTest, WhatWasNeverAskedForIsSaidNotToHaveHappened) {
  const store::Moved refused{.result = DiskResult::OutOfReach, .asked = false};
  EXPECT_EQ(Words(Trip::ToCompleted, refused),
            "Not moved to Completed: the folder gives no answer. It stays in the Queue: a.wav");
  EXPECT_EQ(Words(Trip::ToQueue, refused),
            "Not returned to the Queue: the folder gives no answer. It stays in Completed: a.wav");
  EXPECT_EQ(lists::SaveFailureInWords(refused, "a.wav"),
            "The position was not saved: the folder gives no answer. Document: a.wav");
  EXPECT_EQ(lists::DeleteFailureInWords(DiskResult::OutOfReach, false, "a.wav"),
            "Not deleted: the folder gives no answer. Document: a.wav");
}

TEST_F(OutcomeInWordsTest, PlacesWhereADocumentMayBeAreSaidToBeSuch) {
  EXPECT_EQ(Words(Trip::ToCompleted, {.result = DiskResult::OutOfReach,
                                      .displaced = "/root/Files/Completed/.Rescued a.wav",
                                      .rescued = "/root/Files/Rescued/a.wav"}),
            "It is not known whether the document was moved to Completed: the folder gives no "
            "answer. The next list shows it. Document: a.wav; it may be in the rescue folder: "
            "/root/Files/Rescued/a.wav; another document of that name may be kept as "
            "/root/Files/Completed/.Rescued a.wav");
}

TEST_F(OutcomeInWordsTest, EveryReasonHasItsOwnWords) {
  std::set<std::string_view> reasons;
  for (const DiskResult result :
       {DiskResult::NotFound, DiskResult::AlreadyThere, DiskResult::NoSpace,
        DiskResult::OtherFileSystem, DiskResult::NoAccess, DiskResult::ProcessInTrouble,
        DiskResult::Failed, DiskResult::OutOfReach}) {
    reasons.insert(store::WhyNot(result));
  }
  EXPECT_EQ(reasons.size(), 8u);
}

}  // namespace
}  // namespace tavlo::test
