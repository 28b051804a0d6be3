#include "intake/claims.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "support/intake_bench.h"

namespace tavlo::test {
namespace {

using intake::Claims;
using store::DiskResult;
using Names = std::vector<std::string>;
using std::chrono::minutes;
using std::chrono::seconds;

const std::string kShareFolder = "/share/";

/// Two decks that sweep one share.
struct TwoDecks : testing::Test {
  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  IntakeDeck here{loop, disk, "/here", {.host = "here", .process = 1}};
  IntakeDeck there{loop, disk, "/there", {.host = "there", .process = 2}};

  TwoDecks() {
    disk.WithFileSystemAt("/share");
    for (IntakeDeck* const deck : {&here, &there}) {
      deck->folders.Ew2QueuePath = kShareFolder;
      deck->folders.Ds2QueuePath = kShareFolder;
    }
  }
  std::string ClaimOfHere(const std::string& name) const {
    return kShareFolder + ".TavloClaim here 1 " + name;
  }
};

TEST_F(TwoDecks, ClaimHoldsHostProcessAndNameAndIsOneRename) {
  disk.WithFile("/share/a.dS2", "A");
  disk.Operations.clear();
  const Claims::Taken taken = here.claims.Take(kShareFolder, "a.dS2");
  EXPECT_EQ(taken.result, DiskResult::Done);
  EXPECT_EQ(taken.path, ClaimOfHere("a.dS2"));
  EXPECT_EQ(disk.Changes(), (Names{"Rename /share/a.dS2 -> " + taken.path, "Renew " + taken.path}));
}

TEST_F(TwoDecks, FileThatIsClaimedIsNeitherListedNorClaimedAgain) {
  disk.WithFile("/share/a.dS2", "A");
  EXPECT_EQ(here.claims.Take(kShareFolder, "a.dS2").result, DiskResult::Done);
  EXPECT_EQ(there.claims.Take(kShareFolder, "a.dS2").result, DiskResult::NotFound);
  there.passes.RunRetrievalPasses();
  EXPECT_TRUE(there.libraries.calls.empty());
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(TwoDecks, FileThatTheOtherTookFirstIsNoFailure) {
  disk.WithFile("/share/a.eW2", "A").WithFile("/share/b.eW2", "B");
  disk.OnNextCopy = [this] { disk.Remove("/share/b.eW2"); };
  here.passes.RunRetrievalPasses();
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(disk.NamesIn("/here/Files/InQueue"), Names{"a.wav"});
}

TEST_F(TwoDecks, EachFileArrivesAtOneDeckWhenOneSweepsWithinTheWorkOfTheOther) {
  for (const char* name : {"a.dS2", "b.dS2", "c.eW2"}) {
    disk.WithFile(kShareFolder + name, name);
  }
  here.libraries.meanwhile = [this] { there.passes.RunRetrievalPasses(); };
  here.passes.RunRetrievalPasses();
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(disk.NamesIn("/here/Files/InQueue"), Names{"a.wav"});
  EXPECT_EQ(disk.NamesIn("/there/Files/InQueue"), (Names{"b.wav", "c.wav"}));
  EXPECT_TRUE(disk.NamesIn("/share").empty());
}

TEST_F(TwoDecks, ClaimIsRenewedEachMinuteOfTheWork) {
  disk.WithFile("/share/a.dS2", "A");
  disk.Operations.clear();
  here.libraries.takes = minutes{3} + seconds{1};
  here.passes.RunRetrievalPasses();
  EXPECT_EQ(std::ranges::count(disk.Operations, "Renew " + ClaimOfHere("a.dS2")), 4);
  EXPECT_TRUE(disk.Has("/here/Files/InQueue/a.wav"));
}

TEST_F(TwoDecks, RenewalEndsWithTheWork) {
  disk.WithFile("/share/a.dS2", "A");
  here.passes.RunRetrievalPasses();
  disk.Operations.clear();
  loop.Advance(minutes{5});
  EXPECT_TRUE(disk.Operations.empty());
}

TEST_F(TwoDecks, WorkOfAnHourKeepsItsClaim) {
  disk.WithFile("/share/a.dS2", "A");
  here.libraries.takes = minutes{61};
  here.libraries.meanwhile = [this] { there.passes.RunRetrievalPasses(); };
  here.passes.RunRetrievalPasses();
  EXPECT_EQ(disk.FilesHolding("wave of A"), Names{"/here/Files/InQueue/a.wav"});
  EXPECT_TRUE(there.libraries.calls.empty());
}

TEST_F(TwoDecks, ClaimThatNobodyRenewsIsGivenBackAfterTenMinutesAndNotBefore) {
  disk.WithFile(ClaimOfHere("a.dS2"), "A");
  loop.Advance(minutes{10} - seconds{1});
  there.claims.TidyUp(kShareFolder);
  EXPECT_EQ(disk.NamesIn("/share"), Names{".TavloClaim here 1 a.dS2"});
  loop.Advance(seconds{1});
  there.claims.TidyUp(kShareFolder);
  EXPECT_EQ(disk.NamesIn("/share"), Names{"a.dS2"});
}

TEST_F(TwoDecks, ClaimIsGivenBackUnderANumberWhereItsNameIsTaken) {
  disk.WithFile(ClaimOfHere("a b_.dS2"), "A").WithFile("/share/a b_.dS2", "B");
  loop.Advance(Claims::kAbandonedAfter);
  there.claims.TidyUp(kShareFolder);
  EXPECT_EQ(disk.Contents("/share/a b_ (2).dS2"), "A");
  EXPECT_EQ(disk.Contents("/share/a b_.dS2"), "B");
}

TEST_F(TwoDecks, FolderIsNotWrittenIntoWhereNothingIsClaimed) {
  disk.WithFile("/share/a.eW2").WithFile("/share/.hidden");
  disk.Operations.clear();
  there.claims.TidyUp(kShareFolder);
  EXPECT_TRUE(disk.Changes().empty());
  EXPECT_TRUE(disk.Has("/share/.hidden"));
}

TEST_F(TwoDecks, WithoutAClockOfTheFolderNothingIsGivenBack) {
  disk.WithFile(ClaimOfHere("a.dS2"), "A");
  loop.Advance(Claims::kAbandonedAfter);
  disk.LockFolder("/share");
  there.claims.TidyUp(kShareFolder);
  EXPECT_EQ(disk.NamesIn("/share"), Names{".TavloClaim here 1 a.dS2"});
}

TEST_F(TwoDecks, WhatAnEndedDeckLeftInAFolderIsDeleted) {
  disk.WithFile("/share/.TavloClock here 1", "\n").WithFile("/share/.TavloWave here 1 1.wav", "w");
  loop.Advance(Claims::kAbandonedAfter);
  there.claims.TidyUp(kShareFolder);
  EXPECT_TRUE(disk.NamesIn("/share").empty());
}

TEST_F(TwoDecks, ClaimIsGivenBackAtOnceAfterAFailure) {
  disk.WithFile("/share/a.eW2", "A");
  disk.SetFreeSpace("/here", 0);
  here.passes.RunRetrievalPasses();
  EXPECT_EQ(disk.NamesIn("/share"), Names{"a.eW2"});
}

TEST_F(TwoDecks, ClaimIsGivenBackUnderANumberWhenItsNameCameAnewMeanwhile) {
  disk.WithFile("/share/a.dS2", "A");
  here.libraries.status = 17;
  here.libraries.meanwhile = [this] { disk.WithFile("/share/a.dS2", "new"); };
  here.passes.RunRetrievalPasses();
  EXPECT_EQ(disk.NamesIn("/share"), (Names{"a (2).dS2", "a.dS2"}));
  EXPECT_EQ(disk.Contents("/share/a (2).dS2"), "A");
}

TEST_F(TwoDecks, DeckThatWasTakenForDeadDropsWhatItMade) {
  disk.WithFile("/share/a.dS2", "A");
  here.libraries.meanwhile = [this] {
    // It stood still for so long that another one gave its claim back, and took the file.
    EXPECT_EQ(disk.Rename(ClaimOfHere("a.dS2"), "/share/a.dS2"), DiskResult::Done);
    there.passes.RunRetrievalPasses();
  };
  here.passes.RunRetrievalPasses();
  EXPECT_EQ(disk.FilesHolding("wave of A"), Names{"/there/Files/InQueue/a.wav"});
  EXPECT_TRUE(disk.NamesIn("/here/Files/InQueue").empty());
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(TwoDecks, FailureOfOneThatWasTakenForDeadIsNoMessage) {
  disk.WithFile("/share/a.dS2", "A");
  here.libraries.status = 17;
  here.libraries.meanwhile = [this] {
    EXPECT_EQ(disk.Rename(ClaimOfHere("a.dS2"), "/share/a.dS2"), DiskResult::Done);
  };
  here.passes.RunRetrievalPasses();
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(disk.FilesHolding("A"), Names{"/share/a.dS2"});
}

TEST_F(TwoDecks, CopyOfOneThatWasTakenForDeadIsDroppedAgain) {
  disk.WithFile("/share/a.eW2", "A");
  disk.OnNextCopy = [this] {
    EXPECT_EQ(disk.Rename(ClaimOfHere("a.eW2"), "/share/a.eW2"), DiskResult::Done);
  };
  here.passes.RunRetrievalPasses();
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(disk.FilesHolding("A"), Names{"/share/a.eW2"});
}

TEST_F(TwoDecks, FileThatHasGoneSinceItWasSeenIsNoFailure) {
  intake::Carrier carrier(disk, here.moves, here.claims);
  for (const std::string& folder : {kShareFolder, std::string("/here/Files/eW2Queue/")}) {
    EXPECT_EQ(carrier.Carry(folder, "gone.eW2", here.Queued("gone.wav")).outcome,
              intake::Carried::Outcome::TakenByAnother);
  }
}

TEST_F(TwoDecks, HostWithBlanksIsOneFieldOfTheClaim) {
  IntakeDeck odd(loop, disk, "/odd", {.host = "my desk", .process = 3});
  disk.WithFile("/share/a.dS2", "A");
  EXPECT_EQ(odd.claims.Take(kShareFolder, "a.dS2").path, "/share/.TavloClaim my-desk 3 a.dS2");
  odd.claims.LetGo();
  loop.Advance(Claims::kAbandonedAfter);
  there.claims.TidyUp(kShareFolder);
  EXPECT_EQ(disk.NamesIn("/share"), Names{"a.dS2"});
}

TEST_F(TwoDecks, LongNameTakesTheRoomOfTheHostAndIsNeverCut) {
  const std::string longest(227, 'a');
  disk.WithFile(kShareFolder + longest + ".dS2", "A");
  const Claims::Taken taken = here.claims.Take(kShareFolder, longest + ".dS2");
  ASSERT_EQ(taken.result, DiskResult::Done);
  here.claims.LetGo();
  loop.Advance(Claims::kAbandonedAfter);
  there.claims.TidyUp(kShareFolder);
  EXPECT_EQ(disk.NamesIn("/share"), Names{longest + ".dS2"});
}

TEST_F(TwoDecks, NameThatNoClaimCanHoldStaysIsToldAndKeepsNoOtherFileOut) {
  const std::string tooLong = std::string(240, 'a') + ".dS2";
  disk.WithFile(kShareFolder + tooLong, "A").WithFile(kShareFolder + "b.dS2", "B");
  here.passes.RunRetrievalPasses();
  EXPECT_EQ(disk.NamesIn("/share"), Names{tooLong});
  EXPECT_TRUE(disk.Has(here.Queued("b.wav")));
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_EQ(here.front.said, Names{"The file " + kShareFolder + tooLong +
                                   " was not retrieved: its name is too long. Shorten it."});
}

TEST_F(TwoDecks, FileThatAProgramOpensBeforeTheClaimIsGivenBackAndWaits) {
  disk.WithFile("/share/a.dS2", "A");
  disk.OpenWriter("/share/a.dS2");
  intake::Carrier carrier(disk, here.moves, here.claims);
  EXPECT_EQ(carrier.Carry(kShareFolder, "a.dS2", here.Queued("a.wav")).outcome,
            intake::Carried::Outcome::InUse);
  EXPECT_EQ(disk.NamesIn("/share"), Names{"a.dS2"});
  EXPECT_FALSE(disk.Has(here.Queued("a.wav")));
}

TEST_F(TwoDecks, FileThatCanNotBeLookedAtMayStillBeWrittenAndIsGivenBack) {
  disk.WithFile("/share/a.dS2", "A");
  disk.OpenWriter("/share/a.dS2");
  // Behind its rename and its renewal.
  disk.FailOperation(3, DiskResult::Failed);
  const Claims::Taken taken = here.claims.Take(kShareFolder, "a.dS2");
  EXPECT_EQ(taken.result, DiskResult::Failed);
  EXPECT_TRUE(taken.unreadable);
  EXPECT_EQ(disk.NamesIn("/share"), Names{"a.dS2"});
}

TEST_F(TwoDecks, WhatAKilledLibraryWasWritingGoesOnceItIsOld) {
  disk.WithFile("/share/.TavloDeckWave-7-1", "half a wave");
  here.claims.TidyUp(kShareFolder);
  EXPECT_EQ(disk.NamesIn("/share").size(), 1u);
  loop.Advance(Claims::kAbandonedAfter);
  here.claims.TidyUp(kShareFolder);
  EXPECT_TRUE(disk.NamesIn("/share").empty());
}

TEST_F(TwoDecks, ConversionWhoseQueueStallsAtAnyOperationIsThereOnceAfterwards) {
  for (int nth = 1; nth < 60; ++nth) {
    IntakeBench bench;
    bench.disk.WithFile(bench.folders.Ds2QueuePath + "b.dS2", "B");
    const std::size_t before = bench.disk.Operations.size();
    bench.disk.StallAtOperation(nth, bench.folders.InQueuePath);
    bench.passes.RunRetrievalPasses();
    const bool stalled = bench.disk.Operations.size() - before >= static_cast<std::size_t>(nth);
    bench.disk.Places.Mend(nth % 2 == 0 ? SimulatedPlaces::Late::Happens
                                        : SimulatedPlaces::Late::Fails);
    bench.disk.ForgetStall();
    bench.loop.Advance(Claims::kAbandonedAfter);
    bench.passes.RunRetrievalPasses();
    EXPECT_EQ(bench.disk.FilesHolding("wave of B"), Names{bench.deck.Queued("b.wav")}) << nth;
    EXPECT_TRUE(bench.disk.NamesIn(bench.folders.Ds2QueuePath).empty()) << nth;
    if (!stalled) return;
  }
  FAIL() << "the passes never ended";
}

}  // namespace
}  // namespace tavlo::test
