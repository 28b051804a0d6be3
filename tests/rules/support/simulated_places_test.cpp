#include "support/simulated_places.h"

#include <gtest/gtest.h>

#include <string>

#include "store/folder_walk.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using store::DiskResult;
using Late = SimulatedPlaces::Late;

const std::string kDocumentOnShare = "/share/a.wav";
const std::string kOtherNameOnShare = "/share/b.wav";

/// A share with a document on a disk with another.
struct SimulatedPlacesTest : testing::Test {
  SimulatedPlacesTest() {
    disk.WithFileSystemAt("/share").WithFile(kDocumentOnShare, "A").WithFile("/home/h.wav", "H");
  }

  base::Duration Passed() const { return loop.Now().sinceStart; }

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
};

TEST_F(SimulatedPlacesTest, CallThatIsNotAnsweredIsGivenUpWhenPatienceEnds) {
  int fed = 0;
  base::Timer feed(loop, "feed", 100ms, base::TimerKind::Feed);
  base::Timer rule(loop, "rule", 100ms);
  feed.OnTick = [&] { ++fed; };
  rule.OnTick = [] { ADD_FAILURE() << "a rule ran inside of another"; };
  feed.Start();
  rule.Start();
  disk.Places.Stall("/share");
  EXPECT_EQ(disk.Rename(kDocumentOnShare, kOtherNameOnShare), DiskResult::OutOfReach);
  EXPECT_EQ(Passed(), SimulatedPlaces::kPatience);
  EXPECT_EQ(fed, 50);
  EXPECT_TRUE(disk.OutOfReach(kDocumentOnShare));
  rule.Stop();
}

TEST_F(SimulatedPlacesTest, PlaceThatOwesAnAnswerIsOutOfReachAtOnceAndNoOtherIs) {
  disk.Places.Stall("/share");
  EXPECT_EQ(disk.Delete(kDocumentOnShare), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Look(kDocumentOnShare), store::Entry::OutOfReach);
  EXPECT_FALSE(disk.Facts(kDocumentOnShare));
  EXPECT_FALSE(disk.ListPlainFiles("/share").started);
  EXPECT_EQ(disk.TestReadiness(kDocumentOnShare), store::Readiness::OutOfReach);
  EXPECT_EQ(Passed(), SimulatedPlaces::kPatience);
  EXPECT_EQ(disk.Look("/home/h.wav"), store::Entry::PlainFile);
  EXPECT_FALSE(disk.OutOfReach("/home/h.wav"));
}

TEST_F(SimulatedPlacesTest, WhatWasLeftBehindHappensOrNotWhenThePlaceAnswersAgain) {
  for (const Late late : {Late::Happens, Late::Fails}) {
    disk.WithFile(kDocumentOnShare, "A");
    disk.Places.Stall("/share");
    EXPECT_EQ(disk.Delete(kDocumentOnShare), DiskResult::OutOfReach);
    EXPECT_EQ(disk.Contents(kDocumentOnShare), "A");
    disk.Places.Resume("/share", late);
    EXPECT_EQ(disk.Has(kDocumentOnShare), late == Late::Fails);
    EXPECT_FALSE(disk.OutOfReach(kDocumentOnShare));
  }
}

TEST_F(SimulatedPlacesTest, PlaceThatComesBackWhileACallWaitsAnswersIt) {
  base::Timer mend(loop, "mend", 3s, base::TimerKind::Feed);
  mend.OnTick = [&] {
    mend.Stop();
    disk.Places.Resume("/share", Late::Fails);
  };
  mend.Start();
  disk.Places.Stall("/share");
  EXPECT_EQ(disk.Rename(kDocumentOnShare, kOtherNameOnShare), DiskResult::Done);
  EXPECT_EQ(Passed(), 3s);
  EXPECT_EQ(disk.Contents(kOtherNameOnShare), "A");
}

TEST_F(SimulatedPlacesTest, CallInsideOneThatWaitsWaitsNoLongerAndNeverHappens) {
  base::Timer inner(loop, "inner", 2s, base::TimerKind::Feed);
  inner.OnTick = [&] {
    inner.Stop();
    EXPECT_EQ(disk.Delete(kDocumentOnShare), DiskResult::OutOfReach);
    EXPECT_EQ(Passed(), SimulatedPlaces::kPatience);
  };
  inner.Start();
  disk.Places.Stall("/share");
  EXPECT_EQ(disk.Rename(kDocumentOnShare, kOtherNameOnShare), DiskResult::OutOfReach);
  EXPECT_EQ(Passed(), SimulatedPlaces::kPatience);
  disk.Places.Resume("/share", Late::Happens);
  EXPECT_EQ(disk.Contents(kOtherNameOnShare), "A");
}

TEST_F(SimulatedPlacesTest, SlowPlaceTakesItsTimeForEachCallAndMayStillFail) {
  disk.Places.SlowDown("/share", 2s);
  EXPECT_EQ(disk.Look(kDocumentOnShare), store::Entry::PlainFile);
  disk.FailOperation(1, DiskResult::NoAccess);
  EXPECT_EQ(disk.Delete(kDocumentOnShare), DiskResult::NoAccess);
  EXPECT_EQ(Passed(), 4s);
  EXPECT_EQ(disk.Contents("/home/h.wav"), "H");
}

TEST_F(SimulatedPlacesTest, CopyThatWasLeftBehindStandsThereInHalfAndMayBecomeWhole) {
  disk.WithFile(kDocumentOnShare, "dictation").WithFolder("/home");
  disk.Places.Stall("/share");
  EXPECT_EQ(disk.Copy(kDocumentOnShare, "/home/copy"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Contents("/home/copy"), "dict");
  disk.Places.Resume("/share", Late::Happens);
  EXPECT_EQ(disk.Contents("/home/copy"), "dictation");
}

TEST_F(SimulatedPlacesTest, CopyThatWasLeftBehindDoesNotWriteIntoAnother) {
  disk.WithFile(kDocumentOnShare, "dictation").WithFile("/home/h.wav", "H");
  disk.Places.Stall("/share");
  EXPECT_EQ(disk.Copy(kDocumentOnShare, "/home/copy"), DiskResult::OutOfReach);
  EXPECT_EQ(disk.Delete("/home/copy"), DiskResult::Done);
  EXPECT_EQ(disk.Copy("/home/h.wav", "/home/copy"), DiskResult::Done);
  disk.Places.Resume("/share", Late::Happens);
  EXPECT_EQ(disk.Contents("/home/copy"), "H");
}

TEST_F(SimulatedPlacesTest, WalkEndsAtTheFileThatGivesNoAnswer) {
  disk.WithFile(kOtherNameOnShare, "B");
  const auto walk = disk.Walk("/share/");
  EXPECT_TRUE(walk->Next());
  disk.Places.Stall("/share");
  EXPECT_EQ(walk->TestReadiness(), store::Readiness::OutOfReach);
  EXPECT_FALSE(walk->Next());
  EXPECT_EQ(walk->End(), store::WalkEnd::OutOfReach);
}

}  // namespace
}  // namespace tavlo::test
